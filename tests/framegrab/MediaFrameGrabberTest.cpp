#include "framegrab/MediaFrameGrabber.h"

#include "framegrab/ScriptedDecoders.h"
#include "framegrab/SomeMedia.h"

#include "support/GdiplusUser.h"
#include "support/renderer/DrawnCallouts.h"
#include "support/renderer/RenderScript.h"
#include "support/renderer/TestCallout.h"
#include "support/renderer/TestProject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::Size;
using SomeMedia::audio;
using SomeMedia::callout;
using SomeMedia::color;
using SomeMedia::OnATimeline;
using SomeMedia::stitched;
using SomeMedia::unified;
using SomeMedia::video;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::makeTestCallout;
using Frame = boost::shared_ptr<KestoRenderLib::MetaBitmap>;
using MediaPointer = boost::shared_ptr<const KestoMediaLib::Media>;
using Time = boost::rational<__int64>;

const Time times[] = {Time(-1), Time(0), Time(1, 3), Time(1000)};

class MediaFrames : public ::testing::Test {
protected:
    static Frame frameOf(const MediaPointer& media, Time time = 0, bool keepOrientation = true,
                         Size size = {}) {
        return MediaFrameGrabber(media).frameAtTime(time, keepOrientation, size);
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::ScriptedDecoders decoders;
    TestSupport::DrawnCallouts callouts;
    TestSupport::ScriptOfOtherProjects projects;
};

/// The message of the exception, after its kind; "none" without one.
std::string refusalOf(const MediaPointer& media) {
    try {
        const MediaFrameGrabber grabber(media);
    } catch (const std::invalid_argument& refusal) {
        return std::string("invalid argument: ") + refusal.what();
    } catch (const std::runtime_error& refusal) {
        return std::string("runtime error: ") + refusal.what();
    }
    return "none";
}

Gdiplus::ARGB pixelOf(const Frame& frame, int x, int y) {
    return TestSupport::pixelOf(*frame->AsGdiplusBitmap(), x, y);
}

} // namespace

TEST_F(MediaFrames, AFileIsDecoded) {
    const Frame frame = frameOf(video("file.mp4", 2), Time(7, 3));
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), decoders.frameSize);
    EXPECT_EQ(pixelOf(frame, 3, 1), TestSupport::ScriptedDecoders::pixelAt(3, 1));
    ASSERT_EQ(decoders.opened.size(), 1U);
    EXPECT_EQ(decoders.opened[0].fileName, "file.mp4");
    EXPECT_EQ(decoders.opened[0].streamIndex, 2);
    EXPECT_EQ(decoders.asked.at(0).time, Time(7, 3));
}

TEST_F(MediaFrames, OrientationAndSizeAreForwarded) {
    const Frame frame = frameOf(video("file.mp4"), 0, /*keepOrientation=*/false, {8, 4});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{8, 4}));
    EXPECT_EQ(pixelOf(frame, 0, 3), TestSupport::ScriptedDecoders::pixelAt(0, 0));
}

TEST_F(MediaFrames, TheFileOfUnifiedMediaIsDecoded) {
    EXPECT_TRUE(frameOf(unified(video("seen.mp4"))));
    EXPECT_EQ(decoders.opened.at(0).fileName, "seen.mp4");
}

TEST_F(MediaFrames, InStitchedMediaTheFileWinsOverACalloutBeforeIt) {
    EXPECT_TRUE(frameOf(stitched({callout(), video("second.mp4")})));
    EXPECT_EQ(decoders.opened.at(0).fileName, "second.mp4");
    EXPECT_THAT(callouts.drawn(), IsEmpty());
}

TEST_F(MediaFrames, AFileWinsOverSoundBeforeIt) {
    EXPECT_TRUE(frameOf(stitched({audio(), video("second.mp4")})));
}

TEST_F(MediaFrames, AFileThatCannotBeDecodedGivesEmptyFrames) {
    decoders.canOpen = false;
    MediaFrameGrabber grabber(video("broken.mp4"));
    for (const Time& time : times)
        EXPECT_FALSE(grabber.frameAtTime(time, true, {}));
}

TEST_F(MediaFrames, ACalloutIsDrawnOnceForEachFrameAtItsOwnSizeWhateverIsAskedFor) {
    const auto drawn = makeTestCallout({.width = 300, .height = 250});
    MediaFrameGrabber grabber(drawn);
    for (const Time& time : times) {
        const Frame frame = grabber.frameAtTime(time, true, {10, 10});
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->Size(), (Size{300, 250}));
        EXPECT_EQ(pixelOf(frame, 9, 9), TestSupport::burntIn(0));
    }
    EXPECT_EQ(callouts.drawn().at(0).callout, drawn);
}

TEST_F(MediaFrames, ACalloutInsideAnotherMediaIsRefused) {
    const std::string refusal = "invalid argument: MediaFrameGrabber: callout cannot be null";
    EXPECT_EQ(refusalOf(unified(callout())), refusal);
    EXPECT_EQ(refusalOf(stitched({callout(), color()})), refusal);
}

TEST_F(MediaFrames, ACalloutInsideAnotherMediaIsRefusedEvenBesideSound) {
    EXPECT_EQ(refusalOf(stitched({audio(), callout()})),
              "invalid argument: MediaFrameGrabber: callout cannot be null");
}

