#include "libs/KestoRenderLib/callout/Overlay.h"

#include <gtest/gtest.h>

using namespace CalloutTests;

namespace {

Sketch arrow(double startX, double startY, double endX, double endY) {
    return {.shape = "arrow",
            .params = {{"StartX", startX}, {"StartY", startY}, {"EndX", endX}, {"EndY", endY}},
            .width = 200,
            .height = 200};
}

Params lineOf(double width) {
    return {{"BorderColor", red}, {"StrokeWidth", width}};
}

} // namespace

TEST(CalloutArrow, PointsToTheRightByItself) {
    const Overlay overlay = draw({.shape = "arrow"});
    EXPECT_GT(overlay.paintedInColumn(180), 2 * overlay.paintedInColumn(40));
    EXPECT_EQ(overlay.at(0, 0), 0U);
}

TEST(CalloutArrow, TheHeadIsAtTheEnd) {
    const Overlay left = draw(arrow(1, 0.5, 0, 0.5));
    EXPECT_GT(left.paintedInColumn(36), 2 * left.paintedInColumn(150));
    const Overlay up = draw(arrow(0.5, 1, 0.5, 0));
    EXPECT_GT(up.paintedInRow(36), 2 * up.paintedInRow(150));
    const Overlay down = draw(arrow(0.5, 0, 0.5, 1));
    EXPECT_GT(down.paintedInRow(163), 2 * down.paintedInRow(50));
}

TEST(CalloutArrow, TheHeadGetsNarrowerTowardsItsTip) {
    const Overlay overlay = draw({.shape = "arrow", .params = {{"HeadSize", 40.0}, {"StrokeWidth", 6.0}}});
    int last = 100;
    for (int x = 162; x < 190; x += 6) {
        EXPECT_LT(overlay.paintedInColumn(x), last) << x;
        last = overlay.paintedInColumn(x);
    }
}

TEST(CalloutArrow, LiesWhollyInItsBox) {
    for (const auto& [endX, endY] : {std::pair{1.0, 1.0}, {0.0, 1.0}, {1.0, 0.0}, {0.5, 1.0}}) {
        const Overlay overlay = draw(arrow(1 - endX, 1 - endY, endX, endY));
        // A shape that was cut off would touch the border along its whole width.
        for (const int border : {0, 199}) {
            EXPECT_LE(overlay.paintedInRow(border), 8);
            EXPECT_LE(overlay.paintedInColumn(border), 8);
        }
        EXPECT_GT(overlay.painted().width() + overlay.painted().height(), 180);
    }
}

TEST(CalloutArrow, HeadsMayBeAtEitherEndBothOrNone) {
    const auto headed = [](const std::string& where) {
        const Overlay overlay = draw({.shape = "arrow", .params = {{"HeadAt", where}}});
        return std::pair(overlay.paintedInColumn(20) > 10, overlay.paintedInColumn(180) > 10);
    };
    EXPECT_EQ(headed("end"), std::pair(false, true));
    EXPECT_EQ(headed("start"), std::pair(true, false));
    EXPECT_EQ(headed("both"), std::pair(true, true));
    EXPECT_EQ(headed("none"), std::pair(false, false));
}

TEST(CalloutArrow, AnOpenHeadHasNoInside) {
    const Params params = {{"HeadSize", 60.0}, {"StrokeWidth", 4.0}, {"HeadStyle", std::string("open")}};
    const Overlay open = draw({.shape = "arrow", .params = params});
    EXPECT_EQ(open.alphaAt(150, 38), 0);
    Params filled = params;
    filled["HeadStyle"] = std::string("triangle");
    EXPECT_EQ(draw({.shape = "arrow", .params = filled}).alphaAt(150, 40), 255);
}

TEST(CalloutArrow, ASweptHeadIsHollowAtItsBack) {
    const Params params = {{"HeadSize", 60.0}, {"StrokeWidth", 4.0}};
    Params swept = params;
    swept["HeadStyle"] = std::string("swept");
    EXPECT_EQ(draw({.shape = "arrow", .params = params}).alphaAt(142, 44), 255);
    EXPECT_EQ(draw({.shape = "arrow", .params = swept}).alphaAt(142, 44), 0);
}

TEST(CalloutArrow, ARoundHeadIsAsWideAsItIsLong) {
    const Overlay overlay =
        draw({.shape = "arrow",
              .params = {{"HeadSize", 40.0}, {"StrokeWidth", 4.0}, {"HeadStyle", std::string("circle")}}});
    EXPECT_NEAR(overlay.paintedInColumn(177), 40, 2);
}

