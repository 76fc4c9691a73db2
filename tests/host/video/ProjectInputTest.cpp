#include "SheetRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A canvas of 64 x 36, all red for a second and then all blue for a second, at 10 frames to the second; from
/// 0.5 seconds on the upper left quarter is white.
constexpr const char* colors = R"({"format": "kesto-project", "version": 2,
    "canvas": {"width": 64, "height": 36}, "frameRate": 10, "tracks": [
    {"media": [
        {"kind": "color", "color": "#ff0000", "duration": 1, "width": 64, "height": 36},
        {"kind": "color", "color": "#0000ff", "start": 1, "duration": 1, "width": 64, "height": 36}]},
    {"media": [
        {"kind": "color", "color": "#ffffff", "start": 0.5, "duration": 1.5, "width": 32, "height": 18,
         "position": [-16, -9]}]}]})";

constexpr std::uint32_t white = 0xFFFFFFFF;

class ProjectInput : public testing::Test {
protected:
    nlohmann::json thumb(const std::vector<std::string>& arguments) const {
        std::vector<std::string> words = {"thumb", input, "-o", picture, "--json"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return nlohmann::json::parse(runProgram(words).output);
    }

    SheetMaking making;
    std::string input = making.folder.write("colors.qrlproj", colors);
    std::string picture = making.folder / "thumb.png";
};

} // namespace

TEST_F(ProjectInput, ThumbShowsTheFrameOfTheTime) {
    const nlohmann::json report = thumb({"--time", "1.25"});
    EXPECT_EQ(report.at("sourceKind"), "project");
    EXPECT_EQ(report.at("frame"), 12);
    EXPECT_EQ(report.at("frameTime"), 1.2);
    EXPECT_EQ(readPng(picture).at(50, 30), blue);
    EXPECT_EQ(readPng(picture).at(10, 5), white);
}

TEST_F(ProjectInput, ThumbAtAFrameBoundaryIsTheFrameThatStartsThere) {
    EXPECT_EQ(thumb({"--time", "1"}).at("frame"), 10);
    EXPECT_EQ(readPng(picture).at(50, 30), blue);
    EXPECT_EQ(thumb({"--time", "0.999999"}).at("frame"), 9);
    EXPECT_EQ(readPng(picture).at(50, 30), red);
    EXPECT_EQ(thumb({"--time", "0.7"}).at("frame"), 7);
}

TEST_F(ProjectInput, ThumbAfterTheEndIsRefused) {
    EXPECT_EQ(thumb({"--time", "2"}).at("reason"), "after-end");
}

TEST_F(ProjectInput, ZoomCountsFromTheTopLeft) {
    (void)thumb({"--time", "1", "--zoom", "16,9,32,18", "--zoom-size", "320x180"});
    const PictureFile view = readPng(picture);
    ASSERT_EQ(view.width, 320);
    ASSERT_EQ(view.height, 180);
    EXPECT_EQ(view.at(80, 45), white);
    EXPECT_EQ(view.at(240, 45), blue);
    EXPECT_EQ(view.at(80, 135), blue);
}

TEST_F(ProjectInput, SheetShowsEachTimeAndLastsAsLongAsTheProject) {
    EXPECT_EQ(making.make(input, {"--count", "4"}).errors, "");
    const PictureFile sheet = making.sheet();
    EXPECT_EQ(sheet.width, 4 * 64);
    EXPECT_EQ(sheet.at(5, 5), red);
    EXPECT_EQ(sheet.at(64 + 5, 5), white);
    EXPECT_EQ(sheet.at(64 + 50, 5), red);
    EXPECT_EQ(sheet.at(128 + 50, 5), blue);
    EXPECT_EQ(making.cues().back().end, "00:00:02.000");
}

TEST_F(ProjectInput, AnErrorNamesFilePlaceAndExpectation) {
    std::string text = colors;
    text.replace(text.find("\"duration\": 1,"), 14, "\"duration\": -3,");
    input = making.folder.write("bad.qrlproj", text);
    const nlohmann::json report = thumb({});
    EXPECT_EQ(report.at("reason"), "bad-project");
    EXPECT_THAT(report.at("message").get<std::string>(),
                AllOf(HasSubstr("bad.qrlproj"), HasSubstr("/tracks/0/media/0/duration"), HasSubstr("-3")));
    EXPECT_THAT(making.make(input, {"--count", "2"}).errors,
                AllOf(StartsWith("kesto-thumbnail: "), HasSubstr("/tracks/0/media/0/duration")));
}

TEST_F(ProjectInput, AProjectThatIsNotThereIsMissing) {
    input = making.folder / "none.qrlproj";
    EXPECT_EQ(thumb({}).at("reason"), "missing");
}
