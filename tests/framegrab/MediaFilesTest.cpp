// Frames of media by the real decoder and the real renderer.

#include "framegrab/MediaFrameGrabber.h"

#include "framegrab/SomeMedia.h"

#include "libs/KestoRenderLib/project/GifFile.h"
#include "support/FrameNumber.h"
#include "support/GdiplusUser.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <optional>

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
using Frame = boost::shared_ptr<KestoRenderLib::MetaBitmap>;
using MediaPointer = boost::shared_ptr<const KestoMediaLib::Media>;
using Time = boost::rational<__int64>;

class MediaFiles : public ::testing::Test {
protected:
    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
};

/// The number that a frame carries; nothing for an empty one.
std::optional<int> numberOn(const Frame& frame) {
    if (!frame)
        return std::nullopt;
    return FrameNumber::read(frame->GetPixels(), frame->GetWidth(), frame->GetHeight(), frame->GetStride());
}

std::optional<int> numberOf(const MediaPointer& media, Time time, bool keepOrientation = true,
                            Size size = {}) {
    return numberOn(MediaFrameGrabber(media).frameAtTime(time, keepOrientation, size));
}

Gdiplus::ARGB pixelOf(const Frame& frame, int x, int y) {
    return TestSupport::pixelOf(*frame->AsGdiplusBitmap(), x, y);
}

boost::shared_ptr<KestoMediaLib::VideoClip> numbers(int stream = -1) {
    return video(videoPath("h264.mp4"), stream); // 128 by 96 pixels, 25 frames to the second
}

} // namespace

TEST_F(MediaFiles, AVideoGivesTheFrameThatCoversTheTime) {
    MediaFrameGrabber grabber(numbers());
    for (const auto& [time, number] : {std::pair{Time(0), 0},
                                       {Time(2, 5), 10},
                                       {Time(439, 1000), 10},
                                       {Time(44, 100), 11},
                                       {Time(1, 25), 1},
                                       {Time(-1), 0},
                                       {Time(100), 89}}) {
        const Frame frame = grabber.frameAtTime(time, true, {});
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->Size(), (Size{128, 96}));
        EXPECT_EQ(numberOn(frame), number);
    }
}

TEST_F(MediaFiles, AFrameStaysWhatItIsWhenTheNextOnesCome) {
    MediaFrameGrabber grabber(numbers());
    const Frame tenth = grabber.frameAtTime(Time(2, 5), true, {});
    const Frame another = grabber.frameAtTime(Time(2, 5), false, {});
    grabber.frameAtTime(Time(1), true, {});
    EXPECT_EQ(numberOn(tenth), 10);
    EXPECT_NE(numberOn(another), 10);
}

TEST_F(MediaFiles, AVideoIsScaledIntoTheSizeAndTurned) {
    const Frame frame = MediaFrameGrabber(numbers()).frameAtTime(Time(2, 5), false, {64, 64});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->Size(), (Size{64, 48}));
    EXPECT_NE(numberOn(frame), 10);
    frame->FlipY();
    EXPECT_EQ(numberOn(frame), 10);
    EXPECT_EQ(numberOf(numbers(), Time(2, 5), true, {256, 0}), 10);
}

TEST_F(MediaFiles, AFileWithoutTheStreamOrWithoutVideoGivesEmptyFrames) {
    EXPECT_EQ(numberOf(numbers(0), Time(2, 5)), 10);
    EXPECT_FALSE(MediaFrameGrabber(numbers(1)).frameAtTime(0, true, {}));
    EXPECT_FALSE(MediaFrameGrabber(video(videoPath("with-audio.mp4"), 1)).frameAtTime(0, true, {}));
    EXPECT_FALSE(MediaFrameGrabber(video(folder / "missing.mp4")).frameAtTime(0, false, {}));
    EXPECT_FALSE(MediaFrameGrabber(video(folder.write("broken.mp4", "no video"))).frameAtTime(0, true, {}));
}

