#include "platform/LastError.h"
#include "platform/System.h"

#include "system/OpenFile.h"
#include "system/PathResolver.h"

#include <cerrno>
#include <memory>
#include <optional>

namespace SystemBackend {

namespace {

DWORD publishedError(int error) {
    switch (error) {
    case ENOENT:
        return ERROR_FILE_NOT_FOUND;
    case ENOTDIR:
        return ERROR_PATH_NOT_FOUND;
    case EACCES:
    case EPERM:
        return ERROR_ACCESS_DENIED;
    case EMFILE:
    case ENFILE:
        return ERROR_TOO_MANY_OPEN_FILES;
    case ENOMEM:
        return ERROR_NOT_ENOUGH_MEMORY;
    case ENAMETOOLONG:
        return ERROR_FILENAME_EXCED_RANGE;
    case EIO:
        return ERROR_IO_DEVICE;
    default:
        return ERROR_GEN_FAILURE;
    }
}

template <class Result>
Result fail(DWORD error, Result result) {
    SetLastError(error);
    return result;
}

OpenFile* fileOf(HANDLE handle) {
    return handle == INVALID_HANDLE_VALUE ? nullptr : static_cast<OpenFile*>(handle);
}

std::int64_t joined(LONG high, LONG low) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(high) << 32 | static_cast<DWORD>(low));
}

/// Where distances of this kind count from. None with the reason as last error.
std::optional<std::int64_t> originOf(const OpenFile& file, DWORD method) {
    switch (method) {
    case FILE_BEGIN:
        return 0;
    case FILE_CURRENT:
        return file.position();
    case FILE_END:
        break;
    default:
        return fail(ERROR_INVALID_PARAMETER, std::nullopt);
    }
    const auto size = file.size();
    return size ? size : fail(publishedError(errno), std::nullopt);
}

/// None with the reason as last error.
std::optional<std::int64_t> targetOf(std::int64_t origin, std::int64_t distance) {
    std::int64_t target = 0;
    if (__builtin_add_overflow(origin, distance, &target))
        return fail(ERROR_INVALID_PARAMETER, std::nullopt);
    return target < 0 ? fail(ERROR_NEGATIVE_SEEK, std::nullopt) : std::optional(target);
}

} // namespace

} // namespace SystemBackend

extern "C" {

HANDLE CreateFileW(const WCHAR* path, DWORD access, DWORD /*share*/, LPSECURITY_ATTRIBUTES /*security*/,
                   DWORD disposition, DWORD /*attributes*/, HANDLE /*templateFile*/) {
    using namespace SystemBackend;
    if (!path)
        return fail(ERROR_PATH_NOT_FOUND, INVALID_HANDLE_VALUE);
    if (access != GENERIC_READ || disposition != OPEN_EXISTING)
        return fail(ERROR_NOT_SUPPORTED, INVALID_HANDLE_VALUE);
    auto file = OpenFile::open(toUtf8(path));
    if (!file)
        return fail(publishedError(errno), INVALID_HANDLE_VALUE);
    return file.release();
}

BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD count, DWORD* read, LPOVERLAPPED overlapped) {
    using namespace SystemBackend;
    OpenFile* const source = fileOf(file);
    if (read)
        *read = 0;
    if (!source)
        return fail(ERROR_INVALID_HANDLE, FALSE);
    if (!read || overlapped || (!buffer && count > 0))
        return fail(ERROR_INVALID_PARAMETER, FALSE);
    const auto got = source->read({static_cast<std::byte*>(buffer), count});
    if (!got)
        return fail(publishedError(errno), FALSE);
    *read = static_cast<DWORD>(*got);
    return TRUE;
}

DWORD SetFilePointer(HANDLE file, LONG distance, LONG* distanceHigh, DWORD method) {
    using namespace SystemBackend;
    OpenFile* const source = fileOf(file);
    if (!source)
        return fail(ERROR_INVALID_HANDLE, INVALID_SET_FILE_POINTER);
    const auto origin = originOf(*source, method);
    if (!origin)
        return INVALID_SET_FILE_POINTER;
    const auto target = targetOf(*origin, distanceHigh ? joined(*distanceHigh, distance) : distance);
    if (!target)
        return INVALID_SET_FILE_POINTER;
    if (!distanceHigh && *target > 0xFFFFFFFF) // there is no place for the upper half
        return fail(ERROR_INVALID_PARAMETER, INVALID_SET_FILE_POINTER);
    source->seek(*target);
    if (distanceHigh)
        *distanceHigh = static_cast<LONG>(*target >> 32);
    return fail(NO_ERROR, static_cast<DWORD>(*target));
}

BOOL CloseHandle(HANDLE handle) {
    using namespace SystemBackend;
    OpenFile* const file = fileOf(handle);
    if (!file)
        return fail(ERROR_INVALID_HANDLE, FALSE);
    std::unique_ptr<OpenFile>(file).reset();
    return TRUE;
}

} // extern "C"
