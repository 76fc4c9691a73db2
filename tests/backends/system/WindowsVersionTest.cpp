#include "platform/WindowsVersion.h"
#include "platform/LastError.h"

#include "backends/system/RegistryUser.h"

#include <gtest/gtest.h>

namespace {

struct Asked {
    DWORD major;
    DWORD minor;
    WORD servicePack;
};

constexpr DWORD allParts = VER_MAJORVERSION | VER_MINORVERSION | VER_SERVICEPACKMAJOR;

/// Whether the platform compares so to what is asked, in all of `parts`.
bool compares(const Asked& asked, BYTE condition, DWORD parts = allParts) {
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    version.dwMajorVersion = asked.major;
    version.dwMinorVersion = asked.minor;
    version.wServicePackMajor = asked.servicePack;
    ULONGLONG conditions = 0;
    for (const DWORD part : {VER_MAJORVERSION, VER_MINORVERSION, VER_SERVICEPACKMAJOR})
        conditions = VerSetConditionMask(conditions, part, condition);
    SetLastError(NO_ERROR);
    const bool result = VerifyVersionInfoW(&version, parts, conditions) == TRUE;
    EXPECT_EQ(GetLastError(), result ? NO_ERROR : ERROR_OLD_WIN_VERSION);
    return result;
}

TEST(WindowsVersion, IsTenUnlessToldOtherwise) {
    const RegistryUser user("");
    EXPECT_TRUE(compares({10, 0, 0}, VER_EQUAL));
    user.remove();
    EXPECT_TRUE(compares({10, 0, 0}, VER_EQUAL));
}

TEST(WindowsVersion, ComesFromTheRegistryFile) {
    const RegistryUser user(versionText("00000006", "00000001"));
    EXPECT_TRUE(compares({6, 1, 0}, VER_EQUAL));
}

TEST(WindowsVersion, IsNotThatOfATextValue) {
    const RegistryUser user("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion]\n"
                            "CurrentMajorVersionNumber=\"6\"\n");
    EXPECT_TRUE(compares({10, 0, 0}, VER_EQUAL));
}

TEST(WindowsVersion, ComparesTheFirstPartThatDiffers) {
    const RegistryUser user(versionText("00000006", "00000002"));
    EXPECT_TRUE(compares({6, 2, 0}, VER_GREATER_EQUAL));
    EXPECT_TRUE(compares({6, 1, 5}, VER_GREATER_EQUAL));
    EXPECT_TRUE(compares({5, 9, 9}, VER_GREATER_EQUAL));
    EXPECT_FALSE(compares({6, 2, 1}, VER_GREATER_EQUAL));
    EXPECT_FALSE(compares({6, 3, 0}, VER_GREATER_EQUAL));
    EXPECT_FALSE(compares({7, 0, 0}, VER_GREATER_EQUAL));
}

TEST(WindowsVersion, KnowsFiveComparisons) {
    const RegistryUser user("");
    EXPECT_TRUE(compares({10, 0, 0}, VER_LESS_EQUAL));
    EXPECT_FALSE(compares({10, 0, 0}, VER_LESS));
    EXPECT_FALSE(compares({10, 0, 0}, VER_GREATER));
    EXPECT_TRUE(compares({10, 1, 0}, VER_LESS));
    EXPECT_TRUE(compares({6, 3, 0}, VER_GREATER));
    EXPECT_FALSE(compares({6, 3, 0}, VER_EQUAL));
    EXPECT_FALSE(compares({6, 3, 0}, VER_LESS_EQUAL));
}

TEST(WindowsVersion, LooksAtTheNamedPartsAlone) {
    const RegistryUser user("");
    EXPECT_TRUE(compares({10, 7, 7}, VER_EQUAL, VER_MAJORVERSION));
    EXPECT_TRUE(compares({3, 0, 7}, VER_EQUAL, VER_MINORVERSION));
}

TEST(WindowsVersion, RefusesPartsAndComparisonsThatItDoesNotKnow) {
    const RegistryUser user("");
    OSVERSIONINFOEXW version{};
    constexpr DWORD buildNumber = 0x4;
    const ULONGLONG conditions = VerSetConditionMask(0, buildNumber, VER_EQUAL);
    for (const DWORD parts : {DWORD{0}, buildNumber, VER_MAJORVERSION}) {
        SetLastError(NO_ERROR);
        EXPECT_FALSE(VerifyVersionInfoW(&version, parts, conditions));
        EXPECT_EQ(GetLastError(), ERROR_BAD_ARGUMENTS) << parts;
    }
    EXPECT_FALSE(VerifyVersionInfoW(nullptr, buildNumber, conditions));
}

} // namespace
