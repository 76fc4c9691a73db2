#include "libs/KestoRenderLib/callout/Overlay.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace CalloutTests;

namespace {

const Params redOnGreen = {{"FillColor", green}, {"BorderColor", red}, {"BorderWidth", 10.0}};

Params with(Params params, const std::string& name, const KestoMediaLib::VectorNodeParam& value) {
    params[name] = value;
    return params;
}

} // namespace

TEST(CalloutRectangle, HasABorderOfItsWidthAroundItsFill) {
    const Overlay overlay = draw({.params = redOnGreen});
    EXPECT_EQ(overlay.painted(), (Extent{0, 0, 200, 100}));
    EXPECT_EQ(overlay.at(0, 0), 0xFFFF0000U);
    EXPECT_EQ(overlay.at(9, 50), 0xFFFF0000U);
    EXPECT_EQ(overlay.at(10, 50), 0xFF00FF00U);
    EXPECT_EQ(overlay.at(189, 89), 0xFF00FF00U);
    EXPECT_EQ(overlay.at(190, 50), 0xFFFF0000U);
}

TEST(CalloutRectangle, IsAnOutlineWithoutAFill) {
    EXPECT_EQ(draw({}).at(100, 50), 0U);
    EXPECT_EQ(draw({}).alphaAt(0, 50), 255);
}

TEST(CalloutRectangle, TranslucentColorsStaySo) {
    const Overlay overlay = draw({.params = {{"FillColor", __int64{0x80FF0000}}, {"BorderWidth", 0.0}}});
    EXPECT_EQ(overlay.at(100, 50), 0x80800000U);
}

TEST(CalloutRectangle, BoldHasAWiderBorder) {
    EXPECT_GT(draw({.style = "bold"}).paintedInRow(50), draw({}).paintedInRow(50));
}

TEST(CalloutRectangle, DashesLeaveGapsInTheBorder) {
    const Overlay whole = draw({});
    const Overlay dashed = draw({.params = {{"DashStyle", std::string("dash")}}});
    EXPECT_LT(dashed.paintedPixels(), whole.paintedPixels() * 3 / 4);
    EXPECT_GT(dashed.paintedPixels(), whole.paintedPixels() / 3);
}

TEST(CalloutRoundedRectangle, CornersAreRoundByTheirRadius) {
    const Params params = with(with(redOnGreen, "BorderWidth", 0.0), "CornerRadius", 30.0);
    const Overlay overlay = draw({.shape = "rounded-rectangle", .params = params});
    EXPECT_EQ(overlay.at(0, 0), 0U);
    EXPECT_EQ(overlay.alphaAt(7, 7), 0);
    EXPECT_EQ(overlay.alphaAt(11, 11), 255);
    EXPECT_EQ(overlay.alphaAt(30, 0), 255);
    EXPECT_EQ(overlay.alphaAt(0, 30), 255);
}

TEST(CalloutRoundedRectangle, ARadiusThatIsTooLargeMakesHalfCircles) {
    const Params params = with(with(redOnGreen, "BorderWidth", 0.0), "CornerRadius", 9000.0);
    const Overlay overlay = draw({.shape = "rounded-rectangle", .params = params});
    EXPECT_EQ(overlay.paintedInRow(50), 200);
    EXPECT_NEAR(overlay.paintedInRow(0), 100, 20);
}

TEST(CalloutEllipse, IsSymmetric) {
    const Overlay overlay = draw({.shape = "ellipse", .params = redOnGreen});
    // Edges are sampled, so that their alphas differ by a sample or so.
    for (int y = 0; y < 50; ++y)
        for (int x = 0; x < 100; ++x) {
            ASSERT_NEAR(overlay.alphaAt(x, y), overlay.alphaAt(199 - x, y), 24) << x << ',' << y;
            ASSERT_NEAR(overlay.alphaAt(x, y), overlay.alphaAt(x, 99 - y), 24) << x << ',' << y;
        }
}

TEST(CalloutEllipse, FillsItsBoxByTheAreaOfAnEllipse) {
    const Overlay overlay = draw({.shape = "ellipse", .params = with(redOnGreen, "BorderWidth", 0.0)});
    EXPECT_EQ(overlay.painted(), (Extent{0, 0, 200, 100}));
    EXPECT_NEAR(overlay.paintedPixels(), M_PI * 100 * 50, 150);
}

