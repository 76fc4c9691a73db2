#include "framegrab/ProjectFrameGrabber.h"

#include "support/GdiplusUser.h"
#include "support/renderer/TestProject.h"

#include <boost/weak_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <tuple>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::KestoRenderLibException;
using KestoRenderLib::RendererInfo;
using KestoRenderLib::Size;
using ::testing::ElementsAre;
using TestSupport::burntIn;
using TestSupport::makeTestMedia;
using TestSupport::makeTestProject;
using TestSupport::pixelOf;
using TestSupport::TestProject;
using TestSupport::TimelineCall;
using TestSupport::TimelineCallKind;
using Bitmap = KestoRenderLib::MetaBitmap;
using Frame = boost::shared_ptr<Bitmap>;
using Rate = boost::rational<unsigned long>;
using Time = boost::rational<__int64>;
using Corners = std::tuple<int, int, int, int>;

constexpr Gdiplus::ARGB white = 0xFFFFFFFF;

Corners cornersOf(const KestoMediaLib::Rect<int>& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

Gdiplus::ARGB pixelOf(const Frame& frame, int x, int y) {
    return TestSupport::pixelOf(*frame->AsGdiplusBitmap(), x, y);
}

class ProjectFrames : public ::testing::Test {
protected:
    Frame frameAt(Time time, Size size = {}, bool keepOrientation = true) {
        return ProjectFrameGrabber(project).frameAtTime(time, keepOrientation, size);
    }

    __int64 frameNumberAt(Time time, Rate rate) {
        const auto timed = makeTestProject(4, 4, rate);
        ProjectFrameGrabber(timed).frameAtTime(time, true, {});
        return timed->script->renderedFrames().at(0);
    }

    TimelineCall lastPass() const { return project->script->passes().back(); }

    TestSupport::GdiplusUser gdiplus;
    boost::shared_ptr<TestProject> project = makeTestProject(64, 32);
};

template <class Project>
std::string refusalOf(const boost::shared_ptr<Project>& project) {
    try {
        const ProjectFrameGrabber grabber(project);
        return "nothing is thrown";
    } catch (const KestoRenderLibException& refusal) {
        return refusal.what();
    }
}

void paintUpperHalfWhite(Bitmap& bitmap, const TimelineCall& pass) {
    TestSupport::fill(bitmap, burntIn(pass.frame));
    const Gdiplus::SolidBrush brush{Gdiplus::Color(white)};
    Gdiplus::Graphics(bitmap.AsGdiplusBitmap().get())
        .FillRectangle(&brush, 0, 0, bitmap.GetWidth(), bitmap.GetHeight() / 2);
}

} // namespace

TEST_F(ProjectFrames, WithoutAProjectThereIsNoGrabber) {
    EXPECT_EQ(refusalOf(boost::shared_ptr<TestProject>()), "Invalid project");
}

TEST_F(ProjectFrames, WithoutATimelineThereIsNoGrabber) {
    project->script->hasNoTimeline = true;
    EXPECT_EQ(refusalOf(project), "Invalid renderable timeline");
}

TEST_F(ProjectFrames, ThePipelineIsBuiltOnceOfOneSetOfParts) {
    ProjectFrameGrabber grabber(project);
    grabber.frameAtTime(0, true, {});
    grabber.frameAtTime(1, true, {});
    const auto pipelines = project->script->pipelines();
    ASSERT_EQ(pipelines.size(), 1U);
    EXPECT_TRUE(pipelines[0].isOfOnePiece);
    EXPECT_FALSE(pipelines[0].hasEffects);
}

TEST_F(ProjectFrames, TheTwoRendererRecordsDifferInTheirFlag) {
    const ProjectFrameGrabber grabber(project);
    const auto pipeline = project->script->pipelines().at(0);
    EXPECT_EQ(pipeline.drawingManagerInfo, (RendererInfo{0, true, 0, 2, 1, true}));
    EXPECT_EQ(pipeline.renderStateInfo, (RendererInfo{0, false, 0, 2, 1, true}));
}