TEST_F(MediaFiles, AFileInsideOtherMediaIsShownByItsOwnTime) {
    EXPECT_EQ(numberOf(unified(numbers()), Time(2, 5)), 10);
    EXPECT_EQ(numberOf(stitched({callout(), numbers()}), Time(2, 5)), 10);
    const auto late = numbers();
    late->setSpan(
        {.start = 3 * SomeMedia::second, .duration = SomeMedia::second, .mediaStart = SomeMedia::second});
    EXPECT_EQ(numberOf(late, Time(2, 5)), 10);
}

TEST_F(MediaFiles, AnAnimatedGifGivesTheFrameOfItsTime) {
    const std::uint32_t colors[] = {0xFF0000, 0x00FF00, 0x0000FF};
    MediaFrameGrabber grabber(boost::make_shared<KestoMediaLib::AnimatedGifClip>(
        KestoMediaLib::SourceFile{folder.write("three.gif", RenderTests::gifOf(colors, 50))}));
    EXPECT_EQ(pixelOf(grabber.frameAtTime(0, true, {}), 0, 0), 0xFFFF0000);
    EXPECT_EQ(pixelOf(grabber.frameAtTime(Time(1, 2), true, {}), 0, 0), 0xFF00FF00);
    EXPECT_EQ(pixelOf(grabber.frameAtTime(Time(5, 4), true, {}), 0, 0), 0xFF0000FF);
}

TEST_F(MediaFiles, AFrozenFrameIsRendered) {
    const auto frozen = boost::make_shared<KestoMediaLib::FreezeFrameMedia>(
        KestoMediaLib::SourceFile{videoPath("h264.mp4")}, KestoMediaLib::SafeRational(4, 5));
    frozen->setExtent({128, 96});
    frozen->setSpan({.duration = SomeMedia::second});
    const OnATimeline timeline(frozen);
    EXPECT_EQ(numberOf(frozen, Time(0)), 20);
    EXPECT_EQ(numberOf(frozen, Time(1, 2)), 20);
}

TEST_F(MediaFiles, ARenderedMediaIsTimedFromItsOwnStart) {
    const auto media = color(8, 4, 0xFF00FF00);
    media->setSpan({.start = 5 * SomeMedia::second, .duration = SomeMedia::second});
    const OnATimeline timeline(media);
    MediaFrameGrabber grabber(media);
    EXPECT_EQ(pixelOf(grabber.frameAtTime(0, true, {}), 4, 2), 0xFF00FF00);
    EXPECT_EQ(pixelOf(grabber.frameAtTime(Time(99, 100), true, {}), 4, 2), 0xFF00FF00);
    EXPECT_EQ(pixelOf(grabber.frameAtTime(1, true, {}), 4, 2) >> 24U, 0U);
    EXPECT_EQ(pixelOf(grabber.frameAtTime(Time(11, 2), true, {}), 4, 2) >> 24U, 0U);
}

TEST_F(MediaFiles, ARenderedMediaIsAloneInItsProject) {
    const auto mixer = boost::make_shared<KestoMediaLib::MixerModel>();
    const auto track = boost::make_shared<KestoMediaLib::TrackModel>();
    mixer->addTrack(track);
    const auto below = color(8, 4, 0xFF00FF00);
    track->addMedia(below);
    track->addMedia(color(8, 4, 0xFFFF0000));
    const Frame frame = MediaFrameGrabber(below).frameAtTime(0, true, {});
    EXPECT_EQ(frame->Size(), (Size{8, 4}));
    EXPECT_EQ(pixelOf(frame, 4, 2), 0xFF00FF00);
}

TEST_F(MediaFiles, ARenderedMediaMayOutliveItsTimeline) {
    const auto media = color(8, 4, 0xFF00FF00);
    std::optional<OnATimeline> timeline(media);
    MediaFrameGrabber grabber(media);
    timeline.reset();
    EXPECT_EQ(pixelOf(grabber.frameAtTime(0, true, {}), 4, 2), 0xFF00FF00);
}

} // namespace KestoThumbnailer
