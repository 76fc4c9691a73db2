#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

/// Runs in `folder`, so that a name can begin with a dash.
ProgramRun thumbIn(const TestSupport::TempFolder& folder, const std::string& input,
                   const std::string& output) {
    return runProgram({"thumb", "-o", output, "--", input},
                      {.before = {"env", "--chdir=" + (folder / "").string()}});
}

} // namespace

class FileNames : public testing::TestWithParam<const char*> {};

TEST_P(FileNames, AreTakenAsTheyStandForTheInput) {
    const TestSupport::TempFolder folder;
    folder.write(GetParam(), redAndBluePng(30, 20));
    const ProgramRun run = thumbIn(folder, GetParam(), "thumbnail.png");
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(readPng(folder / "thumbnail.png").width, 30);
}

TEST_P(FileNames, AreTakenAsTheyStandForTheOutput) {
    const TestSupport::TempFolder folder;
    folder.write("picture", redAndBluePng(30, 20));
    const std::string output = std::string(GetParam()) + ".png";
    const ProgramRun run = thumbIn(folder, "picture", output);
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_EQ(readPng(folder / output).width, 30);
}

INSTANTIATE_TEST_SUITE_P(Odd, FileNames,
                         testing::Values("with blanks in it", "\xC3\xA4\xE4\xBD\xA0\xF0\x9F\x8E\xA8", "-o",
                                         "--help", "--", "thumb", "[a,b]", "{x}", "a=b", "\"quoted\"", "'",
                                         "%41", "new\nline", "a;b&c|d$e", "~", "caf\x65\xCC\x81"));

TEST(Names, OptionTakesAValueThatBeginsWithADash) {
    const TestSupport::TempFolder folder;
    folder.write("picture", redAndBluePng(30, 20));
    EXPECT_EQ(thumbIn(folder, "picture", "-out.png").exitStatus, 0);
    EXPECT_EQ(readPng(folder / "-out.png").width, 30);
}
