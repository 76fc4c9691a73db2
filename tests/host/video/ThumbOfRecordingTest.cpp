#include "SheetRun.h"

#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;

namespace {

/// Screen and camera of `recording.mosk` show 25 frames a second; those of the camera count from 100.
class ThumbOfRecording : public testing::Test {
protected:
    nlohmann::json reportOf(const std::string& input, const std::vector<std::string>& arguments) const {
        std::vector<std::string> words = {"thumb",  input,    "-o", folder / "out.png",
                                          "--json", "--size", "0x0"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const ProgramRun run = runProgram(words);
        errors = run.errors;
        return nlohmann::json::parse(run.output);
    }

    PictureFile thumbnail() const { return readPng(folder / "out.png"); }
    static std::optional<int> numberInCorner(const PictureFile& picture) {
        return numberIn(picture, picture.width / 2, picture.height / 2, picture.width / 2,
                        picture.height / 2);
    }

    TestSupport::TempFolder folder;
    mutable std::string errors;
    std::string recording = videoPath("recording.mosk");
};

} // namespace

TEST_F(ThumbOfRecording, ShowsTheCameraInTheCornerOfTheScreen) {
    (void)reportOf(recording, {"--time", "1.5", "--track", "0"});
    const PictureFile screen = thumbnail();
    EXPECT_EQ(numberIn(screen), 37);

    const nlohmann::json report = reportOf(recording, {"--time", "1.5"});
    EXPECT_EQ(errors, "");
    EXPECT_EQ(report.at("sourceKind"), "recording");
    EXPECT_EQ(report.at("time"), 1.5);
    EXPECT_EQ(report.at("width"), 128);
    EXPECT_EQ(report.at("height"), 96);
    const PictureFile both = thumbnail();
    EXPECT_EQ(numberInCorner(both), 137);
    for (const auto& [x, y] : {std::pair(16, 12), {127, 47}, {63, 95}, {80, 30}, {30, 80}})
        EXPECT_EQ(both.at(x, y), screen.at(x, y)) << x << ' ' << y;
}

TEST_F(ThumbOfRecording, ShowsTheFramesThatCoverTheTime) {
    (void)reportOf(recording, {"--time", "1.4799", "--track", "0"});
    EXPECT_EQ(numberIn(thumbnail()), 36);
    (void)reportOf(recording, {"--time", "1.48", "--track", "1"});
    EXPECT_EQ(numberIn(thumbnail()), 137);
    (void)reportOf(recording, {"--time", "1e9"});
    EXPECT_EQ(numberInCorner(thumbnail()), 189);
}

TEST_F(ThumbOfRecording, ShowsTheCameraAlone) {
    EXPECT_EQ(reportOf(recording, {"--time", "1", "--track", "1"}).at("width"), 64);
    EXPECT_EQ(numberIn(thumbnail()), 125);
}

TEST_F(ThumbOfRecording, IsFittedIntoTheBox) {
    const ProgramRun run = runProgram({"thumb", recording, "-o", folder / "out.png", "--size", "64x64"});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(thumbnail().width, 64);
    EXPECT_EQ(thumbnail().height, 48);
}

TEST_F(ThumbOfRecording, IsTheSameInABatch) {
    const ProgramRun run = runProgram({"batch", "--out-dir", folder / ".", "--size", "0x0", "--time", "1.5",
                                       recording, videoPath("stills.mov")});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(numberInCorner(readPng(folder / "recording.png")), 137);
    EXPECT_EQ(numberIn(readPng(folder / "stills.png")), 9);
}

TEST_F(ThumbOfRecording, TrackOfSoundIsToldSo) {
    const nlohmann::json report = reportOf(recording, {"--track", "2"});
    EXPECT_EQ(report.at("reason"), "no-video");
    EXPECT_THAT(errors, HasSubstr("Track 2 of \"" + recording + "\" is neither the screen nor the camera."));
}

TEST_F(ThumbOfRecording, TrackThatIsNotThereIsToldSo) {
    EXPECT_EQ(reportOf(recording, {"--track", "4"}).at("reason"), "no-video");
    EXPECT_THAT(errors, HasSubstr("has 4 tracks, which count from 0, and no track 4."));
}

TEST_F(ThumbOfRecording, FileThatIsNoRecordingIsToldSo) {
    const std::string text = folder.write("text.mosk", "no recording at all");
    for (const std::vector<std::string>& track : {std::vector<std::string>(), {"--track", "0"}}) {
        EXPECT_EQ(reportOf(text, track).at("reason"), "unknown-format");
        EXPECT_THAT(errors, HasSubstr("text.mosk\" is no recording that can be read."));
    }
}

TEST_F(ThumbOfRecording, RecordingWithoutScreenAndCameraIsToldSo) {
    const std::string video = folder.write("video.mosk", TestSupport::readFile(videoPath("h264.mp4")));
    EXPECT_EQ(reportOf(video, {}).at("reason"), "no-video");
    EXPECT_THAT(errors, HasSubstr("has neither a track of the screen nor one of the camera."));
}

TEST_F(ThumbOfRecording, RecordingThatEndsTooEarlyIsToldSo) {
    const std::string whole = TestSupport::readFile(recording);
    const std::string cut = folder.write("cut.mosk", whole.substr(0, whole.size() / 2));
    EXPECT_EQ(reportOf(cut, {}).at("reason"), "truncated");
}

TEST_F(ThumbOfRecording, MissingRecordingIsToldSo) {
    EXPECT_EQ(reportOf(folder / "missing.mosk", {}).at("reason"), "missing");
}

TEST_F(ThumbOfRecording, PictureUnderTheNameOfARecordingIsAPicture) {
    const std::vector<unsigned char> png = redAndBluePng(8, 4);
    const std::string input = folder.write("picture.mosk", png);
    EXPECT_EQ(reportOf(input, {}).at("width"), 8);
}

TEST_F(ThumbOfRecording, MovieOfPngsShowsItsStillAndTellsWhichOne) {
    const nlohmann::json report = reportOf(videoPath("stills.mov"), {"--time", "0.21"});
    EXPECT_EQ(errors, "");
    EXPECT_EQ(numberIn(thumbnail()), 5);
    EXPECT_EQ(report.at("frame"), 5);
    EXPECT_EQ(report.at("frameTime"), 0.2);
}
