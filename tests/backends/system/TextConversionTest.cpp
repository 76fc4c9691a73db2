#include "platform/System.h"
#include "system/PathResolver.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>

namespace {

constexpr UINT windowsLatin = 1252;
constexpr int upToTerminator = -1;

TEST(ToUtf8, ConvertsUpToTheTerminator) {
    EXPECT_EQ(SystemBackend::toUtf8(L"gr\u00FCn\U0001F600"), "grün😀");
}

TEST(ToUtf8, GivesNothingForNull) {
    EXPECT_EQ(SystemBackend::toUtf8(nullptr), "");
}

TEST(ToUtf8, ReplacesWhatIsNoCharacter) {
    const wchar_t text[] = {L'a', static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000), -1, L'b', 0};
    EXPECT_EQ(SystemBackend::toUtf8(text), "a\uFFFD\uFFFD\uFFFDb");
}

TEST(MultiByteToWideChar, CountsTheTerminatorOnlyWhenItWasAskedFor) {
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "grün", upToTerminator, nullptr, 0), 5);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "grün", 5, nullptr, 0), 4);
}

TEST(MultiByteToWideChar, WritesTheTerminatorOnlyWhenItWasAskedFor) {
    std::array<WCHAR, 6> out;
    out.fill(L'#');
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "grün", 5, out.data(), 6), 4);
    EXPECT_EQ(std::wstring(out.data(), 6), L"gr\u00FCn##");
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "grün", upToTerminator, out.data(), 6), 5);
    EXPECT_EQ(std::wstring(out.data(), 6), std::wstring(L"gr\u00FCn\0#", 6));
}

TEST(MultiByteToWideChar, FillsABufferToTheLastUnitAndRefusesOneTooShort) {
    std::array<WCHAR, 6> out;
    out.fill(L'#');
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "grün", upToTerminator, out.data(), 5), 5);
    EXPECT_EQ(out[5], L'#');
    out.fill(L'#');
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "grün", upToTerminator, out.data(), 4), 0);
    EXPECT_EQ(out[4], L'#');
}

TEST(MultiByteToWideChar, ReplacesWhatIsNoUtf8) {
    std::array<WCHAR, 8> out{};
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a\xC0\xAF\xE2\x82z", 6, out.data(), 8), 5);
    EXPECT_STREQ(out.data(), L"a\uFFFD\uFFFD\uFFFDz");
}

TEST(MultiByteToWideChar, ConvertsZeroBytesWithinALength) {
    std::array<WCHAR, 3> out{};
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a\0b", 3, out.data(), 3), 3);
    EXPECT_EQ(std::wstring(out.data(), 3), std::wstring(L"a\0b", 3));
}

TEST(MultiByteToWideChar, RefusesWhatItDoesNotKnow) {
    std::array<WCHAR, 8> out{};
    EXPECT_EQ(MultiByteToWideChar(windowsLatin, 0, "a", 1, out.data(), 8), 0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 1, "a", 1, out.data(), 8), 0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, nullptr, 1, out.data(), 8), 0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a", 0, out.data(), 8), 0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a", -2, out.data(), 8), 0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a", 1, nullptr, 8), 0);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a", 1, out.data(), -1), 0);
}

TEST(WideCharToMultiByte, CountsTheTerminatorOnlyWhenItWasAskedFor) {
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"gr\u00FCn", upToTerminator, nullptr, 0, nullptr, nullptr), 6);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"gr\u00FCn", 4, nullptr, 0, nullptr, nullptr), 5);
}

TEST(WideCharToMultiByte, WritesTheTerminatorOnlyWhenItWasAskedFor) {
    std::string out(7, '#');
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"gr\u00FCn", 4, out.data(), 7, nullptr, nullptr), 5);
    EXPECT_EQ(out, "grün##");
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"gr\u00FCn", upToTerminator, out.data(), 7, nullptr, nullptr),
              6);
    EXPECT_EQ(out, std::string("grün\0#", 7));
}

TEST(WideCharToMultiByte, FillsABufferToTheLastByteAndRefusesOneTooShort) {
    std::string out(6, '#');
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a\U0001F600", 2, out.data(), 5, nullptr, nullptr), 5);
    EXPECT_EQ(out, "a😀#");
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a\U0001F600", 2, out.data(), 4, nullptr, nullptr), 0);
    EXPECT_EQ(out[5], '#');
}

TEST(WideCharToMultiByte, ReplacesWhatIsNoCharacter) {
    const WCHAR text[] = {L'a', static_cast<WCHAR>(0xDC00), static_cast<WCHAR>(0x7FFFFFFF), L'z'};
    std::string out(8, '#');
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text, 4, out.data(), 8, nullptr, nullptr), 8);
    EXPECT_EQ(out, "a\uFFFD\uFFFDz");
}

TEST(WideCharToMultiByte, RefusesWhatItDoesNotKnow) {
    std::string out(8, '#');
    BOOL usedDefault = FALSE;
    EXPECT_EQ(WideCharToMultiByte(windowsLatin, 0, L"a", 1, out.data(), 8, nullptr, nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 1, L"a", 1, out.data(), 8, nullptr, nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, nullptr, 1, out.data(), 8, nullptr, nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a", 0, out.data(), 8, nullptr, nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a", 1, nullptr, 8, nullptr, nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a", 1, out.data(), -1, nullptr, nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a", 1, out.data(), 8, "?", nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a", 1, out.data(), 8, nullptr, &usedDefault), 0);
}

} // namespace
