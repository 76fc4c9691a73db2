#include "SheetRun.h"

#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace {

class BatchOfVideos : public testing::Test {
protected:
    ProgramRun batch(const std::vector<std::string>& arguments) const {
        std::vector<std::string> words = {"batch", "--out-dir", folder / "."};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return runProgram(words);
    }

    std::optional<int> numberOf(const std::string& name) const { return numberIn(readPng(folder / name)); }

    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(BatchOfVideos, ShowsTheFrameThatCoversTheTimeOfEach) {
    const ProgramRun run =
        batch({"--time", "1.48", "--jobs", "2", videoPath("h264.mp4"), videoPath("rate-30000-1001.mp4")});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(numberOf("h264.png"), 37);
    EXPECT_EQ(numberOf("rate-30000-1001.png"), 44);
}

TEST_F(BatchOfVideos, TellsWhatIsNoVideoEither) {
    const std::string text = folder.write("text.mp4", "no video at all");
    const ProgramRun run = batch({text, videoPath("h264.mp4")});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("text.mp4\" is no picture, document, video or project"));
    EXPECT_EQ(numberOf("h264.png"), 0);
}