TEST_F(MediaFrames, ACalloutWithoutADrawingIsRefused) {
    EXPECT_EQ(refusalOf(makeTestCallout({.hasDrawing = false, .hasAttributes = false})),
              "invalid argument: MediaFrameGrabber: vector node attribute cannot be null");
    EXPECT_EQ(refusalOf(makeTestCallout({.hasDrawing = false})),
              "invalid argument: MediaFrameGrabber: vector node cannot be null");
    EXPECT_EQ(refusalOf(boost::make_shared<KestoMediaLib::CalloutMedia>(nullptr)),
              "invalid argument: MediaFrameGrabber: vector node cannot be null");
}

TEST_F(MediaFrames, SoundGivesEmptyFramesAtAllTimes) {
    MediaFrameGrabber grabber(audio());
    for (const Time& time : times)
        for (const bool keepOrientation : {true, false})
            EXPECT_FALSE(grabber.frameAtTime(time, keepOrientation, {4, 4}));
}

TEST_F(MediaFrames, StitchedMediaWithSoundAmongThemAndNoFileGiveEmptyFrames) {
    const auto clip = stitched({audio(), color()});
    const OnATimeline timeline(clip);
    EXPECT_FALSE(frameOf(clip));
    EXPECT_THAT(projects->pipelines(), IsEmpty());
}

TEST_F(MediaFrames, WhatIsNoVisualMediaIsRefused) {
    const std::string refusal = "invalid argument: Can't create a MediaFrameGrabber for non VisualMedia";
    EXPECT_EQ(refusalOf(boost::make_shared<KestoMediaLib::GapMedia>()), refusal);
    EXPECT_EQ(refusalOf(TestSupport::makeTestMedia()), refusal);
    EXPECT_EQ(refusalOf({}), refusal);
}

TEST_F(MediaFrames, WhatIsRenderedMustLieOnATrackInAMixer) {
    const std::string withoutTrack =
        "runtime error: Can't thumbnail a media that doesn't have a parent track";
    EXPECT_EQ(refusalOf(color()), withoutTrack);
    EXPECT_EQ(refusalOf(stitched({})), withoutTrack);

    const auto track = boost::make_shared<KestoMediaLib::TrackModel>();
    const auto media = color();
    track->addMedia(media);
    EXPECT_EQ(refusalOf(media),
              "runtime error: Can't thumbnail a media with a track that doesn't have a parent mixer");
}

TEST_F(MediaFrames, MediaOfOtherKindsAreRenderedOnACanvasOfTheirSizeAtTheStart) {
    const auto media = color();
    media->setExtent(
        {KestoMediaLib::KeyFramedParam({{.time = 0, .value = 20}, {.time = 1, .value = 90}}), 10});
    const OnATimeline timeline(media);
    const Frame frame = frameOf(media);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{20, 10}));
}

TEST_F(MediaFrames, WhatIsRenderedHas60FramesToTheSecond) {
    const auto media = color();
    const OnATimeline timeline(media);
    MediaFrameGrabber grabber(media);
    for (const Time& time : {Time(0), Time(1, 2), Time(59, 1000)})
        grabber.frameAtTime(time, true, {});
    EXPECT_THAT(projects->renderedFrames(), ElementsAre(0, 30, 3));
    EXPECT_EQ(projects->pipelines().size(), 1U);
}

TEST_F(MediaFrames, WhatIsRenderedIsScaledAndTurnedAsAskedFor) {
    projects->paint = [](KestoRenderLib::MetaBitmap& bitmap, const TestSupport::TimelineCall&) {
        TestSupport::fill(bitmap, 0xFF0000FF);
        const Gdiplus::SolidBrush brush{Gdiplus::Color(0xFFFF0000)};
        Gdiplus::Graphics(bitmap.AsGdiplusBitmap().get()).FillRectangle(&brush, 0, 0, 20, 5);
    };
    const auto media = color(20, 10);
    const OnATimeline timeline(media);
    const Frame frame = frameOf(media, 0, /*keepOrientation=*/false, {10, 10});
    EXPECT_EQ(frame->Size(), (Size{10, 5}));
    EXPECT_EQ(pixelOf(frame, 5, 0), 0xFF0000FF);
    EXPECT_EQ(pixelOf(frame, 5, 4), 0xFFFF0000);
}

TEST_F(MediaFrames, StitchedMediaWithoutAPictureAreRendered) {
    const auto clip = stitched({});
    clip->setExtent({8, 4});
    const OnATimeline timeline(clip);
    EXPECT_EQ(frameOf(clip)->Size(), (Size{8, 4}));
}

TEST_F(MediaFrames, UnifiedMediaAreRenderedWhereTheirVisualPartIs) {
    const auto clip = unified(color(8, 4));
    const OnATimeline timeline(clip);
    EXPECT_EQ(frameOf(clip)->Size(), (Size{8, 4}));
}

TEST_F(MediaFrames, WhatTheRendererThrowsPassesThrough) {
    const auto media = color();
    const OnATimeline timeline(media);
    projects->hasNoTimeline = true;
    EXPECT_THROW(MediaFrameGrabber{media}, KestoRenderLib::KestoRenderLibException);
    callouts.draw = [](const TestSupport::DrawnCallout&) -> Frame { throw std::length_error("too long"); };
    EXPECT_THROW(frameOf(makeTestCallout({})), std::length_error);
}

} // namespace KestoThumbnailer
