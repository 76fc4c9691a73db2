#include "libs/KestoRenderLib/project/Composition.h"

#include <gtest/gtest.h>

using namespace KestoMediaLib;
using namespace RenderTests;
using KestoRenderLib::toKestoMLRectInt;

namespace {

constexpr double half = 128 / 255.0;

/// A canvas of 8 by 4, red to the left, green to the right.
class Viewport : public ::testing::Test {
protected:
    Viewport() { composition.add(at(-2, 0, colored(red, 4, 4))).add(at(2, 0, colored(green, 4, 4))); }

    Frame rendered(KestoRenderLib::Size screen, const Rect<int>& viewport, const TransformMatrix& transform) {
        composition.manager()->setSize(screen);
        composition.timeline().setViewport(viewport, transform);
        composition.timeline().renderFrame(0);
        return composition.manager()->currentFrame();
    }
    Frame rendered(KestoRenderLib::Size screen, const TransformMatrix& transform = {}) {
        return rendered(screen, toKestoMLRectInt(screen), transform);
    }

    Composition composition{8, 4};
};

const std::string wholeCanvas = "RRRRGGGG\nRRRRGGGG\nRRRRGGGG\nRRRRGGGG\n";

} // namespace

TEST_F(Viewport, IsTheWholeDrawingManagerAtFirst) {
    const auto viewport = composition.timeline().viewport();
    EXPECT_EQ(viewport.x, 0);
    EXPECT_EQ(viewport.y, 0);
    EXPECT_EQ(viewport.width, composition.manager()->size().width);
    EXPECT_EQ(viewport.height, composition.manager()->size().height);
}

TEST_F(Viewport, OfTheCanvasSizeShowsTheCanvasAsItIs) {
    EXPECT_EQ(lettersOf(rendered({8, 4})), wholeCanvas);
}

TEST_F(Viewport, ALargerOneHasTheCanvasInItsMiddle) {
    EXPECT_EQ(lettersOf(rendered({12, 6})), "............\n"
                                            "..RRRRGGGG..\n"
                                            "..RRRRGGGG..\n"
                                            "..RRRRGGGG..\n"
                                            "..RRRRGGGG..\n"
                                            "............\n");
}

TEST_F(Viewport, ASmallerOneShowsTheMiddleOfTheCanvas) {
    EXPECT_EQ(lettersOf(rendered({4, 2})), "RRGG\nRRGG\n");
}

TEST_F(Viewport, DrawingStaysInsideIt) {
    EXPECT_EQ(lettersOf(rendered({8, 4}, {2, 1, 4, 2}, {})), "........\n"
                                                             "..RRGG..\n"
                                                             "..RRGG..\n"
                                                             "........\n");
}

TEST_F(Viewport, OneThatLiesOutsideShowsNothing) {
    EXPECT_EQ(lettersOf(rendered({4, 2}, {100, 100, 4, 2}, {})), "....\n....\n");
}

TEST_F(Viewport, ItsTransformScalesAboutTheMiddle) {
    EXPECT_EQ(lettersOf(rendered({8, 4}, TransformMatrix::scale(0.5, 0.5, 1))), "........\n"
                                                                                "..RRGG..\n"
                                                                                "..RRGG..\n"
                                                                                "........\n");
}

TEST_F(Viewport, ItsTransformMoves) {
    EXPECT_EQ(lettersOf(rendered({8, 4}, TransformMatrix::translate({2, 0, 0}))), "..RRRRGG\n..RRRRGG\n"
                                                                                  "..RRRRGG\n..RRRRGG\n");
}

TEST_F(Viewport, ARegionFillsTheOutputRectangle) {
    // The region 0, 0, 4, 2 of the canvas, counted from the middle, into -4, -2, 8, 4.
    composition.timeline().clipToCanvas = false;
    const auto twice = TransformMatrix::translate({-4, -2, 0}) * TransformMatrix::scale(2, 2, 1);
    EXPECT_EQ(lettersOf(rendered({8, 4}, twice)), "GGGGGGGG\nGGGGGGGG\nGGGGGGGG\nGGGGGGGG\n");
}

TEST_F(Viewport, WhatLiesOutsideOfTheCanvasRectangleIsLeftOut) {
    composition.timeline().canvasRect = {2, 1, 6, 3};
    EXPECT_EQ(lettersOf(rendered({8, 4})), "........\n"
                                           "..RRGG..\n"
                                           "..RRGG..\n"
                                           "........\n");
}

TEST_F(Viewport, WithoutClippingItIsShownFaded) {
    composition.timeline().canvasRect = {2, 1, 6, 3};
    composition.timeline().clipToCanvas = false;
    composition.timeline().outsideOpacity = 128;
    const Frame frame = rendered({8, 4});
    EXPECT_EQ(valueAt(frame, 2, 1), red);
    EXPECT_EQ(valueAt(frame, 5, 2), green);
    for (const auto& [x, y] : {std::pair(1, 1), std::pair(2, 0), std::pair(0, 3), std::pair(3, 3)})
        EXPECT_EQ(valueAt(frame, x, y), 0x80800000U) << x << ", " << y;
    EXPECT_EQ(valueAt(frame, 6, 2), 0x80008000U);
}

TEST_F(Viewport, FullOpacityOutsideChangesNothing) {
    composition.timeline().canvasRect = {2, 1, 6, 3};
    composition.timeline().clipToCanvas = false;
    EXPECT_EQ(lettersOf(rendered({8, 4})), wholeCanvas);
}

TEST_F(Viewport, NoOpacityOutsideShowsTheInsideAlone) {
    composition.timeline().canvasRect = {2, 1, 6, 3};
    composition.timeline().clipToCanvas = false;
    composition.timeline().outsideOpacity = 0;
    EXPECT_EQ(lettersOf(rendered({8, 4})), "........\n"
                                           "..RRGG..\n"
                                           "..RRGG..\n"
                                           "........\n");
}

TEST_F(Viewport, WhatReachesBeyondTheCanvasIsOutside) {
    composition.add(at(4, 0, colored(blue, 4, 4)));
    composition.timeline().clipToCanvas = false;
    composition.timeline().outsideOpacity = 128;
    const Frame frame = rendered({12, 4});
    EXPECT_EQ(valueAt(frame, 9, 1), blue);
    EXPECT_EQ(valueAt(frame, 10, 1), 0x80000080U);
    EXPECT_EQ(valueAt(frame, 0, 1), 0U);
}

TEST_F(Viewport, WhatReachesBeyondTheCanvasIsClippedOtherwise) {
    composition.add(at(4, 0, colored(blue, 4, 4)));
    EXPECT_EQ(lettersOf(rendered({12, 4})).substr(0, 12), "..RRRRGGBB..");
}

TEST_F(Viewport, ASizeBelowOneGivesNoFrame) {
    rendered({8, 4});
    EXPECT_FALSE(rendered({0, 4}));
    EXPECT_FALSE(rendered({8, -1}));
}

TEST_F(Viewport, ASizeBeyondThePixelBudgetGivesNoFrame) {
    EXPECT_FALSE(rendered({1'000'000, 1'000'000}));
    EXPECT_TRUE(rendered({8, 4})) << "the next one is rendered";
}
