#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/PdfFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::StartsWith;

namespace {

/// Makes a thumbnail of a file of this name and content with these further arguments, and reads it back.
class ThumbCommand : public testing::Test {
protected:
    PictureFile thumbnailOf(const std::string& input, const std::vector<std::string>& options = {}) const {
        const std::string output = folder / "thumbnail.png";
        std::vector<std::string> arguments = {"thumb", input, "-o", output};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ProgramRun run = runProgram(arguments);
        EXPECT_EQ(run.exitStatus, 0) << run.errors;
        EXPECT_EQ(run.output + run.errors, "");
        return readPng(output);
    }

    std::string redAndBlue(int width, int height) const {
        return folder.write("in.png", redAndBluePng(width, height));
    }

    TestSupport::TempFolder folder;
};

std::pair<int, int> sizeOf(const PictureFile& picture) {
    return {picture.width, picture.height};
}

} // namespace

TEST_F(ThumbCommand, ShowsThePictureScaledIntoTheBox) {
    const PictureFile thumbnail = thumbnailOf(redAndBlue(300, 200), {"--size", "60x60"});
    EXPECT_EQ(sizeOf(thumbnail), std::pair(60, 40));
    EXPECT_EQ(thumbnail.at(10, 20), red);
    EXPECT_EQ(thumbnail.at(50, 20), blue);
}

TEST_F(ThumbCommand, IsAtMost92HighByDefault) {
    EXPECT_EQ(sizeOf(thumbnailOf(redAndBlue(300, 200))), std::pair(138, 92));
}

TEST_F(ThumbCommand, ZeroIsNoBoundInThatDirection) {
    const std::string input = redAndBlue(300, 200);
    EXPECT_EQ(sizeOf(thumbnailOf(input, {"--size", "30x0"})), std::pair(30, 20));
    EXPECT_EQ(sizeOf(thumbnailOf(input, {"--size", "0x20"})), std::pair(30, 20));
    EXPECT_EQ(sizeOf(thumbnailOf(input, {"--size", "0x0"})), std::pair(300, 200));
}

TEST_F(ThumbCommand, NeverEnlarges) {
    EXPECT_EQ(sizeOf(thumbnailOf(redAndBlue(8, 6), {"--size", "32767x32767"})), std::pair(8, 6));
}

TEST_F(ThumbCommand, TakesTimeAndTrackOfInputsThatHaveNeither) {
    EXPECT_EQ(sizeOf(thumbnailOf(redAndBlue(8, 6), {"--time", "1.5", "--track", "2"})), std::pair(8, 6));
}

TEST_F(ThumbCommand, ShowsTheFirstPageOfADocument) {
    const TestSupport::PdfFile page = {
        .widthInPoints = 300, .heightInPoints = 150, .content = "1 0 0 rg 0 0 150 150 re f"};
    const PictureFile thumbnail = thumbnailOf(folder.write("page.PDF", page.text()), {"--size", "100x100"});
    EXPECT_EQ(sizeOf(thumbnail), std::pair(100, 50));
    EXPECT_EQ(thumbnail.at(20, 25), red);
    EXPECT_EQ(thumbnail.at(80, 25), 0xFFFFFFFF);
}

TEST_F(ThumbCommand, ExtensionOfTheOutputPicksItsFormat) {
    const std::string input = redAndBlue(30, 20);
    const std::pair<const char*, std::string> outputs[] = {
        {"out.png", "\x89PNG\r\n\x1A\n"},
        {"out.jpg", "\xFF\xD8\xFF"},
        {"out.jpeg", "\xFF\xD8\xFF"},
        {"out.gif", "GIF8"},
        {"out.bmp", "BM"},
        {"upper.JPG", "\xFF\xD8\xFF"},
    };
    for (const auto& [name, signature] : outputs) {
        const std::string output = folder / name;
        EXPECT_EQ(runProgram({"thumb", input, "-o", output}).exitStatus, 0) << name;
        EXPECT_THAT(TestSupport::readFile(output), StartsWith(signature)) << name;
        const PictureFile again = thumbnailOf(output);
        EXPECT_EQ(sizeOf(again), std::pair(30, 20)) << name;
    }
}

TEST_F(ThumbCommand, ReplacesWhatTheOutputWas) {
    const std::string input = redAndBlue(30, 20);
    const std::string output = folder.write("out.png", std::string(100'000, 'x'));
    EXPECT_EQ(runProgram({"thumb", input, "-o", output}).exitStatus, 0);
    EXPECT_EQ(sizeOf(readPng(output)), std::pair(30, 20));
}

TEST_F(ThumbCommand, OptionsMayStandBeforeTheInput) {
    const std::string input = redAndBlue(30, 20);
    const std::string output = folder / "out.png";
    EXPECT_EQ(runProgram({"thumb", "--output=" + output, "--size=10x10", input}).exitStatus, 0);
    EXPECT_EQ(sizeOf(readPng(output)), std::pair(10, 7));
}
