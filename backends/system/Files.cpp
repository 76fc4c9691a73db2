#include "platform/System.h"

#include "system/PathResolver.h"
#include "system/WideBuffer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace SystemBackend {

namespace {

/// A path that needs no resolving costs one system call.
int statResolved(const char* path, struct stat& status) {
    if (::stat(path, &status) == 0)
        return 0;
    const int firstError = errno;
    const std::string found = resolvePath(path);
    if (found != path)
        return ::stat(found.c_str(), &status);
    errno = firstError;
    return -1;
}

/// Whether anybody may write to the file: its own mark, not a right of the caller.
bool isReadOnly(const struct stat& status) {
    return (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

} // namespace

} // namespace SystemBackend

extern "C" {

int _stat64i32(const char* path, struct _stat64i32* status) {
    if (!path || !status) {
        errno = EINVAL;
        return -1;
    }
    struct stat found {};
    if (SystemBackend::statResolved(path, found) != 0)
        return -1;
    constexpr off_t largestSize = std::numeric_limits<std::int32_t>::max();
    status->st_mode = static_cast<WORD>(found.st_mode);
    status->st_size = static_cast<std::int32_t>(std::min(found.st_size, largestSize));
    return 0;
}

int _unlink(const char* path) {
    if (!path) {
        errno = EINVAL;
        return -1;
    }
    return ::unlink(SystemBackend::resolvePathForWriting(path).c_str());
}

DWORD GetFileAttributesW(const WCHAR* path) {
    struct stat found {};
    if (!path || SystemBackend::statResolved(SystemBackend::toUtf8(path).c_str(), found) != 0)
        return INVALID_FILE_ATTRIBUTES;
    if (S_ISDIR(found.st_mode))
        return FILE_ATTRIBUTE_DIRECTORY;
    return SystemBackend::isReadOnly(found) ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL;
}

BOOL PathFileExistsW(const WCHAR* path) {
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES ? TRUE : FALSE;
}

DWORD GetTempPathW(DWORD length, WCHAR* buffer) {
    const char* configured =
        std::getenv("TMPDIR"); // NOLINT(concurrency-mt-unsafe): nobody here sets variables
    std::string folder = configured && *configured ? configured : "/tmp";
    if (folder.back() != '/')
        folder += '/';
    const std::wstring text = SystemBackend::toWide(folder);
    const auto needed = static_cast<DWORD>(text.size() + 1);
    if (!buffer || length < needed)
        return needed;
    SystemBackend::copyWithTerminator(text, buffer);
    return needed - 1;
}

} // extern "C"
