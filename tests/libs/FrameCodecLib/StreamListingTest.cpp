#include "platform/FrameCodecListing.h"

#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

using testing::IsEmpty;

namespace FrameCodecLib {
namespace {

/// The container's word, then for each stream content, format, size and tenths of a second; "-" for what is
/// not told.
std::string textOf(const StreamListing& listing) {
    std::string text = listing.container;
    for (const ListedStream& stream : listing.streams) {
        constexpr const char* contents[] = {"video", "audio", "other"};
        text += std::string(" | ") + contents[static_cast<int>(stream.content)] + ' ' + stream.format;
        text += ' ' + std::to_string(stream.width) + 'x' + std::to_string(stream.height) + ' ';
        text += stream.duration
                    ? std::to_string(std::lround(boost::rational_cast<double>(*stream.duration) * 10))
                    : "-";
    }
    return text;
}

std::string listed(const std::string& name) {
    return textOf(ListStreams(videoPath(name)));
}

TEST(ListStreams, TellsTheSampleFormatsOfAMovie) {
    EXPECT_EQ(listed("h264.mp4"), "mp4 | video avc1 128x96 36");
    EXPECT_EQ(listed("prores.mov"), "mp4 | video apco 128x96 12");
}

TEST(ListStreams, TellsTheCodecsInOtherContainers) {
    EXPECT_EQ(listed("h264.mkv"), "matroska | video h264 128x96 36");
    EXPECT_EQ(listed("mpeg4.avi"), "avi | video mpeg4 128x96 36");
    EXPECT_EQ(listed("vp9.webm"), "matroska | video vp9 128x96 36");
    EXPECT_EQ(listed("h264.ts"), "mpegts | video h264 128x96 36");
    EXPECT_EQ(listed("wmv2.wmv"), "asf | video wmv2 128x96 36");
}

TEST(ListStreams, TellsEachStreamInItsOrder) {
    const StreamListing listing = ListStreams(videoPath("with-audio.ts"));
    ASSERT_EQ(listing.streams.size(), 2U);
    EXPECT_EQ(listing.streams[0].content, StreamContent::Video);
    EXPECT_EQ(listing.streams[1].content, StreamContent::Audio);
    EXPECT_EQ(listing.streams[1].format, "aac");
}

TEST(ListStreams, TellsTheSizeAtWhichPicturesAreShown) {
    EXPECT_EQ(ListStreams(videoPath("wide-pixels.mp4")).streams.at(0).width, 171);
    EXPECT_EQ(ListStreams(videoPath("tall-pixels.mp4")).streams.at(0).height, 128);
}

TEST(ListStreams, LeavesOutACover) {
    const StreamListing listing = ListStreams(videoPath("cover.m4a"));
    ASSERT_EQ(listing.streams.size(), 1U);
    EXPECT_EQ(listing.streams[0].content, StreamContent::Audio);
}

TEST(ListStreams, IsEmptyForAMovieThatIsCutInItsFirstTrack) {
    const TestSupport::TempFolder folder;
    const std::string whole = TestSupport::readFile(videoPath("h264.mp4"));
    const std::size_t track = whole.find("trak", whole.rfind("moov"));
    for (const std::size_t more : {4, 100, 200, 300})
        EXPECT_EQ(textOf(ListStreams(folder.write("cut.mp4", whole.substr(0, track + more)))), "") << more;
}

TEST(ListStreams, IsEmptyForWhatIsNoMediaFile) {
    const TestSupport::TempFolder folder;
    for (const std::filesystem::path& file :
         {folder.write("text.mp4", "This is no video."), folder / "none.mp4", folder / ""}) {
        const StreamListing listing = ListStreams(file);
        EXPECT_THAT(listing.streams, IsEmpty());
        EXPECT_THAT(listing.container, IsEmpty());
    }
}

} // namespace
} // namespace FrameCodecLib
