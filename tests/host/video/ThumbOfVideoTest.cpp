#include "SheetRun.h"

#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;

namespace {

class ThumbOfVideo : public testing::Test {
protected:
    nlohmann::json reportOf(const std::string& input, const std::vector<std::string>& arguments) const {
        std::vector<std::string> words = {"thumb", input, "-o", folder / "out.png", "--json"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const ProgramRun run = runProgram(words);
        errors = run.errors;
        return nlohmann::json::parse(run.output);
    }

    std::optional<int> numberAt(const std::string& video, const std::string& time) const {
        (void)reportOf(videoPath(video), {"--time", time});
        EXPECT_EQ(errors, "");
        return numberIn(thumbnail());
    }

    PictureFile thumbnail() const { return readPng(folder / "out.png"); }

    TestSupport::TempFolder folder;
    mutable std::string errors;
};

} // namespace

TEST_F(ThumbOfVideo, ShowsTheFrameThatCoversTheTime) {
    EXPECT_EQ(numberAt("h264.mp4", "0"), 0);
    EXPECT_EQ(numberAt("h264.mp4", "1.4799"), 36);
    EXPECT_EQ(numberAt("h264.mp4", "1.48"), 37);
    EXPECT_EQ(numberAt("variable-rate.mp4", "0.1"), 2);
    EXPECT_EQ(numberAt("rate-30000-1001.mp4", "1.000999"), 29);
    EXPECT_EQ(numberAt("rate-30000-1001.mp4", "1.001"), 30);
}

TEST_F(ThumbOfVideo, ShowsTheLastFrameAfterTheEnd) {
    EXPECT_EQ(numberAt("h264.mp4", "1e9"), 89);
    EXPECT_EQ(numberAt("h264.mp4", "1e300"), 89);
}

TEST_F(ThumbOfVideo, IsFittedIntoTheBoxAsAPictureIs) {
    (void)reportOf(videoPath("h264.mp4"), {"--size", "64x64"});
    EXPECT_EQ(thumbnail().width, 64);
    EXPECT_EQ(thumbnail().height, 48);
}

TEST_F(ThumbOfVideo, TellsWhichFrameWasAskedAndWhichDelivered) {
    const nlohmann::json report = reportOf(videoPath("h264.mp4"), {"--time", "1.5"});
    EXPECT_EQ(report.at("sourceKind"), "video");
    EXPECT_EQ(report.at("time"), 1.5);
    EXPECT_EQ(report.at("frameTime"), 1.48);
    EXPECT_EQ(report.at("frame"), 37);
}

TEST_F(ThumbOfVideo, TellsNoNumberWhereFramesDoNotFollowEachOtherEvenly) {
    const nlohmann::json report = reportOf(videoPath("variable-rate.mp4"), {"--time", "0.1"});
    EXPECT_EQ(report.at("frameTime"), 0.1);
    EXPECT_TRUE(report.at("frame").is_null());
}

TEST_F(ThumbOfVideo, NameOfTheFileDoesNotMatter) {
    const std::string input = folder.write("clip.jpg", TestSupport::readFile(videoPath("h264.mp4")));
    EXPECT_EQ(reportOf(input, {"--time", "2"}).at("frame"), 50);
}

TEST_F(ThumbOfVideo, StreamThatIsNoVideoIsToldSo) {
    const nlohmann::json report = reportOf(videoPath("with-audio.mp4"), {"--track", "1"});
    EXPECT_EQ(report.at("reason"), "no-video");
    EXPECT_THAT(errors, HasSubstr("with-audio.mp4"));
}

TEST_F(ThumbOfVideo, FileWithoutItsIndexIsTruncated) {
    const std::string whole = TestSupport::readFile(videoPath("h264.mp4"));
    const std::string input = folder.write("cut.mp4", whole.substr(0, whole.size() / 2));
    EXPECT_EQ(reportOf(input, {}).at("reason"), "truncated");
}

TEST_F(ThumbOfVideo, ZoomShowsAPartFromTheTopLeft) {
    // The first block of the number lies in the first quarter of each side.
    (void)reportOf(videoPath("h264.mp4"), {"--size", "0x0", "--time", "1"});
    const PictureFile whole = thumbnail();
    (void)reportOf(videoPath("h264.mp4"), {"--zoom", "64,48,64,48", "--zoom-size", "128x96", "--time", "1"});
    EXPECT_EQ(errors, "");
    const PictureFile part = thumbnail();
    ASSERT_EQ(part.width, 128);
    ASSERT_EQ(part.height, 96);
    for (const auto& [x, y] : {std::pair(16, 12), {48, 36}, {80, 60}, {112, 84}, {112, 12}})
        EXPECT_NEAR(static_cast<int>(part.at(x, y) & 255),
                    static_cast<int>(whole.at(64 + x / 2, 48 + y / 2) & 255), 24)
            << x << ' ' << y;
}

TEST_F(ThumbOfVideo, ZoomLeavesWhatLiesOutsideTransparent) {
    (void)reportOf(videoPath("h264.mp4"), {"--zoom", "-128,0,256,96", "--zoom-size", "256x96"});
    const PictureFile part = thumbnail();
    EXPECT_EQ(part.at(64, 48) >> 24, 0);
    EXPECT_EQ(part.at(192, 48) >> 24, 255);
}

TEST_F(ThumbOfVideo, ZoomNeedsBothOfItsOptions) {
    const std::string input = videoPath("h264.mp4");
    for (const std::vector<std::string>& zoom : {std::vector<std::string>{"--zoom", "0,0,64,48"},
                                                 {"--zoom-size", "64x48"},
                                                 {"--zoom", "0,0,0,48", "--zoom-size", "64x48"},
                                                 {"--zoom", "0,0,64", "--zoom-size", "64x48"},
                                                 {"--zoom", "0,0,64,48", "--zoom-size", "3841x48"},
                                                 {"--zoom", "0,0,64,48", "--zoom-size", "0x48"}}) {
        std::vector<std::string> words = {"thumb", input, "-o", folder / "out.png"};
        words.insert(words.end(), zoom.begin(), zoom.end());
        EXPECT_EQ(runProgram(words).exitStatus, 2) << testing::PrintToString(zoom);
    }
}
