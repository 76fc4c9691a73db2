#include "pack/InputFile.h"

#include "Paths.h"

#include <fmt/format.h>

namespace KestoHost {

namespace {

std::uint64_t sizeOf(HANDLE file) {
    LONG high = 0;
    const DWORD low = SetFilePointer(file, 0, &high, FILE_END);
    SetFilePointer(file, 0, nullptr, FILE_BEGIN);
    return static_cast<std::uint64_t>(high) << 32U | low;
}

} // namespace

InputFile::InputFile(const std::string& path)
    : name(path) {
    const std::wstring wide = wideFromUtf8(path).value_or(L"");
    HANDLE opened = CreateFileW(wide.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened != INVALID_HANDLE_VALUE) {
        file.reset(opened);
        length = sizeOf(opened);
    } else if (GetFileAttributesW(wide.c_str()) == INVALID_FILE_ATTRIBUTES) {
        fail("there is no such file");
    } else {
        fail("it is no regular file, or may not be read");
    }
}

std::size_t InputFile::read(std::span<char> into) {
    DWORD got = 0;
    if (!firstFailure && !ReadFile(file.get(), into.data(), static_cast<DWORD>(into.size()), &got, nullptr))
        fail("reading failed");
    return got;
}

void InputFile::fail(const std::string& why) {
    firstFailure = Failure{"unreadable", fmt::format("\"{}\" can't be read: {}.", name, why)};
}

} // namespace KestoHost
