#include "host/ProgramRun.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

using testing::AnyOf;
using testing::HasSubstr;

namespace {

class PackFailure : public testing::TestWithParam<const char*> {
protected:
    std::string output() const { return (folder / GetParam()).string(); }

    void expectFailure(const std::vector<std::string>& inputs, const std::string& reason,
                       const std::string& words) const {
        std::vector<std::string> arguments = {"pack", "-o", output(), "--json"};
        arguments.insert(arguments.end(), inputs.begin(), inputs.end());
        const ProgramRun run = runProgram(arguments);
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_THAT(run.errors, HasSubstr(words));
        const nlohmann::json report = nlohmann::json::parse(run.output);
        EXPECT_EQ(report.at("reason"), reason);
        EXPECT_TRUE(report.at("parts").empty());
        EXPECT_FALSE(std::filesystem::exists(output()));
    }

    const TestSupport::TempFolder folder;
    const std::string screen = videoPath("mjpeg.avi");
};

TEST_P(PackFailure, NamesAnInputThatIsMissing) {
    const std::string missing = (folder / "none.avi").string();
    expectFailure({"--screen", missing}, "missing", missing);
    expectFailure({"--screen", screen, "--events", missing}, "missing", missing);
}

TEST_P(PackFailure, NamesAnInputThatIsNoMedia) {
    const std::string text = folder.write("text.avi", "no video").string();
    expectFailure({"--screen", text}, "unknown-format", text);
}

TEST_P(PackFailure, NamesAnInputWithoutTheStreamThatIsExpected) {
    expectFailure({"--screen", screen, "--audio", videoPath("h264.mp4")}, "no-such-stream", "h264.mp4");
    expectFailure({"--screen", videoPath("tone.wav")}, "no-such-stream", "video is expected");
}

TEST_P(PackFailure, DoesNotWaitForAPipe) {
    const std::string pipe = (folder / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectFailure({"--screen", pipe}, "not-a-file", pipe);
    expectFailure({"--screen", screen, "--events", pipe}, "not-a-file", pipe);
}

TEST_P(PackFailure, NamesAnInputThatIsAFolder) {
    const std::string inside = (folder / "").string();
    expectFailure({"--screen", inside}, "not-a-file", inside);
    expectFailure({"--screen", screen, "--events", inside}, "not-a-file", inside);
}

TEST_P(PackFailure, TellsWhyTheOutputCannotBeWritten) {
    const std::string inNoFolder = (folder / "none" / GetParam()).string();
    const ProgramRun run = runProgram({"pack", "--screen", screen, "-o", inNoFolder});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr(inNoFolder));
}

TEST_P(PackFailure, LeavesAPipeAloneWithoutWaitingForItsReader) {
    ASSERT_EQ(::mkfifo(output().c_str(), 0600), 0);
    const ProgramRun run = runProgram({"pack", "--screen", screen, "-o", output()});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("\"" + output() + "\" can't be written: there is a pipe"));
    EXPECT_TRUE(std::filesystem::is_fifo(output()));
}

TEST_P(PackFailure, TellsThatThereIsNoRoomAndLeavesNothing) {
    // A limit to the size of files is met as a full disk is.
    const std::vector<std::string> limited = {"sh", "-c", "trap '' XFSZ; ulimit -f 8; exec \"$@\"", "sh"};
    const ProgramRun run = runProgram({"pack", "--screen", screen, "-o", output()}, {.before = limited});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr(output()));
    EXPECT_THAT(run.errors, AnyOf(HasSubstr("no room left"), HasSubstr("File too large")));
    EXPECT_TRUE(std::filesystem::is_empty(folder / ""));
}

TEST_P(PackFailure, NeverReplacesAnInput) {
    const std::string input = folder.write(GetParam(), TestSupport::readFile(screen)).string();
    const ProgramRun run = runProgram({"pack", "--screen", input, "-o", input});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("would replace the input"));
    EXPECT_EQ(TestSupport::readFile(input), TestSupport::readFile(screen));
}

INSTANTIATE_TEST_SUITE_P(OfEachContainer, PackFailure, testing::Values("talk.mosk", "talk.plumex"));

TEST(PackUsage, AnInputHasAName) {
    const TestSupport::TempFolder folder;
    const std::string output = (folder / "talk.plumex").string();
    for (const std::string option : {"--screen", "--camera", "--audio", "--system-audio", "--events"}) {
        std::vector<std::string> arguments = {"pack", "-o", output, option, ""};
        if (option != "--screen")
            arguments.insert(arguments.end(), {"--screen", videoPath("mjpeg.avi")});
        const ProgramRun run = runProgram(arguments);
        EXPECT_EQ(run.exitStatus, 2) << option;
        EXPECT_THAT(run.errors, HasSubstr(option + ": expected the name of a file, found \"\""));
        EXPECT_FALSE(std::filesystem::exists(output)) << option;
    }
}

TEST(PackUsage, WantsAScreenAndTheNameOfARecording) {
    EXPECT_EQ(runProgram({"pack", "-o", "talk.mosk"}).exitStatus, 2);
    const ProgramRun run = runProgram({"pack", "--screen", "s.avi", "-o", "talk.mp4"});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_THAT(run.errors, HasSubstr("expected a name that ends in .mosk or .plumex, found \"talk.mp4\""));
}

} // namespace
