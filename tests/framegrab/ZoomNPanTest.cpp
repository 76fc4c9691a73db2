#include "framegrab/ProjectFrameGrabber.h"
#include "support/GdiplusUser.h"
#include "support/renderer/TestProject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::Point;
using KestoMediaLib::TransformMatrix;
using KestoRenderLib::Rect;
using KestoRenderLib::Size;
using ::testing::ElementsAre;
using TestSupport::burntIn;
using TestSupport::makeTestMedia;
using TestSupport::makeTestProject;
using TestSupport::TestProject;
using TestSupport::TimelineCall;
using Frame = boost::shared_ptr<KestoRenderLib::MetaBitmap>;
using Source = KestoMediaLib::Rect<double>;

/// In a viewport of 64 by 32, as it is after a frame of the canvas.
class ZoomNPan : public ::testing::Test {
protected:
    ZoomNPan() { grabber.frameAtTime(0, true, {}); }

    Frame zoom(const Size& size, const Source& source, int outsideOpacity = 128, __int64 frame = 0) {
        return grabber.frameAtTimeForZoomNPan(frame, size, source, outsideOpacity);
    }

    TimelineCall lastPass() const { return project->script->passes().back(); }
    Rect canvasRectFor(const Size& size) {
        zoom(size, {0, 0, 1, 1});
        return lastPass().canvasRect;
    }

    std::tuple<double, double> carried(double x, double y) const {
        const Point point = lastPass().transform * Point(x, y, 0);
        return {point.x, point.y};
    }

    TestSupport::GdiplusUser gdiplus;
    boost::shared_ptr<TestProject> project = makeTestProject(64, 32);
    ProjectFrameGrabber grabber{project};
};

} // namespace

TEST_F(ZoomNPan, TheFrameNumberIsPassedAsItStands) {
    zoom({10, 10}, {0, 0, 5, 5}, 128, 7);
    zoom({10, 10}, {0, 0, 5, 5}, 128, -3);
    EXPECT_THAT(project->script->renderedFrames(), ElementsAre(0, 7, -3));
}

TEST_F(ZoomNPan, TheCornersOfTheSourceAreCarriedOntoTheOutput) {
    zoom({20, 10}, {4, 6, 10, 5});
    EXPECT_EQ(carried(4, 6), std::tuple(-10.0, -5.0));
    EXPECT_EQ(carried(14, 11), std::tuple(10.0, 5.0));
}

TEST_F(ZoomNPan, TheDirectionsAreScaledEachByItself) {
    zoom({40, 10}, {-5, -5, 10, 20});
    EXPECT_EQ(carried(-5, -5), std::tuple(-20.0, -5.0));
    EXPECT_EQ(carried(5, 15), std::tuple(20.0, 5.0));
}

TEST_F(ZoomNPan, ASourceThatIsTheOutputStaysInItsPlace) {
    zoom({64, 32}, {-32, -16, 64, 32});
    EXPECT_EQ(lastPass().transform, TransformMatrix());
}

TEST_F(ZoomNPan, TheOutputIsCentredInTheViewport) {
    EXPECT_EQ(canvasRectFor({20, 10}), Rect(22, 11, 42, 21));
    EXPECT_EQ(canvasRectFor({64, 32}), Rect(0, 0, 64, 32));
}

TEST_F(ZoomNPan, AnOutputMayBeLargerThanTheViewport) {
    EXPECT_EQ(canvasRectFor({128, 64}), Rect(-32, -16, 96, 48));
}

TEST_F(ZoomNPan, AnOddOutputHasItsLargerHalfToTheRightAndBelow) {
    zoom({101, 51}, {-50, -25, 101, 51});
    EXPECT_EQ(lastPass().canvasRect, Rect(-50 + 32, -25 + 16, 51 + 32, 26 + 16));
    EXPECT_EQ(lastPass().transform, TransformMatrix());
}

TEST_F(ZoomNPan, AnOddViewportLosesHalfAPixelOfItsMiddle) {
    const auto odd = makeTestProject(65, 33);
    ProjectFrameGrabber oddGrabber(odd);
    oddGrabber.frameAtTime(0, true, {});
    oddGrabber.frameAtTimeForZoomNPan(0, {20, 10}, {0, 0, 1, 1}, 128);
    EXPECT_EQ(odd->script->passes().back().canvasRect, Rect(22, 11, 42, 21));
}

TEST_F(ZoomNPan, WhatLiesOutsideIsDrawnWithTheCallersOpacity) {
    zoom({10, 10}, {0, 0, 5, 5}, 77);
    EXPECT_FALSE(lastPass().clipToCanvas);
    EXPECT_EQ(lastPass().outsideOpacity, 77);
}

TEST_F(ZoomNPan, OnlyTheMediaToRenderAreRendered) {
    const auto media = makeTestMedia();
    grabber.setMediaToRender({media});
    const Frame frame = zoom({10, 10}, {0, 0, 5, 5}, 128, 9);
    EXPECT_THAT(lastPass().media, ElementsAre(media));
    EXPECT_EQ(TestSupport::pixelOf(*frame->AsGdiplusBitmap(), 0, 0), burntIn(9, 1));
}

TEST_F(ZoomNPan, TheFrameIsTheRenderersOwn) {
    const Frame first = zoom({10, 10}, {0, 0, 5, 5}, 128, 1);
    const Frame second = zoom({10, 10}, {0, 0, 5, 5}, 128, 2);
    EXPECT_EQ(first, second);
    EXPECT_EQ(TestSupport::pixelOf(*first->AsGdiplusBitmap(), 0, 0), burntIn(2));
}

TEST_F(ZoomNPan, TheFrameIsAsLargeAsTheDrawingManagerLeftIt) {
    EXPECT_EQ(zoom({10, 10}, {0, 0, 5, 5})->Size(), (Size{64, 32}));
    EXPECT_EQ(lastPass().drawingSize, (Size{64, 32}));
}

TEST_F(ZoomNPan, TheFirstFrameOfAGrabberHasTheSizeOfANewDrawingManager) {
    ProjectFrameGrabber fresh(project);
    const auto viewport = fresh.viewport();
    fresh.frameAtTimeForZoomNPan(0, {10, 20}, {0, 0, 5, 5}, 128);
    EXPECT_EQ(lastPass().drawingSize, (Size{viewport.width, viewport.height}));
    EXPECT_EQ(lastPass().canvasRect, Rect(viewport.width / 2 - 5, viewport.height / 2 - 10,
                                          viewport.width / 2 + 5, viewport.height / 2 + 10));
}

TEST_F(ZoomNPan, AFrameThatIsNotThereIsEmpty) {
    project->script->rendersNothing = true;
    EXPECT_FALSE(zoom({10, 10}, {0, 0, 5, 5}));
}

TEST_F(ZoomNPan, ASourceWithoutAreaIsNotGuardedAgainst) {
    EXPECT_TRUE(zoom({10, 10}, {0, 0, 0, 0}));
}

TEST_F(ZoomNPan, LengthsAtTheEndOfTheRangeStayInIt) {
    constexpr int longest = std::numeric_limits<int>::max();
    const int half = longest / 2;
    EXPECT_EQ(canvasRectFor({longest, longest}), Rect(-half + 32, -half + 16, half + 33, half + 17));
}

} // namespace KestoThumbnailer
