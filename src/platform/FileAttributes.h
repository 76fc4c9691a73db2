#pragma once

#include "platform/Export.h"
#include "platform/Stream.h"
#include "platform/System.h"

enum GET_FILEEX_INFO_LEVELS { GetFileExInfoStandard = 0 };

/// What `GetFileAttributesExW` tells; of its fields only those in use.
struct WIN32_FILE_ATTRIBUTE_DATA {
    DWORD dwFileAttributes; ///< as `GetFileAttributesW` tells
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
};

extern "C" {

/// `information` is a `WIN32_FILE_ATTRIBUTE_DATA`; no other level is known. 0 without such a file or folder,
/// and `information` then stays as it is. Paths as `System.h` tells.
KESTO_EXPORT BOOL GetFileAttributesExW(const WCHAR* path, GET_FILEEX_INFO_LEVELS level, void* information);

} // extern "C"
