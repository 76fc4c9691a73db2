#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

using Arguments = std::vector<std::string>;

class CalloutCommand : public testing::Test {
protected:
    ProgramRun run(const Arguments& options) const {
        Arguments arguments = {"callout", "-o", output};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runProgram(arguments);
    }

    PictureFile pictureOf(const Arguments& options) const {
        const ProgramRun done = run(options);
        EXPECT_EQ(done.exitStatus, 0) << done.errors;
        EXPECT_EQ(done.output + done.errors, "");
        return readPng(output);
    }

    void expectWrongUsage(const Arguments& options, const std::string& sentence) const {
        const ProgramRun refused = run(options);
        EXPECT_EQ(refused.exitStatus, 2) << testing::PrintToString(options);
        EXPECT_THAT(refused.errors, StartsWith("kesto-thumbnail callout: " + sentence));
        EXPECT_THAT(refused.output, IsEmpty());
        EXPECT_FALSE(std::filesystem::exists(output));
    }

    TestSupport::TempFolder folder;
    const std::string output = folder / "callout.png";
};

std::pair<int, int> sizeOf(const PictureFile& picture) {
    return {picture.width, picture.height};
}

int alphaOf(std::uint32_t pixel) {
    return static_cast<int>(pixel >> 24U);
}

/// Pixels that differ between two pictures of one size.
int differencesOf(const PictureFile& left, const PictureFile& right) {
    EXPECT_EQ(sizeOf(left), sizeOf(right));
    int count = 0;
    for (std::size_t i = 0; i < left.pixels.size() && i < right.pixels.size(); ++i)
        count += left.pixels[i] != right.pixels[i] ? 1 : 0;
    return count;
}

constexpr const char* redCross =
    R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 30 20"><rect width="30" height="20" fill="#ff0000"/></svg>)";

} // namespace

TEST_F(CalloutCommand, DrawsARectangleByDefaultWithinTheBox) {
    const PictureFile picture = pictureOf({});
    EXPECT_EQ(sizeOf(picture), std::pair(147, 92)); // of 320 x 200
    EXPECT_GT(alphaOf(picture.at(0, 46)), 0);
    EXPECT_EQ(alphaOf(picture.at(73, 46)), 0);
}

TEST_F(CalloutCommand, EachShapeAndStyleIsAPictureOfItsOwn) {
    const PictureFile ellipse = pictureOf({"--shape", "ellipse"});
    const PictureFile bold = pictureOf({"--shape", "ellipse", "--style", "bold"});
    EXPECT_EQ(alphaOf(ellipse.at(0, 0)), 0);
    EXPECT_GT(differencesOf(ellipse, bold), 100);
    EXPECT_GT(differencesOf(ellipse, pictureOf({"--shape", "highlight"})), 100);
}

TEST_F(CalloutCommand, TheSizesAreItsOwnItsScaleAndTheBox) {
    EXPECT_EQ(sizeOf(pictureOf({"--natural", "400x300", "--size", "0x0"})), std::pair(400, 300));
    EXPECT_EQ(sizeOf(pictureOf({"--natural", "400x300", "--size", "100x100"})), std::pair(100, 75));
    EXPECT_EQ(sizeOf(pictureOf({"--natural", "400x300", "--scale", "2,1.5", "--size", "0x0"})),
              std::pair(800, 450));
    EXPECT_EQ(sizeOf(pictureOf({"--natural", "100x50", "--size", "0x0"})), std::pair(400, 200));
    EXPECT_EQ(sizeOf(pictureOf({"--shape", "arrow", "--natural", "100x50", "--size", "0x0"})),
              std::pair(100, 50));
}

TEST_F(CalloutCommand, TheTextIsDrawn) {
    const PictureFile without = pictureOf({"--shape", "highlight"});
    EXPECT_GT(
        differencesOf(without, pictureOf({"--shape", "highlight", "--text", "Gr\xC3\xBC\xC3\x9F Gott"})), 50);
}

TEST_F(CalloutCommand, ParametersOfEachTypeReachTheDrawing) {
    const Arguments filled = {"--natural", "300x300",
                              "--size",    "0x0",
                              "--param",   "FillColor=#00ff00",
                              "--param",   "BorderWidth=20",
                              "--param",   "BorderColor=#0000ff",
                              "--text",    "x",
                              "--param",   "Alignment=left",
                              "--param",   "FontBold=true"};
    const PictureFile picture = pictureOf(filled);
    EXPECT_EQ(picture.at(150, 250), 0xFF00FF00);
    EXPECT_EQ(picture.at(10, 150), 0xFF0000FF);
}

TEST_F(CalloutCommand, ParametersMayComeAsJsonAndTheCloserOptionWins) {
    const std::string params = R"({"FillColor": "#00ff00", "BorderWidth": 0})";
    EXPECT_EQ(pictureOf({"--params", params}).at(0, 46), 0xFF00FF00);
    EXPECT_EQ(pictureOf({"--params", params, "--param", "FillColor=#0000ff"}).at(0, 46), 0xFF0000FF);
}