TEST(CalloutSpeechBubble, TheTailPointsToItsPlace) {
    const auto tip = [](double x, double y) {
        return draw({.shape = "speech-bubble",
                     .params = {{"FillColor", red}, {"BorderWidth", 0.0}, {"TailX", x}, {"TailY", y}}});
    };
    const Overlay below = tip(0.2, 1.5);
    EXPECT_NEAR(below.painted([](std::uint32_t argb) { return argb >> 24 > 0; }).bottom, 100, 1);
    EXPECT_LT(below.paintedInRow(95), 20);
    EXPECT_GT(below.alphaAt(40, 92), 200);
    const Overlay above = tip(0.8, -0.5);
    EXPECT_LT(above.paintedInRow(4), 20);
    EXPECT_GT(above.alphaAt(160, 8), 200);
    const Overlay right = tip(1.5, 0.5);
    EXPECT_LT(right.paintedInColumn(195), 20);
    EXPECT_GT(right.alphaAt(185, 50), 200);
    const Overlay left = tip(-0.5, 0.5);
    EXPECT_LT(left.paintedInColumn(4), 20);
    EXPECT_GT(left.alphaAt(14, 50), 200);
}

TEST(CalloutSpeechBubble, ATailInsideOfTheBodyIsNone) {
    const Overlay overlay =
        draw({.shape = "speech-bubble",
              .params = {{"FillColor", red}, {"CornerRadius", 0.0}, {"TailX", 0.5}, {"TailY", 0.5}}});
    EXPECT_EQ(overlay.paintedInRow(98), 200);
    EXPECT_EQ(overlay.paintedInRow(2), 200);
}

TEST(CalloutHighlight, IsTranslucentAllOver) {
    const Overlay overlay = draw({.shape = "highlight"});
    for (const auto& [x, y] : {std::pair{0, 0}, {100, 50}, {199, 99}}) {
        EXPECT_GT(overlay.alphaAt(x, y), 40);
        EXPECT_LT(overlay.alphaAt(x, y), 180);
    }
}

TEST(CalloutBlurBox, IsTranslucentFrost) {
    const Overlay overlay = draw({.shape = "blur-box"});
    EXPECT_GT(overlay.alphaAt(100, 50), 80);
    EXPECT_LT(overlay.alphaAt(100, 50), 230);
}

TEST(CalloutSpotlight, IsDarkAroundAClearHole) {
    const Overlay overlay = draw({.shape = "spotlight"});
    EXPECT_EQ(overlay.at(100, 50), 0U);
    EXPECT_EQ(overlay.at(0, 0), 0x99000000U);
    EXPECT_EQ(overlay.at(199, 50), 0x99000000U);
    EXPECT_EQ(overlay.alphaAt(40, 25), 0x99) << "the hole is round";
}

TEST(CalloutSpotlight, TheHoleHasCornersWhenAskedTo) {
    EXPECT_EQ(draw({.shape = "spotlight", .params = {{"CornerRadius", 0.0}}}).at(40, 25), 0U);
}

TEST(CalloutShadow, LiesOnItsSide) {
    const auto shadowed = [](double x, double y) {
        return draw({.params = {{"FillColor", red},
                                {"BorderWidth", 0.0},
                                {"Shadow", true},
                                {"ShadowBlur", 0.0},
                                {"ShadowColor", blue},
                                {"ShadowOffsetX", x},
                                {"ShadowOffsetY", y}}});
    };
    const Overlay lowerRight = shadowed(10, 10);
    EXPECT_EQ(lowerRight.at(0, 0), 0xFFFF0000U);
    EXPECT_EQ(lowerRight.at(189, 89), 0xFFFF0000U);
    EXPECT_EQ(lowerRight.at(199, 99), 0xFF0000FFU);
    EXPECT_EQ(lowerRight.at(199, 5), 0U);
    const Overlay upperLeft = shadowed(-10, -10);
    EXPECT_EQ(upperLeft.at(0, 0), 0xFF0000FFU);
    EXPECT_EQ(upperLeft.at(199, 99), 0xFFFF0000U);
}

TEST(CalloutShadow, FadesOutOverItsBlur) {
    const Overlay overlay = draw({.params = {{"FillColor", red},
                                             {"BorderWidth", 0.0},
                                             {"Shadow", true},
                                             {"ShadowBlur", 20.0},
                                             {"ShadowColor", black},
                                             {"ShadowOffsetX", 0.0},
                                             {"ShadowOffsetY", 0.0}}});
    EXPECT_EQ(overlay.at(20, 50), 0xFFFF0000U);
    EXPECT_GT(overlay.alphaAt(19, 50), overlay.alphaAt(10, 50));
    EXPECT_GT(overlay.alphaAt(10, 50), overlay.alphaAt(3, 50));
    EXPECT_GT(overlay.alphaAt(10, 50), 0);
    EXPECT_LT(overlay.alphaAt(0, 50), 3);
}

TEST(CalloutShadow, OpacityMultipliesThatOfItsColor) {
    const Overlay overlay = draw({.params = {{"FillColor", red},
                                             {"BorderWidth", 0.0},
                                             {"Shadow", true},
                                             {"ShadowBlur", 0.0},
                                             {"ShadowColor", black},
                                             {"ShadowOpacity", 0.25},
                                             {"ShadowOffsetX", 10.0},
                                             {"ShadowOffsetY", 10.0}}});
    EXPECT_NEAR(overlay.alphaAt(199, 99), 64, 1);
}
