#include "inspection/source/WindowsVersionProvider.h"

#include "platform/WindowsVersion.h"

#include <initializer_list>

bool WindowsVersionProvider::IsWindows8OrLater() const {
    OSVERSIONINFOEXW windows8{};
    windows8.dwOSVersionInfoSize = sizeof(windows8);
    windows8.dwMajorVersion = 6;
    windows8.dwMinorVersion = 2;
    windows8.wServicePackMajor = 0;
    ULONGLONG conditions = 0;
    for (const DWORD part : {VER_MAJORVERSION, VER_MINORVERSION, VER_SERVICEPACKMAJOR})
        conditions = VerSetConditionMask(conditions, part, VER_GREATER_EQUAL);
    return VerifyVersionInfoW(&windows8, VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR,
                              conditions) != FALSE;
}
