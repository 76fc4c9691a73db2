#include "inspection/source/ContainerListing.h"

#include "inspection/source/Mp4Bytes.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using KestoThumbnailer::ListedTrack;
using KestoThumbnailer::ListTracks;
using KestoThumbnailer::TrackListing;
using testing::IsEmpty;
using namespace Mp4Bytes;

namespace {

std::wstring wideVideo(const std::string& name) {
    return TestSupport::wideOf(videoPath(name));
}

std::string mdhd(int version, std::uint32_t unitsPerSecond, std::uint64_t units) {
    const int timeSize = version == 0 ? 4 : 8;
    return atom("mdhd", word(static_cast<std::uint32_t>(version) << 24) + zeros(2 * timeSize) +
                            word(unitsPerSecond) + number(units, timeSize) + zeros(4));
}

std::string movieWithMdhd(const std::string& header, const std::string& movieHeader) {
    const std::string description = stsd(1, videoEntry("avc1", 320, 240));
    return ftyp() +
           atom("moov",
                movieHeader + atom("trak", Tkhd{.width = 320, .height = 240}.bytes() +
                                               atom("mdia", header + hdlr("vide") +
                                                                atom("minf", atom("stbl", description)))));
}

/// A movie that others wrote, without its `ftyp`, from the first atom of that type on.
std::string movieFrom(const std::string& type, const std::string& name) {
    const std::string whole = TestSupport::readFile(videoPath(name));
    const std::size_t start = whole.find(type);
    return start == std::string::npos ? "" : whole.substr(start - 4);
}

class ContainerListing : public testing::Test {
protected:
    TrackListing listed(const std::string& name, const std::string& bytes) const {
        return ListTracks(TestSupport::wideOf(folder.write(name, bytes)));
    }

    double durationWith(const std::string& header, const std::string& movieHeader = mvhd()) const {
        const auto tracks = listed("m.mp4", movieWithMdhd(header, movieHeader)).tracks;
        EXPECT_EQ(tracks.size(), 1U);
        return tracks.empty() ? -2 : tracks[0].seconds;
    }

