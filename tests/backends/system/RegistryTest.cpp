#include "platform/Registry.h"
#include "platform/LastError.h"

#include "backends/system/RegistryUser.h"
#include "system/RegistryFile.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>

namespace {

using SystemBackend::findValue;
using SystemBackend::parseRegistryKey;

const std::string someKey = "HKEY_CURRENT_USER\\Software\\Some";

/// A key opened for the test.
class TestKey {
public:
    TestKey(HKEY root, const WCHAR* name)
        : status(RegOpenKeyExW(root, name, 0, KEY_READ, &key)) {}
    ~TestKey() {
        if (key)
            RegCloseKey(key);
    }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;

    LSTATUS opened() const { return status; }
    HKEY get() const { return key; }

    /// -1 when it is missing or of another type.
    std::int64_t number(const WCHAR* name) const {
        DWORD type = 0;
        DWORD value = 0;
        DWORD size = sizeof(value);
        const LSTATUS result =
            RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
        return result == ERROR_SUCCESS && type == REG_DWORD ? std::int64_t{value} : -1;
    }

private:
    HKEY key = nullptr;
    LSTATUS status;
};

/// The value `x` of `someKey` in such a line; "none" when the line is none.
std::string valueOfLine(const std::string& line) {
    const auto values = parseRegistryKey("[" + someKey + "]\n" + line + "\n", someKey);
    const auto* value = values ? findValue(*values, "x") : nullptr;
    if (!value)
        return "none";
    const auto* number = std::get_if<std::uint32_t>(&value->content);
    return number ? std::to_string(*number) : '"' + std::get<std::string>(value->content) + '"';
}

TEST(RegistryFile, HasNumbersOfEightHexadecimalDigits) {
    EXPECT_EQ(valueOfLine("x=dword:00000001"), "1");
    EXPECT_EQ(valueOfLine("x=dword:DeadBeef"), "3735928559");
    EXPECT_EQ(valueOfLine("  x = dword:0000000a\t\r"), "10");
}

TEST(RegistryFile, HasTextsBetweenQuotesWithoutEscapes) {
    EXPECT_EQ(valueOfLine("x=\"a b\""), "\"a b\"");
    EXPECT_EQ(valueOfLine("x=\"\""), "\"\"");
    EXPECT_EQ(valueOfLine("x=\"C:\\new \"=\" folder\""), "\"C:\\new \"=\" folder\"");
}

TEST(RegistryFile, PassesOverMalformedLines) {
    for (const char* line :
         {"x", "x=", "x=1", "x=dword:1", "x=dword:000000001", "x=dword:0000000g", "x=\"", "x=text\"",
          "=dword:00000001", "; x=dword:00000001", "# x=\"a\"", "x=dword:-0000001", "x=DWORD:00000001"})
        EXPECT_EQ(valueOfLine(line), "none") << line;
}

TEST(RegistryFile, GoesOnBehindAMalformedLine) {
    EXPECT_EQ(valueOfLine("x=rubbish\n\n[\nx=dword:00000002"), "2");
}

TEST(RegistryFile, LetsTheLastValueOfANameCount) {
    EXPECT_EQ(valueOfLine("x=dword:00000001\nX=dword:00000002"), "2");
}

TEST(RegistryFile, JoinsTheSectionsOfOneKey) {
    const auto values = parseRegistryKey(
        "[HKEY_A\\k]\na=dword:00000001\n[HKEY_A\\l]\nc=\"\"\n[hkey_a\\K]\nb=\"\"", "HKEY_A\\k");
    ASSERT_TRUE(values.has_value());
    EXPECT_TRUE(findValue(*values, "a"));
    EXPECT_TRUE(findValue(*values, "b"));
    EXPECT_FALSE(findValue(*values, "c"));
}

TEST(RegistryFile, HasAKeyWithoutValues) {
    EXPECT_TRUE(parseRegistryKey("[K]", "K").has_value());
    EXPECT_FALSE(parseRegistryKey("[K]", "L").has_value());
    EXPECT_FALSE(parseRegistryKey("", "").has_value());
}

TEST(RegistryFile, MayBeginWithAByteOrderMark) {
    EXPECT_TRUE(parseRegistryKey("\xEF\xBB\xBF[K]\n", "K").has_value());
}

TEST(RegistryFile, GivesNothingBeforeItsFirstSection) {
    const auto values = parseRegistryKey("x=dword:00000001\n[K]\n", "K");
    ASSERT_TRUE(values.has_value());
    EXPECT_TRUE(values->empty());
}

TEST(Registry, GivesANumberOfAKeyInAnyCase) {
    const RegistryUser user("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Maker\\App]\nMode=dword:00000001\n");
    const TestKey key(HKEY_LOCAL_MACHINE, L"Software\\maker\\APP");
    ASSERT_EQ(key.opened(), ERROR_SUCCESS);
    EXPECT_EQ(key.number(L"mode"), 1);
    EXPECT_EQ(key.number(L"other"), -1);
}

TEST(Registry, KeepsItsTwoRootsApart) {
    const RegistryUser user("[HKEY_CURRENT_USER\\App]\nMode=dword:00000001\n");
    EXPECT_EQ(TestKey(HKEY_LOCAL_MACHINE, L"App").opened(), static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(TestKey(HKEY_CURRENT_USER, L"App").opened(), ERROR_SUCCESS);
}

TEST(Registry, OpensAKeyBelowAnother) {
    const RegistryUser user("[HKEY_CURRENT_USER\\A]\n[HKEY_CURRENT_USER\\A\\B]\nx=dword:00000007\n");
    const TestKey outer(HKEY_CURRENT_USER, L"A");
    ASSERT_EQ(outer.opened(), ERROR_SUCCESS);
    EXPECT_EQ(TestKey(outer.get(), L"b").number(L"x"), 7);
    EXPECT_EQ(TestKey(outer.get(), nullptr).opened(), ERROR_SUCCESS);
}

TEST(Registry, GivesATextWithItsTerminatorInWideCharacters) {
    const RegistryUser user("[HKEY_CURRENT_USER\\A]\nx=\"h\xC3\xA9\"\n");
    const TestKey key(HKEY_CURRENT_USER, L"A");
    DWORD type = 0;
    DWORD size = 0;
    ASSERT_EQ(RegQueryValueExW(key.get(), L"x", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, REG_SZ);
    ASSERT_EQ(size, 3 * sizeof(WCHAR));
    std::array<WCHAR, 3> text{};
    ASSERT_EQ(
        RegQueryValueExW(key.get(), L"x", nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &size),
        ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(text.data()), L"h\u00E9");
}

TEST(Registry, AsksForALargerBuffer) {
    const RegistryUser user("[HKEY_CURRENT_USER\\A]\nx=dword:00000007\n");
    const TestKey key(HKEY_CURRENT_USER, L"A");
    std::array<BYTE, 4> bytes{1, 2, 3, 4};
    DWORD size = 3;
    EXPECT_EQ(RegQueryValueExW(key.get(), L"x", nullptr, nullptr, bytes.data(), &size),
              static_cast<LSTATUS>(ERROR_MORE_DATA));
    EXPECT_EQ(size, 4U);
    EXPECT_EQ(bytes, (std::array<BYTE, 4>{1, 2, 3, 4}));
}

TEST(Registry, IsReadAnewWithEachOpeningAndKeptByTheKey) {
    const RegistryUser user("[HKEY_CURRENT_USER\\A]\nx=dword:00000007\n");
    const TestKey before(HKEY_CURRENT_USER, L"A");
    user.write("[HKEY_CURRENT_USER\\A]\nx=dword:00000008\n");
    EXPECT_EQ(before.number(L"x"), 7);
    EXPECT_EQ(TestKey(HKEY_CURRENT_USER, L"A").number(L"x"), 8);
}

TEST(Registry, HasNoKeysWithoutItsFile) {
    const RegistryUser user("[HKEY_CURRENT_USER\\A]\n");
    user.remove();
    EXPECT_EQ(TestKey(HKEY_CURRENT_USER, L"A").opened(), static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND));
}

TEST(Registry, LiesInTheHomeFolderUnlessToldOtherwise) {
    const TempFolder home;
    home.file(".config/kesto-thumbnailer/registry.ini", "[HKEY_CURRENT_USER\\A]\n");
    const EnvironmentVariable folder("HOME", home.path().c_str());
    for (const char* told : {static_cast<const char*>(nullptr), "", "relative/folder"}) {
        const EnvironmentVariable configuration("XDG_CONFIG_HOME", told);
        EXPECT_EQ(TestKey(HKEY_CURRENT_USER, L"A").opened(), ERROR_SUCCESS);
    }
}

TEST(Registry, HasNoKeysWithoutAHome) {
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", nullptr);
    const EnvironmentVariable folder("HOME", nullptr);
    EXPECT_EQ(TestKey(HKEY_CURRENT_USER, L"A").opened(), static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND));
}

TEST(Registry, DoesNotWaitForAPipeInPlaceOfItsFile) {
    const TempFolder folder;
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", folder.path().c_str());
    folder.folder("kesto-thumbnailer");
    ASSERT_EQ(::mkfifo((folder / "kesto-thumbnailer/registry.ini").c_str(), 0600), 0);
    EXPECT_EQ(TestKey(HKEY_CURRENT_USER, L"A").opened(), static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND));
}

