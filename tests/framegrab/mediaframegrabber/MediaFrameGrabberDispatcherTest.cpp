#include "framegrab/mediaframegrabber/MediaFrameGrabberDispatcher.h"

#include "framegrab/SomeMedia.h"

#include <gtest/gtest.h>

namespace KestoThumbnailer {

namespace {

using boost::make_shared;
using KestoMediaLib::SourceFile;
using SomeMedia::audio;
using SomeMedia::callout;
using SomeMedia::color;
using SomeMedia::stitched;
using SomeMedia::unified;
using SomeMedia::video;

/// In words, so that a failure tells what was found.
std::string foundIn(const KestoMediaLib::Media& media) {
    MediaFrameGrabberDispatcher kind;
    media.accept(kind);
    std::string found;
    if (kind.usesFrameCodec)
        found += "file " + kind.sourceName + " " + std::to_string(kind.streamIndex) + ". ";
    else
        EXPECT_TRUE(kind.sourceName.empty() && kind.streamIndex == -1);
    if (kind.isCallout)
        found += "callout. ";
    if (kind.hasNoPicture)
        found += "no picture. ";
    return found;
}

} // namespace

TEST(MediaFrameGrabberDispatcher, StartsWithNothingFound) {
    const MediaFrameGrabberDispatcher kind;
    EXPECT_FALSE(kind.usesFrameCodec);
    EXPECT_FALSE(kind.isCallout);
    EXPECT_FALSE(kind.hasNoPicture);
    EXPECT_EQ(kind.sourceName, "");
    EXPECT_EQ(kind.streamIndex, -1);
}

TEST(MediaFrameGrabberDispatcher, FilesOfBothKindsGiveTheirNameAndStream) {
    EXPECT_EQ(foundIn(KestoMediaLib::VideoClip(SourceFile{"v", 1})), "file v 1. ");
    EXPECT_EQ(foundIn(KestoMediaLib::ScreenRecordingClip(SourceFile{"s", 2})), "file s 2. ");
    EXPECT_EQ(foundIn(KestoMediaLib::ImageClip(SourceFile{"i", 3})), "file i 3. ");
    EXPECT_EQ(foundIn(KestoMediaLib::AnimatedGifClip(SourceFile{"g"})), "file g -1. ");
}

TEST(MediaFrameGrabberDispatcher, SoundHasNoPicture) {
    EXPECT_EQ(foundIn(*audio()), "no picture. ");
}

TEST(MediaFrameGrabberDispatcher, ACalloutIsOne) {
    EXPECT_EQ(foundIn(*callout()), "callout. ");
}

TEST(MediaFrameGrabberDispatcher, AllOtherMediaSetNoFlag) {
    EXPECT_EQ(foundIn(*color()), "");
    EXPECT_EQ(foundIn(KestoMediaLib::PlaceholderMedia()), "");
    EXPECT_EQ(foundIn(KestoMediaLib::DocumentMedia("d", 1)), "");
    EXPECT_EQ(foundIn(KestoMediaLib::FreezeFrameMedia(SourceFile{"f"}, 0)), "");
    EXPECT_EQ(foundIn(KestoMediaLib::GapMedia()), "");
    EXPECT_EQ(foundIn(KestoMediaLib::GroupMedia()), "");
}

TEST(MediaFrameGrabberDispatcher, UnifiedMediaAreTheirVisualPart) {
    EXPECT_EQ(foundIn(*unified(video("v", 1))), "file v 1. ");
    EXPECT_EQ(foundIn(*unified(callout())), "callout. ");
    EXPECT_EQ(foundIn(*unified(color())), "");
}

TEST(MediaFrameGrabberDispatcher, StitchedMediaWithoutAPictureSetNoFlag) {
    EXPECT_EQ(foundIn(*stitched({})), "");
    EXPECT_EQ(foundIn(*stitched({audio(), audio()})), "");
}

TEST(MediaFrameGrabberDispatcher, StitchedMediaAreTheirFirstFileWhereverItLies) {
    EXPECT_EQ(foundIn(*stitched({video("a"), video("b")})), "file a -1. ");
    EXPECT_EQ(foundIn(*stitched({color(), video("b", 4)})), "file b 4. ");
    EXPECT_EQ(foundIn(*stitched({callout(), video("b")})), "file b -1. callout. ");
}

TEST(MediaFrameGrabberDispatcher, AFileEndsTheWalkThroughStitchedMedia) {
    EXPECT_EQ(foundIn(*stitched({video("a"), callout(), audio()})), "file a -1. ");
    EXPECT_EQ(foundIn(*stitched({stitched({color(), video("a")}), callout()})), "file a -1. ");
}

TEST(MediaFrameGrabberDispatcher, OtherFlagsDoNotEndTheWalk) {
    EXPECT_EQ(foundIn(*stitched({callout(), audio()})), "callout. no picture. ");
    EXPECT_EQ(foundIn(*stitched({audio(), color(), unified(video("u"))})), "file u -1. no picture. ");
}

} // namespace KestoThumbnailer
