#include "BatchRun.h"

#include "RunningProgram.h"

#include <gmock/gmock.h>

#include <regex>

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace {

/// What the program shows in a terminal, one text for each time that it rewrites the line or begins one.
std::vector<std::string> textsIn(const std::string& shown) {
    const std::regex eraseToTheEnd("\x1B\\[K");
    const std::string text = std::regex_replace(shown, eraseToTheEnd, "");
    std::vector<std::string> texts = {""};
    for (const char c : text) {
        if (c == '\r' || c == '\n')
            texts.emplace_back();
        else
            texts.back() += c;
    }
    return texts;
}

class BatchTerminal : public BatchRun {
protected:
    std::vector<std::string> shownBy(const std::vector<std::string>& arguments, unsigned short columns,
                                     const std::string& lines = {}, const std::string& kind = "xterm") const {
        RunningProgram::Options options;
        options.before = {"env", "--chdir=" + (folder / "").string(), "TERM=" + kind};
        options.errors = makeTerminal(columns);
        std::vector<std::string> all = {"batch", "--jobs", "1", "--out-dir", "out"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        RunningProgram program(all, std::move(options));
        program.write(lines);
        program.closeInput();
        return textsIn(program.end().errors);
    }
};

} // namespace

TEST_F(BatchTerminal, BarIsAsLongAsTheTerminalIsWide) {
    picture("a.png", 20);
    const auto shown = shownBy({"nothing.png", "nowhere.png"}, 60);
    EXPECT_THAT(shown, Contains("0/2 [" + std::string(48, '.') + "]   0%"));
    for (const std::string& text : shown)
        EXPECT_TRUE(!text.starts_with("1/2 [") || text.size() == 59) << text;
}

TEST_F(BatchTerminal, HasEightyColumnsUnlessItIsKnownBetter) {
    picture("a.png", 20);
    EXPECT_THAT(shownBy({"a.png"}, 0), Contains("0/1 [" + std::string(68, '.') + "]   0%"));
}

TEST_F(BatchTerminal, NarrowOneGetsNoBar) {
    picture("a.png", 20);
    EXPECT_THAT(shownBy({"a.png"}, 16), Contains("0/1    0%"));
}

TEST_F(BatchTerminal, ShowsShareRateTimeLeftAndLosses) {
    const auto shown = shownBy({"nothing.png", "nowhere.png"}, 100);
    EXPECT_THAT(shown,
                Contains(MatchesRegex("1/2 \\[#+\\.+\\]  50%  [0-9.]+/s  [0-9:]+ left  1 not written")));
}

TEST_F(BatchTerminal, ShowsCountsAndRateOfLinesWhoseNumberIsNotKnown) {
    const auto shown = shownBy({"-"}, 100, "nothing.png\n");
    EXPECT_THAT(shown, Contains(MatchesRegex("0 done  0\\.0/s  [0-9:]+")));
    EXPECT_THAT(shown, Contains(MatchesRegex("1 done  [0-9.]+/s  [0-9:]+  1 not written")));
}

TEST_F(BatchTerminal, ShowsNoLineForAWrittenPictureButForANumberedName) {
    picture("a.png", 20);
    const auto shown = shownBy({"a.png", "./a.png"}, 80);
    EXPECT_THAT(shown, Each(Not(HasSubstr(" -> "))));
    EXPECT_THAT(shown, Contains("./a.png goes to out/a-2.png"));
}

TEST_F(BatchTerminal, ShowsFailuresAndTheSummaryAsLinesOfTheirOwn) {
    const auto shown = shownBy({"nothing.png"}, 80);
    EXPECT_THAT(shown, Contains("kesto-thumbnail: \"nothing.png\" does not exist."));
    EXPECT_THAT(shown, Contains(StartsWith("kesto-thumbnail: 0 written, 1 without picture")));
}

TEST_F(BatchTerminal, ThatCannotRewriteLinesGetsLines) {
    picture("a.png", 20);
    const auto shown = shownBy({"a.png"}, 80, "", "dumb");
    EXPECT_THAT(shown, Contains("a.png -> out/a.png"));
    EXPECT_THAT(shown, Each(Not(HasSubstr("0/1"))));
}
