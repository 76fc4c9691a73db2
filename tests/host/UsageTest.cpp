#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

void expectWrongUsage(const std::vector<std::string>& arguments) {
    const ProgramRun run = runProgram(arguments);
    EXPECT_EQ(run.exitStatus, 2) << testing::PrintToString(arguments);
    EXPECT_THAT(run.errors, StartsWith("kesto-thumbnail")) << testing::PrintToString(arguments);
    EXPECT_THAT(run.output, IsEmpty()) << testing::PrintToString(arguments);
}

void expectOptionRefused(const std::string& option, const std::vector<std::string>& values) {
    const TestSupport::TempFolder folder;
    const std::string input = folder.write("in.png", redAndBluePng(4, 4));
    const std::string output = folder / "out.png";
    for (const std::string& value : values) {
        expectWrongUsage({"thumb", input, "-o", output, option, value});
        EXPECT_FALSE(std::filesystem::exists(output)) << value;
    }
}

} // namespace

TEST(Usage, WithoutACommandIsWrong) {
    expectWrongUsage({});
}

TEST(Usage, UnknownCommandIsWrong) {
    expectWrongUsage({"thump"});
}

TEST(Usage, AWordThatIsNoCommandIsNamed) {
    const ProgramRun run = runProgram({"photo.jpg", "-o", "x.png"});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_THAT(run.errors, HasSubstr("\"photo.jpg\""));
}

TEST(Usage, UnknownOptionIsWrong) {
    expectWrongUsage({"thumb", "in.png", "-o", "out.png", "--sise", "1x1"});
}

TEST(Usage, InputIsRequired) {
    expectWrongUsage({"thumb", "-o", "out.png"});
}

TEST(Usage, OutputIsRequired) {
    expectWrongUsage({"thumb", "in.png"});
}

TEST(Usage, SecondInputIsWrong) {
    expectWrongUsage({"thumb", "a.png", "b.png", "-o", "out.png"});
}

TEST(Usage, OptionWithoutItsValueIsWrong) {
    expectWrongUsage({"thumb", "in.png", "-o", "out.png", "--size"});
}

TEST(Usage, WrongUsageNamesTheHelpOfItsCommand) {
    EXPECT_THAT(runProgram({"thumb"}).errors, HasSubstr("kesto-thumbnail thumb --help"));
}

TEST(Usage, SizeIsTwoLengthsInRange) {
    expectOptionRefused("--size", {"", "160", "160x", "x90", "-1x5", "1x-5", "1x2x3", "1.5x2", " 1x2", "1x2 ",
                                   "+1x2", "32768x1", "1x99999999999", "axb"});
}

TEST(Usage, TimeIsAFiniteNumberOfAtLeastZero) {
    expectOptionRefused("--time", {"", "-1", "nan", "inf", "1e999", "1s", "0x10", " 1"});
}

TEST(Usage, TrackIsAWholeNumberOfAtLeastZero) {
    expectOptionRefused("--track", {"", "-1", "1.5", "x", "0x10", " 1", "99999999999"});
}

TEST(Usage, WrongValueIsToldWithWhatWasExpected) {
    const std::pair<std::string, std::string> expectations[] = {
        {"--size", "--size: expected WIDTHxHEIGHT in pixels, each 0 (no bound) to 32767, found \"x\""},
        {"--time", "--time: expected seconds of at least 0, found \"x\""},
        {"--track", "--track: expected a whole number of at least 0, found \"x\""},
    };
    for (const auto& [option, sentence] : expectations)
        EXPECT_THAT(runProgram({"thumb", "in.png", "-o", "out.png", option, "x"}).errors,
                    StartsWith("kesto-thumbnail thumb: " + sentence + '\n'));
}

TEST(Usage, UnknownOutputExtensionIsToldBeforeTheInputIsLookedAt) {
    for (const char* output : {"out.tiff", "out.webp", "out.", "out", "png", "", "out.png/x"})
        expectWrongUsage({"thumb", "there-is-no-such-file.png", "-o", output});
}

TEST(Usage, HelpNamesTheCommandsAndTheExitStatus) {
    const ProgramRun run = runProgram({"--help"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output, HasSubstr("thumb"));
    EXPECT_THAT(run.output, HasSubstr("Exit status"));
    EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Usage, HelpOfThumbNamesEveryOption) {
    const ProgramRun run = runProgram({"thumb", "--help"});
    EXPECT_EQ(run.exitStatus, 0);
    for (const char* word : {"INPUT", "--output", "--size", "0x92", "--time", "--track", "--json"})
        EXPECT_THAT(run.output, HasSubstr(word));
    EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Usage, VersionTellsProgramLibraryAndDecoders) {
    const ProgramRun run = runProgram({"--version"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.output, StartsWith("kesto-thumbnail " KESTO_VERSION "\nlibrary: " KESTO_VERSION "\n"));
    for (const char* decoder : {"BMP", "GIF", "JPEG", "PNG", "TIFF", "WebP"})
        EXPECT_THAT(run.output, HasSubstr(decoder));
    EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Usage, VersionTellsWhetherDocumentsCanBeRead) {
    EXPECT_THAT(runProgram({"--version"}).output, HasSubstr("\ndocuments: PDF\n"));
    // Where the library is found, its modules are looked for: beside this copy there are none.
    const TestSupport::TempFolder folder;
    const std::filesystem::path library = KESTO_PAGE_RASTER_LIB;
    std::filesystem::copy_file(library, folder / library.filename().string());
    const std::string found = (folder / "").string() + ":" + library.parent_path().string();
    const ProgramRun run = runProgram({"--version"}, {.before = {"env", "LD_LIBRARY_PATH=" + found}});
    EXPECT_EQ(run.exitStatus, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("\ndocuments: none\n"));
}

TEST(Usage, OutputThatCannotBeWrittenIsAFailure) {
    const ProgramRun run = runProgram({"--version"}, {.outputFile = "/dev/full"});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, Not(IsEmpty()));
}
