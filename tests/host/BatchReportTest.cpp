#include "BatchRun.h"

#include "RunningProgram.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <map>
#include <sstream>

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

std::vector<nlohmann::json> objectsIn(const std::string& output) {
    std::vector<nlohmann::json> objects;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
        objects.push_back(nlohmann::json::parse(line));
    return objects;
}

class BatchReport : public BatchRun {
protected:
    /// The objects of a run that writes a.png, and has b.png without a picture and c.png under a bad name.
    std::vector<nlohmann::json> objects() const {
        picture("a.png", 20);
        return objectsIn(batch({"--json", "--time", "1.5", "--", "a.png", "b.png", "c\xFF.png"}).output);
    }
};

} // namespace

TEST_F(BatchReport, IsOneObjectALineForEachInputAndOneForAll) {
    EXPECT_EQ(objects().size(), 4);
}

TEST_F(BatchReport, TellsOfAnInputWhatThumbTells) {
    std::map<std::string, nlohmann::json> byInput;
    for (const nlohmann::json& object : objects())
        if (object.contains("input"))
            byInput[object.at("input")] = object;
    nlohmann::json& first = byInput.at("a.png");
    EXPECT_GT(first.at("milliseconds").get<double>(), 0);
    first.erase("milliseconds");
    EXPECT_EQ(first, (nlohmann::json{{"input", "a.png"},
                                     {"output", "out/a.png"},
                                     {"width", 20},
                                     {"height", 10},
                                     {"sourceKind", "image"},
                                     {"time", 1.5}}));
    EXPECT_EQ(byInput.at("b.png").at("reason"), "missing");
    EXPECT_TRUE(byInput.at("b.png").at("width").is_null());
    EXPECT_EQ(byInput.at("c\xEF\xBF\xBD.png").at("reason"), "bad-name");
}

TEST_F(BatchReport, EndsWithTheSummary) {
    nlohmann::json summary = objects().back().at("summary");
    EXPECT_GE(summary.at("milliseconds").get<double>(), 0);
    summary.erase("milliseconds");
    EXPECT_EQ(
        summary,
        (nlohmann::json{
            {"inputs", 3}, {"written", 1}, {"withoutPicture", 1}, {"failed", 1}, {"interrupted", false}}));
}

TEST_F(BatchReport, LeavesFailuresAloneToStandardError) {
    picture("a.png", 20);
    EXPECT_THAT(batch({"--json", "a.png"}).errors, IsEmpty());
    EXPECT_EQ(batch({"--json", "b.png"}).errors, "kesto-thumbnail: \"b.png\" does not exist.\n");
}

TEST_F(BatchReport, LongNamesWithOddBytesStayOnOneLine) {
    picture("two\nlines.png", 20);
    const auto all = objectsIn(batch({"--json", "two\nlines.png"}).output);
    ASSERT_EQ(all.size(), 2);
    EXPECT_EQ(all[0].at("input"), "two\nlines.png");
}

TEST_F(BatchReport, ReaderThatGoesAwayIsAFailure) {
    picture("a.png", 20);
    RunningProgram::Options options;
    options.output.reading.close();
    RunningProgram program({"batch", "--json", "--out-dir", folder / "out", folder / "a.png"},
                           std::move(options));
    const ProgramRun run = program.end();
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_THAT(run.errors, HasSubstr("kesto-thumbnail: standard output: Broken pipe\n"));
    EXPECT_EQ(widthOf("out/a.png"), 20);
}
