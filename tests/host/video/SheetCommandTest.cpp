#include "SheetRun.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

/// Fixtures of 128 x 96 pixels become tiles of 120 x 90.
class SheetCommand : public testing::Test {
protected:
    void expectMade(const ProgramRun& run) const {
        EXPECT_EQ(run.exitStatus, 0) << run.errors;
        EXPECT_THAT(run.errors, IsEmpty());
    }

    std::vector<int> numbersOf(const std::string& video, const std::vector<std::string>& arguments) const {
        expectMade(making.make(videoPath(video), arguments));
        return making.numbers();
    }

    void expectRefused(const std::string& input, const std::vector<std::string>& arguments,
                       const std::string& reason) const {
        std::vector<std::string> words = arguments;
        words.emplace_back("--json");
        const ProgramRun run = making.make(input, words);
        EXPECT_EQ(run.exitStatus, 1) << reason;
        const nlohmann::json report = nlohmann::json::parse(run.output);
        EXPECT_EQ(report.at("reason"), reason) << run.errors;
        EXPECT_EQ(run.errors, "kesto-thumbnail: " + report.at("message").get<std::string>() + "\n");
        EXPECT_TRUE(report.at("width").is_null());
        EXPECT_FALSE(std::filesystem::exists(making.folder / "sheet.png")) << reason;
        EXPECT_FALSE(std::filesystem::exists(making.folder / "sheet.vtt")) << reason;
    }

    std::size_t filesInFolder() const {
        const std::filesystem::directory_iterator files(making.folder / "");
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    SheetMaking making;
};

} // namespace

TEST_F(SheetCommand, CountGivesEvenlySpacedFramesFromTheFirstOne) {
    EXPECT_THAT(numbersOf("h264.mp4", {"--count", "9"}), ElementsAre(0, 10, 20, 30, 40, 50, 60, 70, 80));
    EXPECT_EQ(making.sheet().width, 9 * 120);
    EXPECT_EQ(making.sheet().height, 90);
}

TEST_F(SheetCommand, CuesFollowEachOtherUpToTheEnd) {
    (void)numbersOf("h264.mp4", {"--count", "3"});
    const std::vector<VttCue> cues = making.cues();
    ASSERT_EQ(cues.size(), 3);
    EXPECT_EQ(cues[0].start, "00:00:00.000");
    EXPECT_EQ(cues[0].end, "00:00:01.200");
    EXPECT_EQ(cues[1].start, "00:00:01.200");
    EXPECT_EQ(cues[2].end, "00:00:03.600");
    EXPECT_EQ(cues[0].picture, "sheet.png");
}

TEST_F(SheetCommand, StepGivesAFrameAtTheStartAndAfterEachStep) {
    EXPECT_THAT(numbersOf("h264.mp4", {"--every", "1"}), ElementsAre(0, 25, 50, 75));
}

TEST_F(SheetCommand, TimesAreSortedAndShowTheFrameThatCoversEach) {
    EXPECT_THAT(numbersOf("h264.mp4", {"--times", "3,0:01.5,0.04,0.039,00:00:03"}),
                ElementsAre(0, 1, 37, 75));
}

TEST_F(SheetCommand, FramesOfVariableRateAreExactToTheMillisecond) {
    EXPECT_THAT(numbersOf("variable-rate.mp4", {"--times", "0.039,0.04,0.099,0.1,5.499,5.5"}),
                ElementsAre(0, 1, 1, 2, 21, 22));
}

TEST_F(SheetCommand, FramesOfFractionalRateAreExact) {
    EXPECT_THAT(numbersOf("rate-30000-1001.mp4", {"--times", "0.0333,0.0343,1,1.001"}),
                ElementsAre(0, 1, 29, 30));
}

TEST_F(SheetCommand, TimeZeroIsTheFirstFrameWhereverTheFileStarts) {
    EXPECT_THAT(numbersOf("starts-late.mkv", {"--times", "0,1"}), ElementsAre(0, 25));
}

TEST_F(SheetCommand, OneFrameIsASheet) {
    EXPECT_THAT(numbersOf("one-frame.mp4", {"--count", "1"}), ElementsAre(0));
}

TEST_F(SheetCommand, EveryFrameOfAVideoFitsOnASheet) {
    std::vector<int> all(90);
    std::generate(all.begin(), all.end(), [n = 0]() mutable { return n++; });
    EXPECT_EQ(numbersOf("h264.mp4", {"--count", "90"}), all);
    EXPECT_EQ(making.sheet().width, 3960);
}

TEST_F(SheetCommand, WhereRowsWouldClipTheGridIsTaken) {
    std::vector<int> numbers = numbersOf("one-key-frame.mp4", {"--count", "250", "--tile", "110x90"});
    EXPECT_EQ(numbers.size(), 250);
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
    EXPECT_EQ(numbers.front(), 0);
    EXPECT_EQ(numbers.back(), 249);
    EXPECT_EQ(making.sheet().width, 16 * 110);
}

