#include "system/CaseFolding.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>

namespace SystemBackend {

namespace {

TEST(FoldCase, LeavesWhatHasNoCase) {
    for (const char32_t character : U"09_-[`{@ \u00D7\u4E2D\U0001F600")
        EXPECT_EQ(foldCase(character), character);
}

TEST(FoldCase, AgreesWithTheSystemsTablesForLatinGreekAndCyrillic) {
    const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    ASSERT_NE(unicode, nullptr);
    constexpr char32_t capitalDottedI = 0x130; // its small form here would be Turkic
    for (char32_t character = 0; character < 0x530; ++character) {
        if (character == capitalDottedI)
            continue;
        const auto small = static_cast<char32_t>(::towlower_l(static_cast<wint_t>(character), unicode));
        EXPECT_EQ(foldCase(character), foldCase(small))
            << "U+" << std::hex << static_cast<unsigned>(character);
    }
    ::freelocale(unicode);
}

TEST(FoldCase, GivesAResultThatStaysWhenFoldedAgain) {
    for (char32_t character = 0; character < 0x110000; ++character)
        ASSERT_EQ(foldCase(foldCase(character)), foldCase(character)) << static_cast<unsigned>(character);
}

TEST(FoldCase, ReachesTheLastScriptsOfTheTable) {
    EXPECT_EQ(foldCase(0xFF21), 0xFF41U);   // fullwidth A
    EXPECT_EQ(foldCase(0x10400), 0x10428U); // Deseret
    EXPECT_EQ(foldCase(0x1E921), 0x1E943U); // Adlam, last of all
    EXPECT_EQ(foldCase(0x1E922), 0x1E922U);
}

TEST(FoldCase, StepsOverSmallLettersWhereTheyAlternate) {
    EXPECT_EQ(foldCase(0x0100), 0x0101U);
    EXPECT_EQ(foldCase(0x0101), 0x0101U);
    EXPECT_EQ(foldCase(0x0102), 0x0103U);
}

TEST(EqualIgnoringCase, ComparesWholeTexts) {
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_TRUE(equalIgnoringCase("PhOtO.JPG", "photo.jpg"));
    EXPECT_FALSE(equalIgnoringCase("photo", "photos"));
    EXPECT_FALSE(equalIgnoringCase("photos", "photo"));
    EXPECT_FALSE(equalIgnoringCase("photo", "phata"));
}

TEST(EqualIgnoringCase, KnowsOtherScripts) {
    EXPECT_TRUE(equalIgnoringCase("ÄÖÜ Éclair", "äöü éCLAIR"));
    EXPECT_TRUE(equalIgnoringCase("ΣΊΣΥΦΟΣ", "σίσυφος")); // the final sigma, too
    EXPECT_TRUE(equalIgnoringCase("Привет", "ПРИВЕТ"));
}

TEST(EqualIgnoringCase, KnowsPairsOfDifferentLengthInBytes) {
    EXPECT_TRUE(equalIgnoringCase("\u212A", "k")); // the Kelvin sign
    EXPECT_TRUE(equalIgnoringCase("\u1E9E", "\u00DF"));
}

TEST(EqualIgnoringCase, DoesNotSpellOut) {
    EXPECT_FALSE(equalIgnoringCase("Straße", "STRASSE"));
}

TEST(EqualIgnoringCase, TellsComposedFromDecomposed) {
    EXPECT_FALSE(equalIgnoringCase("\u00E9", "e\u0301"));
}

TEST(EqualIgnoringCase, TakesBytesThatAreNoUtf8ForThemselves) {
    EXPECT_TRUE(equalIgnoringCase("A\xE9.png", "a\xE9.PNG"));
    EXPECT_FALSE(equalIgnoringCase("\xE9", "\xC9"));
    EXPECT_FALSE(equalIgnoringCase("\xE9", "\u00E9"));
    EXPECT_FALSE(equalIgnoringCase("\xFF", "\uFFFD"));
}

} // namespace

} // namespace SystemBackend
