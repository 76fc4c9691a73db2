#include "system/Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace SystemBackend {

namespace {

std::u32string decodeAll(std::string_view text) {
    std::u32string characters;
    while (!text.empty()) {
        const Utf8Character next = decodeUtf8(text);
        characters += next.value;
        text.remove_prefix(next.length);
    }
    return characters;
}

std::string encodeAll(std::u32string_view characters) {
    std::string text;
    for (const char32_t character : characters)
        text += encodeUtf8(character).view();
    return text;
}

TEST(DecodeUtf8, KnowsEveryLength) {
    EXPECT_EQ(decodeAll("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), U"a\u00E9\u20AC\U0001F600");
}

TEST(DecodeUtf8, KeepsAZeroByte) {
    EXPECT_EQ(decodeAll(std::string_view("a\0b", 3)), std::u32string(U"a\0b", 3));
}

TEST(DecodeUtf8, ReplacesEachMaximalSubpartOnce) {
    // The example of The Unicode Standard, 3.9, table 3-8.
    EXPECT_EQ(decodeAll("\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64"),
              U"a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd");
}

TEST(DecodeUtf8, ReplacesEveryByteThatCanBeginOrContinueNothing) {
    struct Case {
        const char* what;
        std::string bytes;
    };
    const std::vector<Case> cases = {
        {"overlong in two", "\xC0\x80"},         {"overlong in two, highest", "\xC1\xBF"},
        {"overlong in three", "\xE0\x9F\xBF"},   {"overlong in four", "\xF0\x8F\xBF\xBF"},
        {"high surrogate", "\xED\xA0\x80"},      {"low surrogate", "\xED\xBF\xBF"},
        {"beyond U+10FFFF", "\xF4\x90\x80\x80"}, {"lead of five", "\xF8\x88\x80\x80\x80"},
        {"no lead at all", "\xFE\xFF"},          {"continuations alone", "\x80\xBF"},
    };
    for (const Case& broken : cases)
        EXPECT_EQ(decodeAll(broken.bytes), std::u32string(broken.bytes.size(), replacementCharacter))
            << broken.what;
}

TEST(DecodeUtf8, ReplacesACharacterCutOffAtTheEndOnce) {
    EXPECT_EQ(decodeAll("a\xC3"), U"a\uFFFD");
    EXPECT_EQ(decodeAll("a\xE2\x82"), U"a\uFFFD");
    EXPECT_EQ(decodeAll("a\xF0\x9F\x98"), U"a\uFFFD");
}

TEST(DecodeUtf8, TellsAReplacementFromOneThatWasWritten) {
    EXPECT_TRUE(decodeUtf8("\xEF\xBF\xBD").valid);
    EXPECT_FALSE(decodeUtf8("\xEF\xBF").valid);
}

TEST(EncodeUtf8, ReplacesSurrogatesAndWhatLiesBeyondUnicode) {
    EXPECT_EQ(encodeUtf8(0xD800).view(), "\xEF\xBF\xBD");
    EXPECT_EQ(encodeUtf8(0xDFFF).view(), "\xEF\xBF\xBD");
    EXPECT_EQ(encodeUtf8(0x110000).view(), "\xEF\xBF\xBD");
    EXPECT_EQ(encodeUtf8(0xFFFFFFFF).view(), "\xEF\xBF\xBD");
}

TEST(EncodeUtf8, IsUndoneByDecodingAtEveryLengthsLimits) {
    const std::u32string limits = {0x1, 0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFF, 0x10000, 0x10FFFF};
    const std::string encoded = encodeAll(limits);
    EXPECT_EQ(encoded.size(), 1U + 1 + 2 + 2 + 3 + 3 + 3 + 3 + 4 + 4);
    EXPECT_EQ(decodeAll(encoded), limits);
}

} // namespace

} // namespace SystemBackend
