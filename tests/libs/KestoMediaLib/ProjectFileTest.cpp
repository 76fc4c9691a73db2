#include "ProjectTextBuilder.h"
#include "support/TempFolder.h"

#include "KestoMediaLib/FileMedia.h"
#include "KestoMediaLib/MediaSpan.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace {

using KestoMediaLib::ProjectFileError;
using KestoMediaLib::readProjectFile;
using KestoMediaLib::readProjectText;
using MediaTest::errorOf;
using MediaTest::ProjectText;
using MediaTest::readWhole;
using TestSupport::TempFolder;

using Rate = boost::rational<unsigned long>;

ProjectText withRate(const std::string& rate) {
    ProjectText text;
    text.frameRate = rate;
    return text;
}

ProjectText withCanvas(const std::string& canvas) {
    ProjectText text;
    text.canvas = canvas;
    return text;
}

std::string malformed(const std::string& text) {
    const auto result = readProjectText(text, "", "demo.qrlproj");
    if (result)
        return "read";
    EXPECT_EQ(result.error().fault, ProjectFileError::Fault::Malformed);
    return result.error().text();
}

TEST(ProjectFile, GivesCanvasAndFrameRate) {
    const auto project = readWhole({.canvas = R"({"width": 1920.5, "height": 1080})"});
    EXPECT_EQ(project->timeline()->attributeWidth()->value(), 1920.5F);
    EXPECT_EQ(project->timeline()->attributeHeight()->value(), 1080.0F);
    EXPECT_EQ(project->frameRate(), Rate(30));
    EXPECT_TRUE(project->timeline()->mixer()->tracks().empty());
}

TEST(ProjectFile, FrameRatesMayBeFractionsOrDecimals) {
    EXPECT_EQ(readWhole(withRate(R"("30000/1001")"))->frameRate(), Rate(30000, 1001));
    EXPECT_EQ(readWhole(withRate("29.97"))->frameRate(), Rate(2997, 100));
    EXPECT_EQ(readWhole(withRate(R"("25")"))->frameRate(), Rate(25));
}

TEST(ProjectFile, RefusesFrameRatesThatAreNone) {
    EXPECT_EQ(errorOf(withRate("0")),
              "demo.qrlproj: /frameRate: expected frames to the second of at least 1, found 0");
    EXPECT_EQ(errorOf(withRate("1001")),
              "demo.qrlproj: /frameRate: expected frames to the second of at most 1000, found 1001");
    EXPECT_EQ(errorOf(withRate("-30")),
              "demo.qrlproj: /frameRate: expected frames to the second of at least 1, found -30");
    EXPECT_EQ(errorOf(withRate("null")),
              "demo.qrlproj: /frameRate: expected frames to the second, found null");
    for (const char* wrong : {R"("30/0")", R"("")", R"("/")", R"("30/-1")", R"("3e1")", R"("30 ")",
                              R"("9999999999999999999999/1")", R"("1/1/1")"})
        EXPECT_EQ(errorOf(withRate(wrong)),
                  std::string("demo.qrlproj: /frameRate: expected frames to the second as a number or a "
                              "fraction like \"1001/30000\", found ") +
                      wrong);
    EXPECT_EQ(errorOf(withRate(R"("3000000001/100000001")")),
              "demo.qrlproj: /frameRate: expected a denominator of at most 100000, found "
              "\"3000000001/100000001\"");
}

TEST(ProjectFile, RefusesCanvasesOfAbsurdSize) {
    EXPECT_EQ(errorOf(withCanvas(R"({"width": 16385, "height": 1})")),
              "demo.qrlproj: /canvas/width: expected pixels of at most 16384, found 16385");
    EXPECT_EQ(errorOf(withCanvas(R"({"width": 16384, "height": 0})")),
              "demo.qrlproj: /canvas/height: expected pixels of at least 1, found 0");
    EXPECT_EQ(errorOf(withCanvas(R"({"width": 640})")),
              "demo.qrlproj: /canvas: expected a member \"height\", found none");
    EXPECT_EQ(errorOf(withCanvas("[640, 360]")), "demo.qrlproj: /canvas: expected an object, found an array");
}

TEST(ProjectFile, RefusesMembersThatItDoesNotKnow) {
    EXPECT_EQ(errorOf(withCanvas(R"({"width": 1, "height": 1, "depth": 1})")),
              "demo.qrlproj: /canvas/depth: expected one of the members height, width, found another");
}

TEST(ProjectFile, PointersEscapeTheirTokens) {
    EXPECT_EQ(errorOf(withCanvas(R"({"width": 1, "height": 1, "a/b~c": 1})")),
              "demo.qrlproj: /canvas/a~1b~0c: expected one of the members height, width, found another");
}

TEST(ProjectFile, RefusesOtherFormatsAndVersions) {
    const auto error = [](const std::string& text) {
        const auto result = readProjectText(text, "", "demo.qrlproj");
        EXPECT_EQ(result.error().fault, ProjectFileError::Fault::Foreign) << text;
        return result.error().text();
    };
    EXPECT_EQ(error(R"({"format": "other", "version": 2})"),
              "demo.qrlproj: /format: expected \"kesto-project\", found \"other\"");
    EXPECT_EQ(error(R"({"format": "kesto-project", "version": 3})"),
              "demo.qrlproj: /version: expected a version of at most 2, found 3");
    EXPECT_EQ(error(R"({"format": "kesto-project", "version": 1.5})"),
              "demo.qrlproj: /version: expected a version, a whole number, found 1.5");
    EXPECT_EQ(error(R"({"version": 2})"), "demo.qrlproj: expected a member \"format\", found none");
    EXPECT_EQ(error("[]"), "demo.qrlproj: expected an object, found an empty array");
}

