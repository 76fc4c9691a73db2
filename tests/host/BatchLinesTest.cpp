#include "BatchRun.h"

#include "RunningProgram.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;

using BatchLines = BatchRun;

TEST_F(BatchLines, EachLineIsAnInput) {
    picture("a.png", 20);
    picture("b.png", 30);
    EXPECT_EQ(batch({"-"}, "a.png\nb.png\n").exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre("a.png", "b.png"));
}

TEST_F(BatchLines, LastLineNeedsNoEnd) {
    picture("a.png", 20);
    picture("b.png", 30);
    EXPECT_EQ(batch({"-"}, "a.png\nb.png").exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre("a.png", "b.png"));
}

TEST_F(BatchLines, CarriageReturnBeforeTheEndOfALineIsPartOfIt) {
    picture("a.png", 20);
    picture("b\rc.png", 30);
    EXPECT_EQ(batch({"-"}, "a.png\r\nb\rc.png\r\n\r\n").exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre("a.png", "b\rc.png"));
}

TEST_F(BatchLines, EmptyLinesAreSkipped) {
    picture("a.png", 20);
    EXPECT_EQ(batch({"-"}, "\n\na.png\n\n\n").exitStatus, 0);
    EXPECT_THAT(written(), ElementsAre("a.png"));
}

TEST_F(BatchLines, NoLinesAreNothingToDo) {
    const ProgramRun run = batch({"-"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.errors, HasSubstr("0 written, 0 without picture, 0 failed"));
}

TEST_F(BatchLines, ClosedStandardInputIsAFailure) {
    const std::vector<std::string> withoutInput = {"sh", "-c", "exec \"$@\" <&-", "sh"};
    const ProgramRun run = runProgram({"batch", "--out-dir", folder / "out", "-"}, {.before = withoutInput});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("kesto-thumbnail: standard input: Bad file descriptor\n"));
}

TEST_F(BatchLines, BadLinesDoNotStopTheOthers) {
    picture("a.png", 20);
    const ProgramRun run = batch({"-"}, "bad\xFF\nnothing\n" + std::string(100'000, 'x') + "\na.png\n");
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("1 written, 2 without picture, 1 failed"));
    EXPECT_THAT(written(), ElementsAre("a.png"));
}

TEST_F(BatchLines, LineIsTakenBeforeTheNextIsWritten) {
    picture("a.png", 20);
    RunningProgram program({"batch", "--json", "--out-dir", folder / "out", "-"});
    program.write((folder / "a.png").string() + "\n" + (folder / "a.p").string());
    EXPECT_THAT(program.readOutputLine(), HasSubstr("a.png"));
    program.write("ng\n");
    EXPECT_THAT(program.readOutputLine(), HasSubstr("a-2.png"));
    program.closeInput();
    EXPECT_EQ(program.end().exitStatus, 0);
}

TEST_F(BatchLines, InputThatCannotBeReadIsToldAfterTheSummary) {
    const ProgramRun run = runProgram({"-", "--out-dir", folder / "out"},
                                      {.before = {"sh", "-c", "exec \"$0\" batch \"$@\" </"}});
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("0 failed; "));
    EXPECT_THAT(run.errors, HasSubstr("kesto-thumbnail: standard input: Is a directory\n"));
}