TEST_F(CalloutCommand, AnSvgComesFromAFile) {
    const std::string svg = folder.write("red.svg", redCross);
    for (const char* kind : {"TypeWinSVG", "MacSVG"})
        EXPECT_EQ(pictureOf({"--kind", kind, "--svg", svg}).at(73, 46), 0xFFFF0000) << kind;
}

TEST_F(CalloutCommand, AnSvgThatDrawsItselfIsShownDoneByItsEdge) {
    const std::string svg = folder.write("red.svg", redCross);
    const Arguments drawn = {"--kind", "TypeWinSVG", "--svg", svg, "--param", "DrawTime=1"};
    EXPECT_EQ(alphaOf(pictureOf(drawn).at(73, 46)), 0);
    Arguments done = drawn;
    done.insert(done.end(), {"--edge", "DrawPercentageFade=1.5"});
    EXPECT_EQ(pictureOf(done).at(73, 46), 0xFFFF0000);
}

TEST_F(CalloutCommand, ReportsAsJson) {
    const ProgramRun done = run({"--shape", "arrow", "--style", "bold", "--size", "50x50", "--json"});
    nlohmann::json report = nlohmann::json::parse(done.output);
    EXPECT_GT(report.at("milliseconds").get<double>(), 0);
    report.erase("milliseconds");
    EXPECT_EQ(report, (nlohmann::json{{"output", output},
                                      {"width", 50},
                                      {"height", 31},
                                      {"sourceKind", "callout"},
                                      {"kind", "remix"},
                                      {"shape", "arrow"},
                                      {"style", "bold"}}));
}

TEST_F(CalloutCommand, UnknownWordsAreRefusedWithThoseThatAreKnown) {
    expectWrongUsage({"--kind", "Remix"},
                     "--kind: expected one of remix, TypeWinLine, TypeWinSVG, MacSVG, found \"Remix\"\n");
    expectWrongUsage({"--shape", "star"}, "--shape: expected one of arrow, text, text-arrow, rectangle, ");
    expectWrongUsage({"--style", ""}, "--style: expected one of plain, bold, found \"\"\n");
    expectWrongUsage({"--param", "Colour=#000000"}, "--param: expected a name of Alignment, ");
}

TEST_F(CalloutCommand, SizesAreRefusedWithWhatWasExpected) {
    expectWrongUsage({"--natural", "0x10"},
                     "--natural: expected WIDTHxHEIGHT in pixels, each 1 to 16384, found \"0x10\"\n");
    expectWrongUsage({"--size", "-1x5"},
                     "--size: expected WIDTHxHEIGHT in pixels, each 0 (no bound) to 32767");
    expectWrongUsage({"--scale", "1,0"},
                     "--scale: expected X,Y, two numbers above 0 and at most 1000, found \"1,0\"\n");
}

TEST_F(CalloutCommand, ValuesOfParametersAreRefusedWithTheirNames) {
    expectWrongUsage({"--param", "FontSize"}, "--param: expected NAME=VALUE, found \"FontSize\"\n");
    expectWrongUsage({"--param", "FontSize=big"},
                     "--param: expected a number from 1 to 2000 for FontSize, found \"big\"\n");
    expectWrongUsage({"--param", "FontSize=0"}, "FontSize: expected a number of at least 1, found 0\n");
    expectWrongUsage({"--param", "FillColor=red"},
                     "FillColor: expected a colour like \"#rrggbb\" or \"#rrggbbaa\", found \"red\"\n");
    expectWrongUsage({"--param", "Text=\xFF"}, "--param: expected a text in UTF-8 for Text");
    expectWrongUsage({"--text", "\xFF"}, "--text: expected a text that is valid UTF-8\n");
    expectWrongUsage({"--params", "[]"}, "--params: expected a JSON object, found \"[]\"\n");
    expectWrongUsage({"--params", R"({"FontSize": "x"})"}, "FontSize: expected a number, found \"x\"\n");
    expectWrongUsage({"--params", R"({"a/b: c": 1})"}, "");
    expectWrongUsage({"--edge", "Visual"}, "--edge: expected NAME=SECONDS, found \"Visual\"\n");
    expectWrongUsage({"--edge", "Visual=1e9"}, "duration: expected seconds of at most 10000000");
}

TEST_F(CalloutCommand, AnSvgThatIsNotThereIsRefused) {
    expectWrongUsage({"--svg", folder / "missing.svg"}, "--svg: \"");
    expectWrongUsage({"--svg", folder.write("empty.svg", "")}, "--svg: \"");
    expectWrongUsage({"--svg", folder / ""}, "--svg: \"");
    expectWrongUsage({"--svg", ""}, "--svg: \"\"");
    expectWrongUsage({"--svg", folder.write("latin.svg", "<svg>\xFF</svg>")},
                     "--svg: expected a text that is valid UTF-8\n");
}