TEST(CalloutArrow, AHeadLongerThanTheArrowIsMadeSmaller) {
    const Overlay overlay =
        draw({.shape = "arrow", .params = {{"HeadSize", 1000.0}, {"StartX", 0.4}, {"EndX", 0.6}}});
    ASSERT_FALSE(overlay.isEmpty());
    EXPECT_LE(overlay.painted().width(), 60);
}

TEST(CalloutArrow, BoldIsThicker) {
    const int plain = draw({.shape = "arrow"}).paintedInColumn(50);
    EXPECT_GT(draw({.shape = "arrow", .style = "bold"}).paintedInColumn(50), plain);
}

TEST(CalloutArrow, ATranslucentOneIsEvenWhereItsPartsMeet) {
    const Overlay overlay =
        draw({.shape = "arrow", .params = {{"BorderColor", __int64{0x80FF0000}}, {"HeadSize", 40.0}}});
    for (int x = 20; x < 185; ++x)
        EXPECT_NEAR(overlay.alphaAt(x, 50), 128, 1) << x;
}

TEST(CalloutArrow, EndsBeyondTheBoxAreCutOff) {
    const Overlay overlay = draw({.shape = "arrow", .params = {{"StartX", -5.0}, {"EndX", 6.0}}});
    EXPECT_EQ(overlay.painted().width(), 200);
}

TEST(CalloutLine, IsAsThickAsItsStroke) {
    for (const double width : {2.0, 8.0, 20.0}) {
        const Overlay overlay = draw({.shape = "line", .params = lineOf(width)});
        EXPECT_EQ(overlay.paintedInColumn(100), static_cast<int>(width));
        EXPECT_EQ(overlay.painted().width(), 200);
    }
}

TEST(CalloutLine, HasTheColorOfTheBorderElseOfTheFill) {
    EXPECT_EQ(draw({.shape = "line", .params = lineOf(8)}).at(100, 50), 0xFFFF0000U);
    EXPECT_EQ(draw({.shape = "line", .params = {{"FillColor", green}}}).at(100, 50), 0xFF00FF00U);
}

TEST(CalloutLine, RoundCapsAreRoundAndButtCapsAreNot) {
    Params params = lineOf(40);
    EXPECT_LT(draw({.shape = "line", .params = params}).paintedInColumn(1), 30);
    params["LineCap"] = std::string("butt");
    EXPECT_EQ(draw({.shape = "line", .params = params}).paintedInColumn(1), 40);
    params["LineCap"] = std::string("square");
    EXPECT_EQ(draw({.shape = "line", .params = params}).paintedInColumn(1), 40);
}

TEST(CalloutLine, DashesLeaveGaps) {
    for (const std::string dash : {"dash", "dot", "dash-dot"}) {
        Params params = lineOf(6);
        params["DashStyle"] = dash;
        const int drawn = draw({.shape = "line", .params = params}).paintedInRow(50);
        EXPECT_GT(drawn, 60) << dash;
        EXPECT_LT(drawn, 160) << dash;
    }
}

TEST(CalloutLine, TheKindAloneMakesALineOfAnyShape) {
    const Overlay overlay = draw({.shape = "ellipse", .params = lineOf(10), .kind = "TypeWinLine"});
    EXPECT_EQ(overlay.painted(), (Extent{0, 45, 200, 55}));
}

TEST(CalloutTextArrow, PointsWhereItsEndLies) {
    const auto extentInColumns = [](double startX, double endX) {
        const Overlay overlay = draw({.shape = "text-arrow", .params = {{"StartX", startX}, {"EndX", endX}}});
        return std::pair(overlay.paintedInColumn(10), overlay.paintedInColumn(189));
    };
    const auto right = extentInColumns(0, 1);
    EXPECT_GT(right.first, 2 * right.second);
    const auto left = extentInColumns(1, 0);
    EXPECT_GT(left.second, 2 * left.first);
}

TEST(CalloutTextArrow, MayPointUpAndDown) {
    const auto rows = [](double startY, double endY) {
        const Overlay overlay =
            draw({.shape = "text-arrow",
                  .params = {{"StartX", 0.5}, {"EndX", 0.5}, {"StartY", startY}, {"EndY", endY}},
                  .width = 100,
                  .height = 200});
        return std::pair(overlay.paintedInRow(10), overlay.paintedInRow(189));
    };
    EXPECT_LT(rows(1, 0).first, rows(1, 0).second);
    EXPECT_GT(rows(0, 1).first, rows(0, 1).second);
}

TEST(CalloutTextArrow, IsPaperWhenPlainAndFilledWhenBold) {
    EXPECT_EQ(draw({.shape = "text-arrow"}).at(60, 50), 0xFFFFFFFFU);
    EXPECT_NE(draw({.shape = "text-arrow", .style = "bold"}).at(60, 50), 0xFFFFFFFFU);
}
