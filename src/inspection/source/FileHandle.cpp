#include "inspection/source/FileHandle.h"

#include "platform/LastError.h"
#include "platform/System.h"

void FileHandle::Close::operator()(HANDLE handle) const {
    CloseHandle(handle);
}

bool FileHandle::open(const std::wstring& path) {
    file.reset();
    const HANDLE opened = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return false;
    file.reset(opened);
    return true;
}

std::optional<DWORD> FileHandle::read(void* buffer, DWORD count) {
    DWORD got = 0;
    if (!ReadFile(file.get(), buffer, count, &got, nullptr))
        return std::nullopt;
    return got;
}

std::optional<std::uint64_t> FileHandle::seek(std::int64_t distance, DWORD method) {
    auto high = static_cast<LONG>(distance >> 32);
    const DWORD low = SetFilePointer(file.get(), static_cast<LONG>(distance), &high, method);
    if (low == INVALID_SET_FILE_POINTER && GetLastError() != NO_ERROR)
        return std::nullopt;
    return static_cast<std::uint64_t>(static_cast<DWORD>(high)) << 32 | low;
}
