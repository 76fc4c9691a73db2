#include "libs/MOSK/OpenRecording.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

using testing::ElementsAre;

namespace MOSK {
namespace {

template <typename Result>
std::vector<Result> ofEach(const Tracks& tracks, Result (MP4TrackReader::*asked)() const) {
    std::vector<Result> answers;
    for (const auto& track : tracks)
        answers.push_back((track.get()->*asked)());
    return answers;
}

TEST(AudioFormat, TellsWhatItWasMadeOf) {
    const AudioFormat format = AudioFormat::create16BitSignedInterleaved(44100, 1);
    EXPECT_EQ(format.sampleRate(), 44100);
    EXPECT_EQ(format.channels(), 1);
}

TEST(Reader, TellsTracksInTheOrderOfTheFile) {
    const Tracks tracks = tracksOf(videoPath("recording.mosk"));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::kind), ElementsAre(0, 0, 1, 1));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::typeCode), ElementsAre(100, 101, 102, 103));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::format), ElementsAre("avc1", "avc1", "mp4a", "mp4a"));
}

TEST(Reader, TellsTheSizeOfPictures) {
    const Tracks tracks = tracksOf(videoPath("recording.mosk"));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::width), ElementsAre(128U, 64U, 0U, 0U));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::height), ElementsAre(96U, 48U, 0U, 0U));
}

TEST(Reader, TakesRolesWhateverTheirLettersAndNoOthers) {
    const Tracks tracks = tracksOf(videoPath("named-otherwise.mosk"));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::typeCode), ElementsAre(100, 0, 0, 0));
}

TEST(Reader, OpensAnyMovieWhoseTracksThenHaveNoRole) {
    const Tracks tracks = tracksOf(videoPath("with-audio.mp4"));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::kind), ElementsAre(0, 1));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::typeCode), ElementsAre(0, 0));
}

TEST(Reader, TellsSeveralTracksOfOneRole) {
    const Tracks tracks = tracksOf(videoPath("two-screens.mosk"));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::typeCode), ElementsAre(100, 100));
}

TEST(Reader, CountsNoCoverAsTrack) {
    EXPECT_THAT(ofEach(tracksOf(videoPath("cover.m4a")), &MP4TrackReader::kind), ElementsAre(1));
}

TEST(Reader, TellsSizesAsTheyAreShown) {
    const Tracks tracks = tracksOf(videoPath("wide-pixels.mp4"));
    ASSERT_EQ(tracks.size(), 1U);
    EXPECT_EQ(tracks[0]->width(), 171U);
    EXPECT_EQ(tracks[0]->height(), 96U);
}

TEST(Reader, ReadsFragments) {
    const Tracks tracks = tracksOf(videoPath("fragmented.mosk"));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::typeCode), ElementsAre(100, 101, 102, 103));
    EXPECT_THAT(ofEach(tracks, &MP4TrackReader::width), ElementsAre(128U, 64U, 0U, 0U));
}

TEST(Reader, FindsAFileWhateverItsLettersAndSeparators) {
    const TestSupport::TempFolder folder;
    folder.write("Talk.MOSK", TestSupport::readFile(videoPath("recording.mosk")));
    EXPECT_TRUE(openRecording((folder / "").string() + "\\talk.mosk"));
}

} // namespace
} // namespace MOSK
