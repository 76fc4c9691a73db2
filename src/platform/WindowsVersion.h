#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

constexpr DWORD VER_MINORVERSION = 0x01;
constexpr DWORD VER_MAJORVERSION = 0x02;
constexpr DWORD VER_SERVICEPACKMAJOR = 0x20;

constexpr BYTE VER_EQUAL = 1;
constexpr BYTE VER_GREATER = 2;
constexpr BYTE VER_GREATER_EQUAL = 3;
constexpr BYTE VER_LESS = 4;
constexpr BYTE VER_LESS_EQUAL = 5;

using ULONGLONG = std::uint64_t;
using DWORDLONG = std::uint64_t;

struct OSVERSIONINFOEXW {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    WCHAR szCSDVersion[128];
    WORD wServicePackMajor;
    WORD wServicePackMinor;
    WORD wSuiteMask;
    BYTE wProductType;
    BYTE wReserved;
};

extern "C" {

/// `mask` with the comparison for one of the parts above.
KESTO_EXPORT ULONGLONG VerSetConditionMask(ULONGLONG mask, DWORD type, BYTE condition);

/// Whether the version that this platform stands for, 10.0 unless docs/registry-file.md's file says
/// otherwise, compares to the parts of `version` that `types` names as `conditions` asks: the first that
/// differs decides, major before minor before service pack, which is always 0. FALSE with
/// ERROR_OLD_WIN_VERSION as last error; or with ERROR_BAD_ARGUMENTS for other parts, or one without a
/// comparison. Any thread.
KESTO_EXPORT BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* version, DWORD types, DWORDLONG conditions);

} // extern "C"
