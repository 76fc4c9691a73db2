#include "inspection/source/ContainerListing.h"

#include "inspection/source/Mp4Bytes.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using KestoThumbnailer::ListedTrack;
using KestoThumbnailer::ListTracks;
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

std::string movieWithMdhd(const std::string& header) {
    const std::string description = stsd(1, videoEntry("avc1", 320, 240));
    return ftyp() +
           atom("moov", mvhd() + atom("trak", Tkhd{.width = 320, .height = 240}.bytes() +
                                                  atom("mdia", header + hdlr("vide") +
                                                                   atom("minf", atom("stbl", description)))));
}

class ContainerListing : public testing::Test {
protected:
    double durationWith(const std::string& header) const {
        const auto tracks = ListTracks(TestSupport::wideOf(folder.write("m.mp4", movieWithMdhd(header))));
        EXPECT_EQ(tracks.size(), 1U);
        return tracks.empty() ? -2 : tracks[0].seconds;
    }

    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(ContainerListing, TellsKindFormatSizeAndDurationOfEachTrackOfAMovie) {
    const std::vector<ListedTrack> tracks = ListTracks(wideVideo("with-audio.mp4"));
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_EQ(tracks[0].kind, 0);
    EXPECT_EQ(tracks[0].format, "avc1");
    EXPECT_GT(tracks[0].width, 0U);
    EXPECT_GT(tracks[0].height, 0U);
    EXPECT_NEAR(tracks[0].seconds, 3.6, 0.05); // 90 frames, 25 to the second
    EXPECT_EQ(tracks[1].kind, 1);
    EXPECT_EQ(tracks[1].format, "mp4a");
    EXPECT_EQ(tracks[1].width, 0U);
    EXPECT_GT(tracks[1].seconds, 1);
    EXPECT_EQ(tracks[0].recordedFrom, 0);
}

TEST_F(ContainerListing, TellsWhatEachTrackOfARecordingRecorded) {
    const std::vector<ListedTrack> tracks = ListTracks(wideVideo("recording.mosk"));
    ASSERT_EQ(tracks.size(), 4U);
    for (int index = 0; index < 4; ++index)
        EXPECT_EQ(tracks[static_cast<std::size_t>(index)].recordedFrom, 100 + index);
}

TEST_F(ContainerListing, ReadsDurationsOfBothVersions) {
    EXPECT_EQ(durationWith(mdhd(0, 1000, 2500)), 2.5);
    EXPECT_EQ(durationWith(mdhd(1, 90'000, std::uint64_t{90'000} << 20U)), 1U << 20U);
}

TEST_F(ContainerListing, HasNoDurationWhereTheFileTellsNone) {
    EXPECT_LT(durationWith(""), 0);
    EXPECT_LT(durationWith(mdhd(0, 0, 2500)), 0);
    EXPECT_LT(durationWith(mdhd(0, 1000, 0xFFFFFFFF)), 0);
}

TEST_F(ContainerListing, IsEmptyForOtherFiles) {
    EXPECT_THAT(ListTracks(TestSupport::wideOf(folder / "missing.mp4")), IsEmpty());
    EXPECT_THAT(ListTracks(TestSupport::wideOf(folder.write("text.mp4", "no movie"))), IsEmpty());
    EXPECT_THAT(ListTracks(TestSupport::wideOf(folder.write("empty.mosk", ""))), IsEmpty());
    EXPECT_THAT(ListTracks(L""), IsEmpty());
}

TEST_F(ContainerListing, HasTheTracksBeforeADamage) {
    const std::string whole = TestSupport::readFile(videoPath("with-audio.mp4"));
    for (std::size_t length = whole.size() - 3000; length < whole.size(); length += 97) {
        const auto tracks = ListTracks(TestSupport::wideOf(folder.write("cut.mp4", whole.substr(0, length))));
        EXPECT_LE(tracks.size(), 2U);
    }
}
