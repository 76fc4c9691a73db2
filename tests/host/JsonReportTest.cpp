#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/PdfFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

nlohmann::json reportOf(const std::vector<std::string>& arguments) {
    return nlohmann::json::parse(runProgram(arguments).output);
}

} // namespace

TEST(JsonReport, TellsAllOfAWrittenPictureAndNothingElse) {
    const TestSupport::TempFolder folder;
    const std::string input = folder.write("in.png", redAndBluePng(300, 200));
    const std::string output = folder / "out.png";
    const ProgramRun run =
        runProgram({"thumb", input, "-o", output, "--size", "60x60", "--time", "1.5", "--json"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_THAT(run.errors, IsEmpty());

    nlohmann::json report = nlohmann::json::parse(run.output);
    EXPECT_GT(report.at("milliseconds").get<double>(), 0);
    report.erase("milliseconds");
    EXPECT_EQ(report, (nlohmann::json{{"input", input},
                                      {"output", output},
                                      {"width", 60},
                                      {"height", 40},
                                      {"sourceKind", "image"},
                                      {"time", 1.5}}));
}

TEST(JsonReport, TellsADocument) {
    const TestSupport::TempFolder folder;
    const TestSupport::PdfFile page = {.widthInPoints = 100, .heightInPoints = 100, .content = ""};
    const std::string input = folder.write("page.Pdf", page.text());
    EXPECT_EQ(reportOf({"thumb", input, "-o", folder / "out.png", "--json"}).at("sourceKind"), "pdf");
}

TEST(JsonReport, HasNoSizeButAReasonForAFailure) {
    const TestSupport::TempFolder folder;
    const std::string input = folder / "nothing.png";
    const nlohmann::json report = reportOf({"thumb", input, "-o", folder / "out.png", "--json"});
    EXPECT_TRUE(report.at("width").is_null());
    EXPECT_TRUE(report.at("height").is_null());
    EXPECT_EQ(report.at("reason"), "missing");
    EXPECT_THAT(report.at("message").get<std::string>(), HasSubstr(input));
}

TEST(JsonReport, ReplacesBytesThatAreNotUtf8) {
    const TestSupport::TempFolder folder;
    const nlohmann::json report = reportOf({"thumb", "a\xFF", "-o", folder / "out.png", "--json"});
    EXPECT_EQ(report.at("input"), "a\xEF\xBF\xBD");
}

TEST(JsonReport, IsNotPrintedForWrongUsage) {
    EXPECT_THAT(runProgram({"thumb", "in.png", "-o", "out.tiff", "--json"}).output, IsEmpty());
}

TEST(JsonReport, IsNotPrintedUnasked) {
    const TestSupport::TempFolder folder;
    EXPECT_THAT(runProgram({"thumb", folder / "nothing.png", "-o", folder / "out.png"}).output, IsEmpty());
}
