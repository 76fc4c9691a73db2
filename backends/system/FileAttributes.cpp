#include "platform/FileAttributes.h"

#include "system/PathResolver.h"

#include <sys/stat.h>

#include <cstdint>

namespace {

constexpr unsigned lowBits = 32;

FILETIME fileTimeOf(const struct timespec& time) {
    constexpr std::uint64_t secondsFrom1601To1970 = 11'644'473'600;
    constexpr std::uint64_t unitsPerSecond = 10'000'000;
    constexpr std::int64_t nanosecondsPerUnit = 100;
    // A file may claim any time; one that no such number holds wraps, and still differs from others.
    const std::uint64_t units =
        (static_cast<std::uint64_t>(time.tv_sec) + secondsFrom1601To1970) * unitsPerSecond +
        static_cast<std::uint64_t>(time.tv_nsec / nanosecondsPerUnit);
    return {static_cast<DWORD>(units), static_cast<DWORD>(units >> lowBits)};
}

} // namespace

extern "C" BOOL GetFileAttributesExW(const WCHAR* path, GET_FILEEX_INFO_LEVELS level, void* information) {
    struct stat status {};
    if (!path || !information || level != GetFileExInfoStandard ||
        ::stat(SystemBackend::resolvePath(SystemBackend::toUtf8(path)).c_str(), &status) != 0)
        return 0;
    const auto size = static_cast<std::uint64_t>(status.st_size);
    *static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(information) = {.dwFileAttributes = GetFileAttributesW(path),
                                                             .ftLastWriteTime = fileTimeOf(status.st_mtim),
                                                             .nFileSizeHigh =
                                                                 static_cast<DWORD>(size >> lowBits),
                                                             .nFileSizeLow = static_cast<DWORD>(size)};
    return 1;
}