    /// Of a movie that begins otherwise than with `ftyp`.
    void expectVideoAndSound(const std::string& bytes) const {
        const TrackListing listing = listed("old.mov", bytes);
        EXPECT_EQ(listing.container, "mp4");
        ASSERT_EQ(listing.tracks.size(), 2U);
        EXPECT_EQ(listing.tracks[0].kind, 0);
        EXPECT_EQ(listing.tracks[0].format, "avc1");
        EXPECT_EQ(listing.tracks[0].width, 128U);
        EXPECT_EQ(listing.tracks[0].height, 96U);
        EXPECT_NEAR(listing.tracks[0].seconds, 3.6, 0.05);
        EXPECT_EQ(listing.tracks[1].kind, 1);
        EXPECT_EQ(listing.tracks[1].format, "mp4a");
    }

    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(ContainerListing, TellsKindFormatSizeAndDurationOfEachTrackOfAMovie) {
    const TrackListing listing = ListTracks(wideVideo("with-audio.mp4"));
    EXPECT_EQ(listing.container, "mp4");
    const std::vector<ListedTrack>& tracks = listing.tracks;
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(tracks[0].kind, 0);
    EXPECT_EQ(tracks[0].format, "avc1");
    EXPECT_EQ(tracks[0].width, 128U);
    EXPECT_EQ(tracks[0].height, 96U);
    EXPECT_NEAR(tracks[0].seconds, 3.6, 0.05); // 90 frames, 25 to the second
    EXPECT_EQ(tracks[1].kind, 1);
    EXPECT_EQ(tracks[1].format, "mp4a");
    EXPECT_EQ(tracks[1].width, 0U);
    EXPECT_GT(tracks[1].seconds, 1);
    EXPECT_EQ(tracks[0].recordedFrom, 0);
}

TEST_F(ContainerListing, TellsWhatEachTrackOfARecordingRecorded) {
    const TrackListing listing = ListTracks(wideVideo("recording.mosk"));
    EXPECT_EQ(listing.container, "mosk");
    ASSERT_EQ(listing.tracks.size(), 4U);
    for (int index = 0; index < 4; ++index)
        EXPECT_EQ(listing.tracks[static_cast<std::size_t>(index)].recordedFrom, 100 + index);
}

TEST_F(ContainerListing, TellsTheSizeAtWhichATurnedPictureIsShown) {
    const auto sizeWith = [this](const Matrix& matrix) {
        const std::string track = videoTrak({.matrix = matrix, .width = 320, .height = 240});
        const auto tracks = listed("m.mp4", ftyp() + atom("moov", track) + atom("free")).tracks;
        return tracks.size() == 1 ? std::pair(tracks[0].width, tracks[0].height) : std::pair(0U, 0U);
    };
    EXPECT_EQ(sizeWith({}), std::pair(320U, 240U));
    EXPECT_EQ(sizeWith(quarterTurn), std::pair(240U, 320U));
    EXPECT_EQ(sizeWith({.a = minusOne, .d = minusOne}), std::pair(320U, 240U));
}

TEST_F(ContainerListing, ReadsDurationsOfBothVersions) {
    EXPECT_EQ(durationWith(mdhd(0, 1000, 2500)), 2.5);
    EXPECT_EQ(durationWith(mdhd(1, 90'000, std::uint64_t{90'000} << 20U)), 1U << 20U);
}

TEST_F(ContainerListing, HasTheDurationOfTheMovieWhereATrackTellsNone) {
    for (const std::string& header :
         {std::string(), mdhd(0, 0, 2500), mdhd(0, 1000, 0), mdhd(0, 1000, 0xFFFFFFFF)})
        EXPECT_EQ(durationWith(header), 5);
}

TEST_F(ContainerListing, HasNoDurationWhereTheFileTellsNone) {
    for (const std::string& header : {std::string(), mdhd(0, 1000, 0)})
        EXPECT_LT(durationWith(header, /*movieHeader=*/""), 0);
}

TEST_F(ContainerListing, TellsHowLongAFileInFragmentsLasts) {
    const auto tracks = ListTracks(wideVideo("fragmented.mp4")).tracks;
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_EQ(tracks[0].format, "avc1");
    EXPECT_NEAR(tracks[0].seconds, 3.6, 0.05);
}

TEST_F(ContainerListing, TellsWhatARecordingInFragmentsRecordedAndForHowLong) {
    const auto tracks = ListTracks(wideVideo("fragmented.mosk")).tracks;
    ASSERT_EQ(tracks.size(), 4U);
    EXPECT_EQ(tracks[1].recordedFrom, 101);
    EXPECT_NEAR(tracks[1].seconds, 3.6, 0.05);
}

TEST_F(ContainerListing, HasTheTracksOfAMovieThatDoesNotBeginWithFtyp) {
    const std::string whole = TestSupport::readFile(videoPath("with-audio.mp4"));
    for (const char* type : {"wide", "free", "skip"})
        expectVideoAndSound(std::string(whole).replace(4, 4, type));
    expectVideoAndSound(movieFrom("mdat", "with-audio.mp4"));
    expectVideoAndSound(movieFrom("moov", "with-audio.mp4"));
}

TEST_F(ContainerListing, TellsRolesInARecordingThatDoesNotBeginWithFtyp) {
    const TrackListing listing = listed("old.mosk", movieFrom("mdat", "recording.mosk"));
    EXPECT_EQ(listing.container, "mosk");
    ASSERT_EQ(listing.tracks.size(), 4U);
    EXPECT_EQ(listing.tracks[0].recordedFrom, 100);
    EXPECT_EQ(listing.tracks[3].recordedFrom, 103);
}

TEST_F(ContainerListing, HasTheTracksOfOtherContainers) {
    const TrackListing listing = ListTracks(wideVideo("with-audio.ts"));
    EXPECT_EQ(listing.container, "mpegts");
    ASSERT_EQ(listing.tracks.size(), 2U);
    EXPECT_EQ(listing.tracks[0].kind, 0);
    EXPECT_EQ(listing.tracks[0].format, "h264");
    EXPECT_EQ(listing.tracks[0].width, 128U);
    EXPECT_EQ(listing.tracks[0].height, 96U);
    EXPECT_GT(listing.tracks[0].seconds, 3);
    EXPECT_EQ(listing.tracks[1].kind, 1);
    EXPECT_EQ(listing.tracks[1].format, "aac");
    EXPECT_EQ(listing.tracks[1].width, 0U);
    EXPECT_EQ(ListTracks(wideVideo("h264.mkv")).container, "matroska");
    EXPECT_EQ(ListTracks(wideVideo("mpeg4.avi")).container, "avi");
}

TEST_F(ContainerListing, IsNoRecordingByItsNameAlone) {
    EXPECT_EQ(listed("movie.mosk", TestSupport::readFile(videoPath("h264.mkv"))).container, "matroska");
}

TEST_F(ContainerListing, IsEmptyForOtherFiles) {
    EXPECT_THAT(ListTracks(TestSupport::wideOf(folder / "missing.mp4")).tracks, IsEmpty());
    EXPECT_THAT(listed("text.mp4", "no movie").tracks, IsEmpty());
    EXPECT_THAT(listed("empty.mosk", "").tracks, IsEmpty());
    EXPECT_THAT(listed("empty.mosk", "").container, IsEmpty());
    EXPECT_THAT(ListTracks(L"").tracks, IsEmpty());
}

TEST_F(ContainerListing, HasTheTracksBeforeADamage) {
    const std::string whole = TestSupport::readFile(videoPath("with-audio.mp4"));
    const std::size_t headers = whole.find("moov");
    std::size_t most = 0;
    for (std::size_t length = headers; length < whole.size(); length += 97) {
        const std::size_t count = listed("cut.mp4", whole.substr(0, length)).tracks.size();
        EXPECT_GE(count, most) << length;
        EXPECT_LE(count, 2U) << length;
        most = std::max(most, count);
    }
    EXPECT_EQ(most, 2U);
}