TEST_F(CalloutCommand, AnSvgThatIsTooLargeIsRefusedWithAnotherWay) {
    const std::string large = folder.write("large.svg", std::string(1'000'001, ' ')).string();
    expectWrongUsage({"--svg", large}, "--svg: \"" + large +
                                           "\" has more than 1000000 bytes; a larger file may be given as "
                                           "--param SvgFile=" +
                                           large + "\n");
}

TEST_F(CalloutCommand, AnSvgOfSeveralMegabytesMayBeGivenAsAParameter) {
    const std::string path = folder.write("large.svg", redCross + std::string(3'000'000, ' ')).string();
    EXPECT_EQ(pictureOf({"--kind", "MacSVG", "--param", "SvgFile=" + path}).at(50, 50), 0xFFFF0000U);
}

TEST_F(CalloutCommand, AnSvgIsNotWaitedForAtAPipe) {
    const std::string pipe = folder / "pipe.svg";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectWrongUsage({"--svg", pipe}, "--svg: \"" + pipe + "\" is not a file");
}

TEST_F(CalloutCommand, AnSvgThatIsNoneIsAFailure) {
    const ProgramRun failed =
        run({"--kind", "MacSVG", "--svg", folder.write("no.svg", "no drawing"), "--json"});
    EXPECT_EQ(failed.exitStatus, 1);
    EXPECT_THAT(failed.errors, StartsWith("kesto-thumbnail: A callout of kind MacSVG"));
    const auto report = nlohmann::json::parse(failed.output);
    EXPECT_EQ(report.at("reason"), "no-picture");
    EXPECT_TRUE(report.at("width").is_null());
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST_F(CalloutCommand, AnOutputThatCannotBeWrittenIsAFailure) {
    const std::string lost = folder / "nowhere/callout.png";
    const ProgramRun failed = runProgram({"callout", "-o", lost});
    EXPECT_EQ(failed.exitStatus, 1);
    EXPECT_THAT(failed.errors, HasSubstr("\"" + lost + "\" can't be written: there is no folder"));
    const ProgramRun unnamed = runProgram({"callout", "-o", "\xFF.png"});
    EXPECT_EQ(unnamed.exitStatus, 1);
    EXPECT_THAT(unnamed.errors, HasSubstr("not valid UTF-8"));
}

TEST_F(CalloutCommand, AnOutputIsRequiredAndItsExtensionPicksTheFormat) {
    EXPECT_EQ(runProgram({"callout"}).exitStatus, 2);
    EXPECT_THAT(runProgram({"callout"}).errors,
                StartsWith("kesto-thumbnail callout: --output is required\n"));
    EXPECT_EQ(runProgram({"callout", "-o", "callout.tiff"}).exitStatus, 2);
    EXPECT_EQ(runProgram({"callout", "-o", folder / "callout.bmp"}).exitStatus, 0);
    EXPECT_THAT(TestSupport::readFile(folder / "callout.bmp"), StartsWith("BM"));
}

TEST_F(CalloutCommand, ListsWhatACalloutMayBeMadeOf) {
    const ProgramRun listed = runProgram({"callout", "--list"});
    EXPECT_EQ(listed.exitStatus, 0);
    EXPECT_THAT(listed.output,
                StartsWith("Kinds:  remix, TypeWinLine, TypeWinSVG, MacSVG\nShapes: arrow, text, "));
    EXPECT_THAT(listed.output, HasSubstr("\nStyles: plain, bold\n"));
    EXPECT_THAT(listed.output, HasSubstr("  one of left, center, right\n"));
    EXPECT_THAT(listed.output, HasSubstr("  a number from 1 to 2000\n"));
}

TEST_F(CalloutCommand, ListsAsJsonToo) {
    const auto list = nlohmann::json::parse(runProgram({"callout", "--list", "--json"}).output);
    EXPECT_THAT(list.at("kinds"), Contains("TypeWinSVG"));
    EXPECT_THAT(list.at("shapes"), Contains("spotlight"));
    EXPECT_EQ(list.at("styles"), (nlohmann::json{"plain", "bold"}));
    EXPECT_THAT(
        list.at("params"),
        Contains(nlohmann::json{{"name", "FontSize"}, {"type", "number"}, {"lowest", 1}, {"highest", 2000}}));
    EXPECT_THAT(list.at("params"),
                Contains(nlohmann::json{
                    {"name", "Alignment"}, {"type", "text"}, {"choices", {"left", "center", "right"}}}));
}

TEST_F(CalloutCommand, HelpNamesEveryOption) {
    const ProgramRun help = runProgram({"callout", "--help"});
    EXPECT_EQ(help.exitStatus, 0);
    for (const char* word : {"--kind", "--shape", "--style", "--text", "--svg", "--param", "--params",
                             "--edge", "--natural", "--scale", "--size", "--output", "--list", "--json"})
        EXPECT_THAT(help.output, HasSubstr(word));
}