TEST_F(SheetCommand, AskedRowsThatClipAreMadeWithAWarning) {
    const ProgramRun run = making.make(videoPath("one-key-frame.mp4"),
                                       {"--count", "250", "--tile", "110x90", "--style", "rows", "--json"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.errors, StartsWith("kesto-thumbnail: warning: "));
    EXPECT_THAT(run.errors, HasSubstr("of 250 tiles are cut off by the sheet's edge: 107"));
    EXPECT_THAT(run.errors, HasSubstr("--style grid"));
    const nlohmann::json tiles = nlohmann::json::parse(run.output).at("tiles");
    EXPECT_EQ(tiles[106].at("clipped"), true);
    EXPECT_EQ(tiles[105].at("clipped"), false);
}

TEST_F(SheetCommand, ReportTellsSheetAndTiles) {
    const ProgramRun run = making.make(videoPath("h264.mp4"), {"--every", "2", "--json"});
    expectMade(run);
    nlohmann::json report = nlohmann::json::parse(run.output);
    EXPECT_GT(report.at("milliseconds").get<double>(), 0);
    report.erase("milliseconds");
    const auto tile = [](double time, int x) {
        return nlohmann::json{{"time", time},    {"x", x},       {"y", 0},
                              {"width", 120},    {"height", 90}, {"hasPicture", true},
                              {"clipped", false}};
    };
    EXPECT_EQ(report, (nlohmann::json{{"input", videoPath("h264.mp4")},
                                      {"output", making.folder / "sheet.png"},
                                      {"vtt", making.folder / "sheet.vtt"},
                                      {"html", nullptr},
                                      {"width", 240},
                                      {"height", 90},
                                      {"sourceKind", "video"},
                                      {"style", "rows"},
                                      {"tileWidth", 120},
                                      {"tileHeight", 90},
                                      {"duration", 3.6},
                                      {"tiles", {tile(0, 0), tile(2, 120)}}}));
}

TEST_F(SheetCommand, WhatWasThereIsReplacedAndNothingElseIsLeft) {
    making.folder.write("sheet.png", std::string(100'000, 'x'));
    EXPECT_THAT(numbersOf("h264.mp4", {"--times", "1"}), ElementsAre(25));
    EXPECT_EQ(filesInFolder(), 2);
}

TEST_F(SheetCommand, NothingIsWrittenWhereOneFileCannotBe) {
    const std::string html = making.folder / "no-such-folder/page.html";
    expectRefused(videoPath("h264.mp4"), {"--count", "2", "--html", html}, "not-written");
    EXPECT_EQ(filesInFolder(), 0);
}

TEST_F(SheetCommand, TheInputIsNeverReplaced) {
    const std::string input = making.folder.write("clip.png", TestSupport::readFile(videoPath("h264.mp4")));
    const ProgramRun run = runProgram({"sheet", input, "-o", input, "--count", "1"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("would replace the input"));
    EXPECT_EQ(TestSupport::readFile(input), TestSupport::readFile(videoPath("h264.mp4")));
}

TEST_F(SheetCommand, WhatCannotBeReadIsToldApart) {
    const std::string whole = TestSupport::readFile(videoPath("h264.mp4"));
    const std::string& folder = making.folder / "";
    const std::vector<std::string> one = {"--count", "1"};
    expectRefused(folder + "nothing.mp4", one, "missing");
    expectRefused(folder, one, "not-a-file");
    expectRefused(making.folder.write("empty.mp4", ""), one, "empty");
    expectRefused(making.folder.write("text.mp4", "This is no video."), one, "unknown-format");
    expectRefused(making.folder.write("cut.mp4", whole.substr(0, whole.size() / 2)), one, "truncated");
}

TEST_F(SheetCommand, TimesAfterTheEndAreRefused) {
    expectRefused(videoPath("h264.mp4"), {"--times", "1,3.6"}, "after-end");
}

TEST_F(SheetCommand, SheetsOfTooManyPixelsAreRefused) {
    expectRefused(videoPath("one-key-frame.mp4"), {"--every", "0.001"}, "sheet-too-large");
}

TEST_F(SheetCommand, ExactlyOneWayToTellTheTimesIsRequired) {
    for (const std::vector<std::string>& times :
         {std::vector<std::string>{}, {"--count", "1", "--every", "1"}, {"--count", "0"}, {"--times", "x"}})
        EXPECT_EQ(making.make(videoPath("h264.mp4"), times).exitStatus, 2) << testing::PrintToString(times);
}

TEST_F(SheetCommand, NamesOfVttAndPageEndAsSuchFilesDo) {
    for (const char* option : {"--vtt", "--html"})
        EXPECT_EQ(runProgram({"sheet", "in.mp4", "-o", "x.png", "--count", "1", option, "x.png"}).exitStatus,
                  2);
}

TEST_F(SheetCommand, APictureIsShownForAsLongAsAProjectWouldShowIt) {
    const std::string input = making.folder.write("in.png", redAndBluePng(40, 20));
    const ProgramRun run = making.make(input, {"--count", "2", "--json"});
    expectMade(run);
    EXPECT_EQ(nlohmann::json::parse(run.output).at("sourceKind"), "image");
    EXPECT_EQ(making.sheet().at(45, 10), red);
    EXPECT_EQ(making.sheet().at(75, 10), blue);
}

TEST_F(SheetCommand, SoundAloneIsToldSo) {
    const std::string header(
        "RIFF\x24\x04\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x44\xAC\0\0\x88\x58\1\0\2\0\x10\0data\0\4\0\0", 44);
    expectRefused(making.folder.write("tone.wav", header + std::string(1024, '\0')), {"--count", "1"},
                  "no-video");
}
