#include "libs/KestoRenderLib/callout/Overlay.h"

#include <gtest/gtest.h>

using namespace CalloutTests;

namespace {

Params saying(const std::string& text, Params params = {}) {
    params.emplace("Text", text);
    params.emplace("TextColor", black);
    params.emplace("FontSize", 20.0);
    return params;
}

Overlay text(const std::string& words, const Params& params = {}) {
    return draw({.shape = "text", .params = saying(words, params)});
}

Extent inkOf(const std::string& words, const Params& params = {}) {
    return text(words, params).painted();
}

const std::string sentence = "Many words that need several lines in a box of this width";

} // namespace

TEST(CalloutText, LiesInItsBox) {
    const Extent ink = inkOf("Words");
    EXPECT_GT(ink.width(), 20);
    EXPECT_GT(ink.left, 0);
    EXPECT_LT(ink.right, 200);
    EXPECT_GE(ink.top, 0);
    EXPECT_LE(ink.bottom, 100);
}

TEST(CalloutText, IsInTheMiddleByItself) {
    const Extent ink = inkOf("HHH");
    EXPECT_NEAR(ink.left, 200 - ink.right, 3);
    EXPECT_NEAR(ink.top, 100 - ink.bottom, 8);
}

TEST(CalloutText, AlignsAcross) {
    const auto at = [](const std::string& side) { return inkOf("HHH", {{"Alignment", side}}); };
    EXPECT_LT(at("left").left, 5);
    EXPECT_GT(at("right").right, 195);
    EXPECT_GT(at("center").left, 50);
    EXPECT_LT(at("center").right, 150);
}

TEST(CalloutText, AlignsDown) {
    const auto at = [](const std::string& side) { return inkOf("HHH", {{"VerticalAlignment", side}}); };
    EXPECT_LT(at("top").bottom, 40);
    EXPECT_GT(at("bottom").top, 60);
    EXPECT_GT(at("middle").top, 25);
    EXPECT_LT(at("middle").bottom, 75);
}

TEST(CalloutText, PaddingKeepsItFromTheBorder) {
    const Extent ink = inkOf("HHH", {{"Alignment", std::string("left")}, {"Padding", 30.0}});
    EXPECT_GE(ink.left, 30);
    EXPECT_LT(ink.left, 36);
}

TEST(CalloutText, WrapsIntoLines) {
    const Extent wrapped = inkOf(sentence);
    EXPECT_LE(wrapped.right, 200);
    EXPECT_GT(wrapped.height(), 2 * inkOf("Many").height());
}

TEST(CalloutText, WithoutWrappingItIsOneLineThatIsMadeSmaller) {
    const Extent line = inkOf(sentence, {{"Wrap", false}});
    EXPECT_LT(line.height(), inkOf("Many").height());
    EXPECT_LE(line.right, 200);
    EXPECT_GT(line.width(), 150);
}

TEST(CalloutText, LineBreaksAreKept) {
    EXPECT_GT(inkOf("H\nH").height(), 2 * inkOf("H").height());
    EXPECT_GT(inkOf("H\nH", {{"Wrap", false}}).height(), 2 * inkOf("H").height());
}

TEST(CalloutText, OneThatIsTooLargeIsMadeToFit) {
    const Extent ink = inkOf("Word", {{"FontSize", 500.0}});
    EXPECT_GT(ink.left, 0);
    EXPECT_LT(ink.right, 200);
    EXPECT_GT(ink.top, 0);
    EXPECT_LT(ink.bottom, 100);
    EXPECT_GT(ink.width(), 100);
}

TEST(CalloutText, OneThatMustNotBeMadeSmallerIsCutOffAtThePadding) {
    const Extent ink =
        inkOf(sentence + " " + sentence, {{"FitText", false}, {"FontSize", 60.0}, {"Padding", 10.0}});
    EXPECT_GE(ink.left, 10);
    EXPECT_LE(ink.right, 190);
    EXPECT_GE(ink.top, 10);
    EXPECT_LE(ink.bottom, 90);
}

TEST(CalloutText, TheFontSizeDecidesTheHeight) {
    const int small = inkOf("H", {{"FontSize", 20.0}}).height();
    const int large = inkOf("H", {{"FontSize", 60.0}}).height();
    EXPECT_NEAR(large, 3 * small, 4);
}

TEST(CalloutText, BoldAndHeavierWeightsHaveMoreInk) {
    const int plain = text("HHHH").paintedPixels();
    EXPECT_GT(text("HHHH", {{"FontBold", true}}).paintedPixels(), plain);
    EXPECT_GT(text("HHHH", {{"FontWeight", 700.0}}).paintedPixels(), plain);
    EXPECT_GT(draw({.shape = "text", .params = saying("HHHH"), .style = "bold"}).paintedPixels(), plain);
}