TEST_F(ProjectFrames, TheProjectIsSharedAsLongAsTheGrabberLives) {
    const boost::weak_ptr<TestProject> watched = project;
    {
        const ProjectFrameGrabber grabber(project);
        project.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

TEST_F(ProjectFrames, ThePartsAreLetGoInTheReverseOrderOfTheMembers) {
    { const ProjectFrameGrabber grabber(project); }
    EXPECT_THAT(project->script->partsLetGo(),
                ElementsAre("render object factory", "render state", "timeline", "drawing manager"));
}

TEST_F(ProjectFrames, TheFirstViewportIsThatOfANewDrawingManager) {
    const ProjectFrameGrabber grabber(project);
    const Size fresh = KestoRenderLib::GdiDrawingManager({}, true, {0, 0}).size();
    EXPECT_EQ(cornersOf(grabber.viewport()), Corners(0, 0, fresh.width, fresh.height));
    const auto calls = project->script->calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].transform, KestoMediaLib::TransformMatrix());
}

TEST_F(ProjectFrames, TheViewportIsThatOfTheCanvasAfterAFrame) {
    ProjectFrameGrabber grabber(project);
    grabber.frameAtTime(0, true, {10, 10});
    EXPECT_EQ(cornersOf(grabber.viewport()), Corners(0, 0, 64, 32));
}

TEST_F(ProjectFrames, TimeZeroIsFrameZero) {
    EXPECT_EQ(frameNumberAt(0, 30), 0);
}

TEST_F(ProjectFrames, AFrameNumberIsRoundedDown) {
    EXPECT_EQ(frameNumberAt(Time(1, 3), 30), 10);
    EXPECT_EQ(frameNumberAt(Time(999, 1000), 30), 29);
    EXPECT_EQ(frameNumberAt(1, Rate(30000, 1001)), 29);
    EXPECT_EQ(frameNumberAt(2, Rate(30000, 1001)), 59);
}

TEST_F(ProjectFrames, ANegativeTimeIsANegativeFrameRoundedDown) {
    EXPECT_EQ(frameNumberAt(-1, 30), -30);
    EXPECT_EQ(frameNumberAt(Time(-1, 1000), 30), -1);
}

TEST_F(ProjectFrames, AFrameNumberBeyondTheRangeIsHeldAtItsEnd) {
    constexpr __int64 longest = std::numeric_limits<__int64>::max();
    EXPECT_EQ(frameNumberAt(longest, 30), longest);
    EXPECT_EQ(frameNumberAt(-longest, 30), std::numeric_limits<__int64>::min());
}

TEST_F(ProjectFrames, AFrameOfNoSizeIsTheWholeCanvas) {
    const Frame frame = frameAt(Time(7, 30));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{64, 32}));
    EXPECT_EQ(pixelOf(frame, 0, 0), burntIn(7));
    EXPECT_EQ(pixelOf(frame, 63, 31), burntIn(7));
}

TEST_F(ProjectFrames, AFrameIsFittedIntoTheBox) {
    const Frame frame = frameAt(Time(7, 30), {16, 16});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{16, 8}));
    EXPECT_EQ(pixelOf(frame, 8, 4), burntIn(7));
}

TEST_F(ProjectFrames, AFrameIsAlsoEnlarged) {
    const Frame frame = frameAt(0, {128, 0});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{128, 64}));
}

TEST_F(ProjectFrames, CanvasLengthsAreTruncated) {
    project = makeTestProject(64.9F, 32.9F);
    const Frame frame = frameAt(0);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{64, 32}));
    EXPECT_EQ(cornersOf(lastPass().viewport), Corners(0, 0, 64, 32));
}

TEST_F(ProjectFrames, AFrameStaysWhatItWasWhenTheNextOneIsRendered) {
    ProjectFrameGrabber grabber(project);
    const Frame first = grabber.frameAtTime(0, true, {});
    const Frame second = grabber.frameAtTime(1, true, {});
    EXPECT_NE(first, second);
    EXPECT_EQ(pixelOf(first, 5, 5), burntIn(0));
    EXPECT_EQ(pixelOf(second, 5, 5), burntIn(30));
}

TEST_F(ProjectFrames, AFrameKeepsItsOrientationWhenAsked) {
    project->script->paint = paintUpperHalfWhite;
    const Frame frame = frameAt(Time(1, 30));
    EXPECT_EQ(pixelOf(frame, 0, 0), white);
    EXPECT_EQ(pixelOf(frame, 0, 31), burntIn(1));
}

TEST_F(ProjectFrames, AFrameIsTurnedUpsideDownAfterScaling) {
    project->script->paint = paintUpperHalfWhite;
    const Frame frame = frameAt(Time(1, 30), {32, 32}, /*keepOrientation=*/false);
    EXPECT_EQ(frame->Size(), (Size{32, 16}));
    EXPECT_EQ(pixelOf(frame, 0, 0), burntIn(1));
    EXPECT_EQ(pixelOf(frame, 0, 15), white);
}

