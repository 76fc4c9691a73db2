#include "framegrab/SimpleProjectFrameGrabber.h"

#include "support/GdiplusUser.h"
#include "support/renderer/RenderScript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::Size;
using ::testing::ElementsAre;
using TestSupport::burntIn;
using TestSupport::pixelOf;
using TestSupport::TimelineCall;

KestoMediaLib::SimpleProject simpleProject() {
    KestoMediaLib::SimpleProject project(25);
    project.setCanvasWidth(64);
    project.setCanvasHeight(32);
    return project;
}

class SimpleProjectFrames : public ::testing::Test {
protected:
    TestSupport::GdiplusUser gdiplus;
    TestSupport::ScriptOfOtherProjects script;
    SimpleProjectFrameGrabber grabber{simpleProject()};
};

} // namespace

TEST_F(SimpleProjectFrames, AFrameIsTheWholeCanvasAtItsTime) {
    const auto frame = grabber.frameAtTime(2).metaBitmap();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{64, 32}));
    EXPECT_EQ(pixelOf(*frame->AsGdiplusBitmap(), 63, 31), burntIn(50));
}

TEST_F(SimpleProjectFrames, TheTimeIsCutToMilliseconds) {
    grabber.frameAtTime(0.0009);
    grabber.frameAtTime(0.0399);
    grabber.frameAtTime(0.04);
    grabber.frameAtTime(-0.0009);
    EXPECT_THAT(script->renderedFrames(), ElementsAre(0, 0, 1, 0));
}

TEST_F(SimpleProjectFrames, AFrameKeepsItsOrientation) {
    script->paint = [](KestoRenderLib::MetaBitmap& bitmap, const TimelineCall&) {
        TestSupport::fill(bitmap, burntIn(1));
        bitmap.AsGdiplusBitmap()->SetPixel(0, 0, Gdiplus::Color(0xFFFFFFFF));
    };
    const auto frame = grabber.frameAtTime(0).metaBitmap();
    ASSERT_TRUE(frame);
    EXPECT_EQ(pixelOf(*frame->AsGdiplusBitmap(), 0, 0), 0xFFFFFFFF);
}

TEST_F(SimpleProjectFrames, AFrameThatIsNotThereIsWrappedAsItIs) {
    script->rendersNothing = true;
    EXPECT_FALSE(grabber.frameAtTime(0).metaBitmap());
}

TEST_F(SimpleProjectFrames, ThePipelineIsBuiltOnceAndGoesWithTheGrabber) {
    {
        SimpleProjectFrameGrabber another(simpleProject());
        another.frameAtTime(0);
        another.frameAtTime(1);
        EXPECT_TRUE(script->partsLetGo().empty());
    }
    EXPECT_EQ(script->pipelines().size(), 2U); // the other one is the fixture's
    EXPECT_EQ(script->partsLetGo().size(), 4U);
}

TEST_F(SimpleProjectFrames, WhatTheConstructorOfTheGrabberThrowsPassesThrough) {
    script->hasNoTimeline = true;
    EXPECT_THROW(SimpleProjectFrameGrabber{simpleProject()}, KestoRenderLib::KestoRenderLibException);
}

TEST_F(SimpleProjectFrames, WhatTheRendererThrowsPassesThrough) {
    script->onRender = [](const TimelineCall&) { throw std::length_error("too long"); };
    EXPECT_THROW(grabber.frameAtTime(0), std::length_error);
}

} // namespace KestoThumbnailer