TEST(ProjectFile, UpgradesTheCanvasOfVersion1) {
    ProjectText old = withCanvas("[320, 200]");
    old.version = "1";
    EXPECT_EQ(readWhole(old)->timeline()->attributeWidth()->value(), 320.0F);
    EXPECT_EQ(readWhole(old)->timeline()->attributeHeight()->value(), 200.0F);
}

TEST(ProjectFile, AWrongCanvasOfVersion1StaysWrong) {
    ProjectText old = withCanvas("[320]");
    old.version = "1";
    EXPECT_EQ(errorOf(old), "demo.qrlproj: /canvas: expected an object, found an array");
}

TEST(ProjectFile, TellsWhereTextStopsToBeJson) {
    EXPECT_EQ(malformed("{\n  \"format\": oops}").substr(0, 49),
              "demo.qrlproj: expected JSON; line 2, column 13: s");
    EXPECT_NE(malformed(""), "read");
    EXPECT_NE(malformed(R"({"format": "kesto)"), "read");
    EXPECT_NE(malformed("{\"a\": \"\xFF\"}"), "read");
    EXPECT_NE(malformed("{} {}"), "read");
}

TEST(ProjectFile, RefusesNumbersThatAreNone) {
    for (const char* number : {"NaN", "Infinity", "-Infinity", "1e999", "-1e999"})
        EXPECT_NE(malformed("[" + std::string(number) + "]"), "read") << number;
}

TEST(ProjectFile, RefusesAKeyThatStandsTwice) {
    EXPECT_EQ(malformed(R"({"canvas": [{}, {"width": 1, "width": 2}]})"),
              "demo.qrlproj: /canvas/1/width: expected each key once, found it twice");
}

TEST(ProjectFile, RefusesDeepNestingWithoutStack) {
    const std::string deep(10'000'000, '[');
    EXPECT_NE(malformed(deep).find("expected at most 64 levels of brackets"), std::string::npos);
    std::string objects;
    for (int i = 0; i < 100; ++i)
        objects += R"({"a":)";
    EXPECT_NE(malformed(objects).find("/a: expected at most 64 levels of brackets"), std::string::npos);
}

TEST(ProjectFile, RefusesAMillionValues) {
    std::string values = "[";
    for (int i = 0; i < 1'000'000; ++i)
        values += "0,";
    EXPECT_EQ(malformed(values + "0]"), "demo.qrlproj: /999999: expected at most 1000000 values");
}

TEST(ProjectFile, PathsCountFromTheFolderOfTheFile) {
    const TempFolder folder;
    const auto path = folder.write(
        "a.qrlproj",
        ProjectText::ofMedia(R"({"kind": "video", "file": "clips/b.mp4", "duration": 1})").text());
    const auto project = readProjectFile(path.string());
    ASSERT_TRUE(project) << project.error().text();
    const auto media = (*project)->timeline()->mixer()->tracks().at(0)->medias().at(0);
    EXPECT_EQ(dynamic_cast<const KestoMediaLib::VideoClip&>(*media).fileName(),
              (folder / "clips/b.mp4").string());
}

TEST(ProjectFile, AbsolutePathsStayAsTheyAre) {
    for (const char* path : {"/media/b.mp4", R"(\\\\server\\b.mp4)", R"(C:\\b.mp4)"}) {
        const auto media = MediaTest::onlyMedia<KestoMediaLib::VideoClip>(
            R"({"kind": "video", "duration": 1, "file": ")" + std::string(path) + "\"}");
        EXPECT_EQ(media->fileName().find("/base"), std::string::npos) << path;
    }
}

TEST(ProjectFile, TellsOfAFileThatIsNotThere) {
    const auto result = readProjectFile("/nowhere/a.qrlproj");
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().fault, ProjectFileError::Fault::Unreadable);
    EXPECT_EQ(result.error().text(), "/nowhere/a.qrlproj: expected a project file, found no file");
}

TEST(ProjectFile, RefusesFoldersAndPipes) {
    const TempFolder folder;
    EXPECT_EQ(readProjectFile((folder / "").string()).error().fault, ProjectFileError::Fault::Unreadable);
    const std::string pipe = (folder / "pipe.qrlproj").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(readProjectFile(pipe).error().text(),
              pipe + ": expected a project file, found something that is no file");
}

TEST(ProjectFile, RefusesAnEmptyFile) {
    const TempFolder folder;
    EXPECT_EQ(readProjectFile(folder.write("a.qrlproj", "").string()).error().fault,
              ProjectFileError::Fault::Malformed);
}

TEST(ProjectFile, RefusesAFileThatIsTooLarge) {
    const TempFolder folder;
    const auto path = folder.write("a.qrlproj", "{}");
    std::filesystem::resize_file(path, 17 << 20);
    EXPECT_EQ(readProjectFile(path.string()).error().message, "expected a file of at most 16777216 bytes");
}

/// What is wrong with each project of a folder; empty texts for those that are read.
std::vector<std::string> errorsIn(const std::string& folder) {
    std::vector<std::string> errors;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const auto project = readProjectFile(entry.path().string());
        errors.push_back(project ? "" : project.error().text());
    }
    return errors;
}

TEST(ProjectFile, EachExampleIsRead) {
    EXPECT_EQ(errorsIn(KESTO_EXAMPLE_PROJECTS), std::vector<std::string>(3));
    EXPECT_EQ(errorsIn(KESTO_PROJECT_DATA "/good"), std::vector<std::string>(1));
}

TEST(ProjectFile, WhatTheSchemaRefusesIsNotRead) {
    const auto errors = errorsIn(KESTO_PROJECT_DATA "/bad");
    EXPECT_GE(errors.size(), 14U);
    for (const std::string& error : errors)
        EXPECT_NE(error, "");
}

} // namespace
