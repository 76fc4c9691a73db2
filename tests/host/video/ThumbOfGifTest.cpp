#include "SheetRun.h"

#include "support/GifFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using TestSupport::GifFile;

constexpr std::uint32_t grey = 0xFF808080;
constexpr std::uint32_t green = 0xFF00FF00;

TestSupport::GifFrame fullOf(int index) {
    return {.width = 8, .height = 4, .index = [index](int, int) { return index; }, .delay = 50};
}

/// Red, green and blue, for half a second each, again and again; grey behind.
GifFile threeColours() {
    return GifFile(8, 4, {0xFF0000, 0x00FF00, 0x0000FF, 0x808080}, 3)
        .loops(0)
        .frame(fullOf(0))
        .frame(fullOf(1))
        .frame(fullOf(2));
}

class ThumbOfGif : public testing::Test {
protected:
    nlohmann::json reportOf(const GifFile& file, const std::vector<std::string>& arguments,
                            const std::string& name = "anim.gif") const {
        std::vector<std::string> words = {"thumb", folder.write(name, file.bytes()), "-o", folder / "out.png",
                                          "--json"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const ProgramRun run = runProgram(words);
        EXPECT_EQ(run.errors, "");
        return nlohmann::json::parse(run.output);
    }

    std::uint32_t colourAt(const std::string& time) const {
        (void)reportOf(threeColours(), {"--time", time});
        return thumbnail().at(1, 1);
    }

    PictureFile thumbnail() const { return readPng(folder / "out.png"); }

    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(ThumbOfGif, ShowsTheFrameOfTheTime) {
    EXPECT_EQ(colourAt("0.2"), red);
    EXPECT_EQ(colourAt("0.5"), green);
    EXPECT_EQ(colourAt("1.2"), blue);
    EXPECT_EQ(colourAt("1.6"), red);
}

TEST_F(ThumbOfGif, ShowsTheSecondFrameAtZero) {
    EXPECT_EQ(colourAt("0"), green);
    EXPECT_EQ(reportOf(threeColours(), {"--time", "0"}).at("frame"), 1);
}

TEST_F(ThumbOfGif, IsAStillPictureWithoutATime) {
    const nlohmann::json report = reportOf(threeColours(), {});
    EXPECT_EQ(report.at("sourceKind"), "image");
    EXPECT_FALSE(report.contains("frame"));
    EXPECT_EQ(thumbnail().at(1, 1), red);
}

TEST_F(ThumbOfGif, OfOneFrameIsAStillPictureAtAnyTime) {
    const GifFile file = GifFile(8, 4, {0xFF0000, 0x0000FF}).frame(fullOf(1));
    EXPECT_EQ(reportOf(file, {"--time", "3"}).at("sourceKind"), "image");
    EXPECT_EQ(thumbnail().at(1, 1), blue);
}

TEST_F(ThumbOfGif, TellsWhichFrameWasAskedAndWhichDelivered) {
    const nlohmann::json report = reportOf(threeColours(), {"--time", "2.75"});
    EXPECT_EQ(report.at("sourceKind"), "animation");
    EXPECT_EQ(report.at("time"), 2.75);
    EXPECT_EQ(report.at("frameTime"), 1.0);
    EXPECT_EQ(report.at("frame"), 2);
}

TEST_F(ThumbOfGif, TransparentPartsShowTheFilesBackground) {
    TestSupport::GifFrame seeThrough = fullOf(1);
    seeThrough.transparentIndex = 1;
    const GifFile file =
        GifFile(8, 4, {0xFF0000, 0x00FF00, 0x0000FF, 0x808080}, 3).frame(seeThrough).frame(seeThrough);
    (void)reportOf(file, {"--time", "0.6"});
    EXPECT_EQ(thumbnail().at(1, 1), grey);
}

TEST_F(ThumbOfGif, IsKnownByItsContent) {
    EXPECT_EQ(reportOf(threeColours(), {"--time", "0.6"}, "anim.png").at("frame"), 1);
}

TEST_F(ThumbOfGif, IsFittedIntoTheBox) {
    (void)reportOf(threeColours(), {"--time", "0.6", "--size", "4x4"});
    EXPECT_EQ(thumbnail().width, 4);
    EXPECT_EQ(thumbnail().height, 2);
}

TEST_F(ThumbOfGif, InABatchItIsTheFrameOfTheTime) {
    const std::string input = folder.write("anim.gif", threeColours().bytes());
    const std::string output = folder / "";
    EXPECT_EQ(runProgram({"batch", "--out-dir", output, "--time", "1.2", input}).exitStatus, 0);
    EXPECT_EQ(readPng(folder / "anim.png").at(1, 1), blue);
    EXPECT_EQ(runProgram({"batch", "--out-dir", output, input}).exitStatus, 0);
    EXPECT_EQ(readPng(folder / "anim.png").at(1, 1), red);
}

TEST(SheetOfGif, ShowsItsFrames) {
    const SheetMaking making;
    const std::string input = making.folder.write("anim.gif", threeColours().bytes());
    const ProgramRun run = making.make(input, {"--every", "0.5"});
    EXPECT_EQ(run.errors, "");
    const std::vector<VttCue> cues = making.cues();
    ASSERT_EQ(cues.size(), 3U);
    const PictureFile sheet = making.sheet();
    for (const auto& [tile, colour] : {std::pair(0, red), std::pair(1, green), std::pair(2, blue)}) {
        const VttCue& cue = cues[static_cast<std::size_t>(tile)];
        EXPECT_EQ(sheet.at(cue.x + cue.width / 2, cue.y + cue.height / 2), colour) << tile;
    }
}
