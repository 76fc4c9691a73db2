#include "BatchRun.h"

#include "RunningProgram.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// Whoever writes next waits.
void fill(const OpenFile& pipe) {
    ::fcntl(pipe.get(), F_SETFL, O_NONBLOCK);
    const std::string much(65536, '\n');
    while (::write(pipe.get(), much.data(), much.size()) > 0) {
    }
    ::fcntl(pipe.get(), F_SETFL, 0);
}

class BatchInterruption : public BatchRun {
protected:
    BatchInterruption() { picture("a.png", 20); }

    std::vector<std::string> batchOfLines() const {
        return {"batch", "--json", "--out-dir", folder / "out", "-"};
    }
    std::string line() const { return (folder / "a.png").string() + '\n'; }

    /// All that is there is a whole picture, also what has no name yet.
    std::size_t countWholePictures() const {
        for (const std::string& name : written())
            EXPECT_EQ(widthOf("out/" + name), 20) << name;
        return written().size();
    }
};

nlohmann::json summaryOf(const ProgramRun& run) {
    const std::size_t start = run.output.rfind("{\"summary\"");
    return nlohmann::json::parse(run.output.substr(start)).at("summary");
}

} // namespace

TEST_F(BatchInterruption, EndsTheWaitForALine) {
    for (const auto& [kind, status] : {std::pair(SIGINT, 130), {SIGTERM, 143}, {SIGHUP, 129}}) {
        RunningProgram program(batchOfLines());
        program.write(line());
        EXPECT_THAT(program.readOutputLine(), HasSubstr("a.png"));
        program.sendSignal(kind);
        EXPECT_EQ(program.end().exitStatus, status);
    }
    EXPECT_THAT(written(), ElementsAre("a.png"));
}

TEST_F(BatchInterruption, IsToldWithTheSummary) {
    RunningProgram program(batchOfLines());
    program.write(line());
    (void)program.readOutputLine();
    program.sendSignal(SIGINT);
    const ProgramRun run = program.end();
    EXPECT_THAT(run.errors, StartsWith("kesto-thumbnail: interrupted: "));
    const nlohmann::json summary = summaryOf(run);
    EXPECT_EQ(summary.at("interrupted"), true);
    EXPECT_EQ(summary.at("written"), 1);
}

TEST_F(BatchInterruption, BeginsNoMoreInputsAndEndsThoseBegun) {
    // Reports of more lines than fit into the pipe, so that most are not begun before the signal.
    constexpr int many = 1000;
    RunningProgram program(batchOfLines());
    for (int i = 0; i < many; ++i)
        program.write(line());
    program.closeInput();
    EXPECT_THAT(program.readOutputLine(), HasSubstr("a.png"));
    program.sendSignal(SIGINT);
    const ProgramRun run = program.end();
    EXPECT_EQ(run.exitStatus, 130);
    const nlohmann::json summary = summaryOf(run);
    EXPECT_LT(summary.at("written"), many);
    EXPECT_EQ(summary.at("written"), countWholePictures());
}

TEST_F(BatchInterruption, SecondSignalEndsAtOnce) {
    RunningProgram::Options options;
    const OpenFile output(::dup(options.output.writing.get()));
    RunningProgram program(batchOfLines(), std::move(options));
    program.write(line());
    EXPECT_THAT(program.readOutputLine(), HasSubstr("a.png"));
    fill(output);
    program.write(line());
    program.sendSignal(SIGINT);
    EXPECT_THAT(program.readErrorLine(), HasSubstr("once more to end now"));
    program.sendSignal(SIGINT);
    EXPECT_EQ(program.waitForEnd(), 130);
    EXPECT_GE(countWholePictures(), 1);
}

TEST_F(BatchInterruption, IgnoredSignalStaysIgnored) {
    RunningProgram::Options options;
    options.before = {"env", "--ignore-signal=HUP"};
    RunningProgram program(batchOfLines(), std::move(options));
    for (int i = 0; i < 2; ++i) {
        program.write(line());
        EXPECT_THAT(program.readOutputLine(), HasSubstr("a.png"));
        program.sendSignal(SIGHUP);
    }
    program.closeInput();
    EXPECT_EQ(program.end().exitStatus, 0);
}
