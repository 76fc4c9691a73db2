#include "scheduling/imagefile/TextConversion.h"

#include <gtest/gtest.h>

namespace KestoThumbnailer {

TEST(TextConversion, Utf8BecomesWideAndBack) {
    const std::string narrow = "Gr\xC3\xB6\xC3\x9F"
                               "e \xE2\x82\xAC \xF0\x9F\x8E\xAC";
    const std::wstring wide = L"Gr\u00F6\u00DFe \u20AC \U0001F3AC";
    EXPECT_EQ(WideFromUtf8(narrow), wide);
    EXPECT_EQ(Utf8FromWide(wide), narrow);
}

TEST(TextConversion, AnEmptyTextStaysEmpty) {
    EXPECT_EQ(WideFromUtf8(""), L"");
    EXPECT_EQ(Utf8FromWide(L""), "");
}

TEST(TextConversion, OnlyAsciiLettersChangeTheirCase) {
    EXPECT_EQ(UpperAscii(L"pNg_1 \u00E9\u0131"), L"PNG_1 \u00E9\u0131");
    EXPECT_EQ(LowerAscii(L"PdF_1 \u00C9\u212A"), L"pdf_1 \u00C9\u212A");
}

} // namespace KestoThumbnailer