TEST(Registry, RefusesWhatItDoesNotKnow) {
    const RegistryUser user("[HKEY_CURRENT_USER\\A]\nx=dword:00000007\n");
    HKEY key = nullptr;
    constexpr REGSAM keyWrite = 0x20006;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"A", 0, keyWrite, &key),
              static_cast<LSTATUS>(ERROR_ACCESS_DENIED));
    EXPECT_EQ(key, nullptr);
    EXPECT_EQ(RegOpenKeyExW(nullptr, L"A", 0, KEY_READ, &key), static_cast<LSTATUS>(ERROR_INVALID_HANDLE));
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"A", 0, KEY_READ, nullptr),
              static_cast<LSTATUS>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(RegQueryValueExW(HKEY_CURRENT_USER, L"x", nullptr, nullptr, nullptr, nullptr),
              static_cast<LSTATUS>(ERROR_INVALID_HANDLE));
    EXPECT_EQ(RegCloseKey(nullptr), static_cast<LSTATUS>(ERROR_INVALID_HANDLE));
    EXPECT_EQ(RegCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
    const TestKey opened(HKEY_CURRENT_USER, L"A");
    std::array<BYTE, 4> bytes{};
    EXPECT_EQ(RegQueryValueExW(opened.get(), L"x", nullptr, nullptr, bytes.data(), nullptr),
              static_cast<LSTATUS>(ERROR_INVALID_PARAMETER));
}

} // namespace
