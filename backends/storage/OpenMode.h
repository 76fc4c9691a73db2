#pragma once

#include "platform/Stream.h"

namespace StorageBackend {

constexpr bool isForReading(DWORD mode) {
    return (mode & (STGM_WRITE | STGM_READWRITE)) == STGM_READ && (mode & STGM_CREATE) == 0;
}
constexpr bool isForWriting(DWORD mode) {
    const DWORD access = mode & (STGM_WRITE | STGM_READWRITE);
    return access == STGM_WRITE || access == STGM_READWRITE;
}
/// As elements inside a file have to be opened.
constexpr bool isExclusive(DWORD mode) {
    constexpr DWORD sharing = 0x70;
    return (mode & sharing) == STGM_SHARE_EXCLUSIVE;
}

} // namespace StorageBackend
