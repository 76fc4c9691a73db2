#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

// Why a call failed, for the calls that say so: each thread has its own, and a call that succeeds leaves the
// former one unless it is told otherwise.

constexpr DWORD NO_ERROR = 0;
constexpr LONG ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_NOT_SUPPORTED = 50;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
constexpr DWORD ERROR_BAD_ARGUMENTS = 160;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_MORE_DATA = 234;
constexpr DWORD ERROR_IO_DEVICE = 1117;
constexpr DWORD ERROR_OLD_WIN_VERSION = 1150;

extern "C" {

KESTO_EXPORT DWORD GetLastError();
KESTO_EXPORT void SetLastError(DWORD error);

} // extern "C"
