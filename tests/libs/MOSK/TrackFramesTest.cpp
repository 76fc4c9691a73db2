#include "libs/MOSK/OpenRecording.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using testing::Each;
using testing::ElementsAre;
using testing::Optional;

namespace MOSK {
namespace {

constexpr std::size_t screen = 0;
constexpr std::size_t camera = 1;
constexpr std::size_t sound = 2;

class TrackFrames : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(tracks.size(), 4U); }

    const Tracks tracks = tracksOf(videoPath("recording.mosk"));
};

TEST_F(TrackFrames, AreThoseOfTheTimeInEachTrack) {
    for (const int frame : {0, 1, 29, 30, 45, 89}) {
        EXPECT_THAT(numberAt(*tracks[screen], frame / 25.0), Optional(frame));
        EXPECT_THAT(numberAt(*tracks[camera], frame / 25.0), Optional(100 + frame));
    }
}

TEST_F(TrackFrames, OfTracksThatTakeTurnsDoNotDisturbEachOther) {
    for (const int frame : {80, 3, 47}) {
        EXPECT_THAT(numberAt(*tracks[camera], (frame + 0.5) / 25), Optional(100 + frame));
        EXPECT_THAT(numberAt(*tracks[screen], (frame + 0.5) / 25), Optional(frame));
    }
}

TEST_F(TrackFrames, AreTheFirstAndTheLastBeyondTheEnds) {
    EXPECT_THAT(numberAt(*tracks[screen], -1), Optional(0));
    EXPECT_THAT(numberAt(*tracks[screen], 1000), Optional(89));
    EXPECT_THAT(numberAt(*tracks[screen], std::numeric_limits<double>::infinity()), Optional(89));
    EXPECT_THAT(numberAt(*tracks[screen], -std::numeric_limits<double>::max()), Optional(0));
    EXPECT_THAT(numberAt(*tracks[screen], std::nan("")), Optional(0));
}

TEST_F(TrackFrames, TellWhenTheyStart) {
    double start = -1;
    EXPECT_THAT(numberAt(*tracks[screen], 1.95, &start), Optional(48));
    EXPECT_DOUBLE_EQ(start, 1.92);
}

TEST_F(TrackFrames, FillNoBufferThatIsTooSmall) {
    std::vector<unsigned char> pixels(128 * 96 * 4, 7);
    double start = 5;
    EXPECT_FALSE(tracks[screen]->decodeFrameAtTime(0, pixels.data(), 128 * 96 * 4 - 1, &start));
    EXPECT_FALSE(tracks[screen]->decodeFrameAtTime(0, nullptr, 128 * 96 * 4, &start));
    EXPECT_THAT(pixels, Each(7));
    EXPECT_EQ(start, 5);
}

TEST_F(TrackFrames, LeaveWhatLiesBehindThemInALargerBuffer) {
    std::vector<unsigned char> pixels(128 * 96 * 4 + 100, 7);
    ASSERT_TRUE(tracks[screen]->decodeFrameAtTime(0, pixels.data(), 128 * 96 * 4 + 100, nullptr));
    pixels.erase(pixels.begin(), pixels.begin() + 128 * 96 * 4);
    EXPECT_THAT(pixels, Each(7));
}

TEST_F(TrackFrames, AreNoneOfSound) {
    unsigned char pixels[4] = {7, 7, 7, 7};
    EXPECT_FALSE(tracks[sound]->decodeFrameAtTime(0, pixels, sizeof pixels, nullptr));
    EXPECT_THAT(pixels, Each(7));
}

TEST(TrackFrame, OutlivesTheReaderWithItsTrack) {
    auto reader = openRecording(videoPath("recording.mosk"));
    ASSERT_TRUE(reader);
    const auto track = reader->tracks().at(camera);
    reader.reset();
    EXPECT_THAT(numberAt(*track, 2), Optional(150));
}

TEST(TrackFrame, OfATimeThatADoubleOnlyNearlyHoldsIsThatOfTheTime) {
    const Tracks tracks = tracksOf(videoPath("rate-30000-1001.mp4"));
    ASSERT_EQ(tracks.size(), 1U);
    for (int frame = 0; frame < 60; ++frame)
        EXPECT_THAT(numberAt(*tracks[0], frame * 1001 / 30000.0), Optional(frame));
}

TEST(TrackFrame, IsExactInFragments) {
    const Tracks tracks = tracksOf(videoPath("fragmented.mosk"));
    ASSERT_EQ(tracks.size(), 4U);
    EXPECT_THAT(numberAt(*tracks[camera], 71 / 25.0), Optional(171));
    EXPECT_THAT(numberAt(*tracks[screen], 33 / 25.0), Optional(33));
}

TEST(TrackFrame, OfEachOfSeveralTracksOfOneRoleIsItsOwn) {
    const Tracks tracks = tracksOf(videoPath("two-screens.mosk"));
    ASSERT_EQ(tracks.size(), 2U);
    EXPECT_THAT(numberAt(*tracks[0], 0.4), Optional(10));
    EXPECT_THAT(numberAt(*tracks[1], 0.4), Optional(110));
}

TEST(TrackFrame, IsNoneWhenTheFileIsGoneBeforeASecondTrackIsRead) {
    const TestSupport::TempFolder folder;
    const auto file = folder.write("talk.mosk", TestSupport::readFile(videoPath("recording.mosk")));
    const Tracks tracks = tracksOf(file.string());
    ASSERT_EQ(tracks.size(), 4U);
    EXPECT_THAT(numberAt(*tracks[screen], 1), Optional(25));
    std::filesystem::remove(file);
    EXPECT_FALSE(numberAt(*tracks[camera], 1));
    EXPECT_THAT(numberAt(*tracks[screen], 2), Optional(50));
}

} // namespace
} // namespace MOSK