TEST_F(ProjectFrames, AFrameThatIsNotThereIsEmpty) {
    project->script->rendersNothing = true;
    EXPECT_FALSE(frameAt(0));
    EXPECT_FALSE(frameAt(0, {10, 10}, /*keepOrientation=*/false));
}

TEST_F(ProjectFrames, ACanvasWithoutPixelsHasNoFrames) {
    project = makeTestProject(0, 32);
    EXPECT_FALSE(frameAt(0));
    project = makeTestProject(std::numeric_limits<float>::quiet_NaN(), -1e30F);
    EXPECT_FALSE(frameAt(0));
}

TEST_F(ProjectFrames, ANegativeSizeIsRefused) {
    EXPECT_THROW(frameAt(0, {-1, 10}), std::invalid_argument);
}

TEST_F(ProjectFrames, AFrameThatCannotBeScaledIsTold) {
    project = makeTestProject(1000, 3);
    EXPECT_THROW(frameAt(0, {10, 10}), std::runtime_error);
}

TEST_F(ProjectFrames, WhatTheRendererThrowsPassesThrough) {
    project->script->onRender = [](const TimelineCall&) { throw std::out_of_range("no such frame"); };
    EXPECT_THROW(frameAt(0), std::out_of_range);
}

TEST_F(ProjectFrames, AFrameIsRenderedWithoutClippingMarginsOrTransform) {
    frameAt(0);
    const TimelineCall pass = lastPass();
    EXPECT_EQ(pass.canvasRect, KestoRenderLib::Rect(0, 0, 99999, 99999));
    EXPECT_TRUE(pass.clipToCanvas);
    EXPECT_EQ(pass.outsideOpacity, 255);
    EXPECT_EQ(pass.transform, KestoMediaLib::TransformMatrix());
    EXPECT_EQ(pass.drawingSize, (Size{64, 32}));
}

TEST_F(ProjectFrames, EachFrameStartsFromAReset) {
    ProjectFrameGrabber grabber(project);
    grabber.setMediaToRender({makeTestMedia()});
    grabber.frameAtTimeForZoomNPan(0, {10, 10}, {0, 0, 5, 5}, 128);
    grabber.frameAtTime(0, true, {});
    // After the constructor's call: reset, zoom, frame; reset, canvas, frame.
    const auto calls = project->script->calls();
    ASSERT_EQ(calls.size(), 7U);
    const TimelineCall& reset = calls[4];
    EXPECT_EQ(reset.kind, TimelineCallKind::SetViewport);
    EXPECT_EQ(reset.canvasRect, KestoRenderLib::Rect(0, 0, 99999, 99999));
    EXPECT_TRUE(reset.media.empty());
    EXPECT_EQ(reset.transform, KestoMediaLib::TransformMatrix());
    EXPECT_EQ(cornersOf(reset.viewport), cornersOf(calls[0].viewport));
    EXPECT_TRUE(calls[5].clipToCanvas);
    EXPECT_EQ(calls[5].outsideOpacity, 255);
    EXPECT_EQ(calls[5].media.size(), 1U);
}

TEST_F(ProjectFrames, AllMediaAreRenderedAtFirst) {
    EXPECT_EQ(pixelOf(frameAt(0), 0, 0), burntIn(0, 0));
    EXPECT_TRUE(lastPass().media.empty());
}

TEST_F(ProjectFrames, TheMediaToRenderStayUntilTheyAreReplaced) {
    ProjectFrameGrabber grabber(project);
    grabber.setMediaToRender({makeTestMedia(), makeTestMedia()});
    EXPECT_EQ(pixelOf(grabber.frameAtTime(0, true, {}), 0, 0), burntIn(0, 2));
    EXPECT_EQ(pixelOf(grabber.frameAtTime(0, true, {}), 0, 0), burntIn(0, 2));
    grabber.setMediaToRender({});
    EXPECT_EQ(pixelOf(grabber.frameAtTime(0, true, {}), 0, 0), burntIn(0, 0));
}

TEST_F(ProjectFrames, TheListOfMediaIsCopied) {
    ProjectFrameGrabber grabber(project);
    const auto media = makeTestMedia();
    KestoRenderLib::MediaList list{media};
    grabber.setMediaToRender(list);
    list.push_back(makeTestMedia());
    grabber.frameAtTime(0, true, {});
    EXPECT_THAT(lastPass().media, ElementsAre(media));
}

} // namespace KestoThumbnailer