TEST(CalloutText, ItalicLeans) {
    const auto leaning = [](const Params& params) {
        const Overlay overlay = text("l", params);
        const Extent ink = overlay.painted();
        return ink.width() * 10 / ink.height();
    };
    EXPECT_GT(leaning({{"FontItalic", true}, {"FontSize", 80.0}}), leaning({{"FontSize", 80.0}}));
}

TEST(CalloutText, AnUnderlineLiesBelowTheLetters) {
    const Extent plain = inkOf("HHH");
    const Extent underlined = inkOf("HHH", {{"FontUnderline", true}});
    EXPECT_GT(underlined.bottom, plain.bottom);
    EXPECT_GE(underlined.width(), plain.width());
}

TEST(CalloutText, HasItsColor) {
    const Overlay overlay = text("HHH", {{"TextColor", red}, {"FontSize", 60.0}});
    EXPECT_NE(overlay.painted([](std::uint32_t argb) { return argb == 0xFFFF0000U; }), Extent());
}

TEST(CalloutText, CanBeReadOnItsFill) {
    const auto inkOn = [](__int64 fill, std::uint32_t color) {
        return draw({.params = {{"Text", std::string("HHH")}, {"FillColor", fill}, {"FontSize", 60.0}}})
            .painted([color](std::uint32_t argb) { return argb == color; });
    };
    EXPECT_NE(inkOn(__int64{0xFF101040}, 0xFFFFFFFFU), Extent());
    EXPECT_NE(inkOn(__int64{0xFFFFFFA0}, 0xFF1F2328U), Extent());
}

TEST(CalloutText, StandsInsideOfEveryShapeThatHasAnInside) {
    for (const std::string shape :
         {"text-arrow", "rectangle", "rounded-rectangle", "ellipse", "speech-bubble"}) {
        const Params params = {{"Text", sentence}, {"TextColor", blue}, {"FillColor", green}};
        const Overlay overlay = draw({.shape = shape, .params = params});
        const Extent ink =
            overlay.painted([](std::uint32_t argb) { return (argb & 255) > 128 && (argb >> 8 & 255) < 128; });
        ASSERT_NE(ink, Extent()) << shape;
        for (const auto& [x, y] : {std::pair{ink.left, ink.top},
                                   {ink.right - 1, ink.top},
                                   {ink.left, ink.bottom - 1},
                                   {ink.right - 1, ink.bottom - 1}})
            EXPECT_EQ(overlay.alphaAt(x, y), 255) << shape << " at " << x << ',' << y;
    }
}

TEST(CalloutText, AnEmptyOneWithoutABoxDrawsNothing) {
    EXPECT_TRUE(text("").isEmpty());
    EXPECT_TRUE(text(" \n\t").isEmpty());
    EXPECT_FALSE(text("", {{"FillColor", red}}).isEmpty());
    EXPECT_FALSE(text("", {{"BorderColor", red}}).isEmpty());
}

TEST(CalloutText, BytesThatAreNoTextDoNoHarm) {
    EXPECT_FALSE(text("\xFF\xFE\x80 ok \xE2\x82").isEmpty());
}

TEST(CalloutText, AnEndlessTextIsDrawnUpToALimit) {
    std::string endless;
    for (int word = 0; word < 50000; ++word)
        endless += "w\xC3\xB6rd ";
    EXPECT_TRUE(text(endless).hasAnything());
}

TEST(CalloutText, ATooSmallBoxHasNoRoomForIt) {
    const Overlay overlay = draw({.params = saying("Words", {{"Padding", 80.0}})});
    EXPECT_EQ(overlay.painted([](std::uint32_t argb) { return argb == 0xFF000000U; }), Extent());
}

TEST(CalloutText, BreaksAtTheSameWordsAtEveryScale) {
    const auto linesAt = [](float scale) {
        const Overlay overlay = draw({.shape = "text", .params = saying(sentence), .scale = scale});
        int lines = 0;
        bool inLine = false;
        for (int y = 0; y < overlay.height(); ++y) {
            const bool has = overlay.paintedInRow(y) > 0;
            lines += has && !inLine ? 1 : 0;
            inLine = has;
        }
        return std::pair(lines, static_cast<float>(overlay.painted().width()) / scale);
    };
    EXPECT_EQ(linesAt(2).first, linesAt(4).first);
    EXPECT_NEAR(linesAt(2).second, linesAt(4).second, 2);
}
