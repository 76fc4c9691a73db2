#include "walls/WallChecker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace Walls {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A small project that keeps its walls.
SourceTree soundProject() {
    std::istringstream walls("src/scheduling: production imagefile platform\n"
                             "src/scheduling/imagefile: platform\n"
                             "src/production: platform imagefile\n"
                             "backends/system: platform\n"
                             "backends/gdiplus/codecs: platform system\n"
                             "backends/gdiplus/image: platform gdiplus_codecs\n"
                             "backends/engine: platform\n"
                             "libs/PageRasterLib: platform system\n");
    SourceTree tree;
    tree.walls = readWalls(walls);
    for (const char* header :
         {"src/platform/Gdi.h", "src/scheduling/Loader.h", "src/scheduling/imagefile/FileUtil.h",
          "src/production/Helper.h", "src/production/helper/Part.h", "backends/system/PathResolver.h",
          "backends/gdiplus/LoadError.h", "backends/gdiplus/codecs/ByteSource.h",
          "backends/gdiplus/codecs/jpeg/Marker.h", "backends/gdiplus/image/Bitmap.h",
          "backends/engine/Demuxer.h", "src/version/Version.h", "libs/PageRasterLib/PdfDocument.h",
          "host/Report.h"})
        tree.files[header] = "#pragma once\n";
    return tree;
}

/// The breaches after one file of three lines, whose last is the include, joins the project.
std::vector<Breach> breachesOf(const std::string& file, const std::string& include,
                               std::span<const Exception> allowed = {}) {
    SourceTree tree = soundProject();
    tree.files[file] = "// a file\n\n#include " + include + '\n';
    return findBreaches(tree, allowed);
}

void expectAllowed(const std::string& file, const std::string& include) {
    EXPECT_THAT(breachesOf(file, include), IsEmpty());
}

void expectBreach(const std::string& file, const std::string& include, const std::string& rule) {
    const std::vector<Breach> breaches = breachesOf(file, include);
    ASSERT_EQ(breaches.size(), 1U) << file << " includes " << include;
    EXPECT_EQ(breaches[0].file, file);
    EXPECT_EQ(breaches[0].line, 3);
    EXPECT_EQ(breaches[0].include, include.substr(1, include.size() - 2));
    EXPECT_THAT(breaches[0].rule, HasSubstr(rule));
}

} // namespace

TEST(WallChecker, FindsNothingInASoundProject) {
    EXPECT_THAT(findBreaches(soundProject(), {}), IsEmpty());
}

TEST(WallChecker, TellsFileLineIncludeAndRule) {
    EXPECT_THAT(breachesOf("src/production/A.cpp", "\"scheduling/Loader.h\""),
                ElementsAre(Breach{"src/production/A.cpp", 3, "scheduling/Loader.h", "a floor above"}));
}

TEST(WallChecker, AFloorMayUseItselfAndWhatLiesBelow) {
    expectAllowed("src/production/A.cpp", "\"production/Helper.h\"");
    expectAllowed("src/production/A.cpp", "\"production/helper/Part.h\"");
    expectAllowed("src/production/A.cpp", "\"scheduling/imagefile/FileUtil.h\"");
    expectAllowed("src/production/A.cpp", "\"platform/Gdi.h\"");
    expectAllowed("src/scheduling/A.cpp", "\"production/Helper.h\"");
}

TEST(WallChecker, AFloorMayNotUseOneAbove) {
    expectBreach("src/scheduling/imagefile/A.cpp", "\"production/Helper.h\"", "a floor above");
    expectBreach("src/scheduling/imagefile/A.cpp", "\"scheduling/Loader.h\"", "a floor above");
    expectBreach("src/platform/A.h", "\"production/Helper.h\"", "a floor above");
}

TEST(WallChecker, AFolderOnNoFloorKnowsItselfAndThePlatform) {
    expectAllowed("src/version/A.cpp", "\"version/Version.h\"");
    expectAllowed("src/version/A.cpp", "\"platform/Gdi.h\"");
    expectBreach("src/version/A.cpp", "\"production/Helper.h\"", "lies on no floor");
    expectBreach("src/production/A.cpp", "\"version/Version.h\"", "lies on no floor");
}

TEST(WallChecker, ABuildFileMayNotLetAFloorUseOneAbove) {
    SourceTree tree = soundProject();
    tree.walls["src/production"].push_back("scheduling");
    EXPECT_THAT(findBreaches(tree, {}),
                ElementsAre(Breach{"src/production/CMakeLists.txt", 0, "scheduling", "a floor above"}));
}

TEST(WallChecker, AFloorBelowMustBeNamedByTheBuildFile) {
    SourceTree tree = soundProject();
    tree.walls["src/scheduling"] = {"imagefile", "platform"};
    tree.files["src/scheduling/A.cpp"] = "#include \"production/Helper.h\"\n";
    EXPECT_THAT(findBreaches(tree, {}), ElementsAre(Breach{"src/scheduling/A.cpp", 1, "production/Helper.h",
                                                           "src/scheduling may not use src/production"}));
}

TEST(WallChecker, AHeaderOfASubfolderIsPrivate) {
    expectBreach("src/scheduling/A.cpp", "\"production/helper/Part.h\"", "private to src/production");
    expectBreach("backends/gdiplus/image/A.cpp", "\"gdiplus/codecs/jpeg/Marker.h\"",
                 "private to backends/gdiplus/codecs");
}

TEST(WallChecker, TheLogicKnowsNeitherBackendsNorLibraries) {
    expectBreach("src/production/A.cpp", "\"system/PathResolver.h\"", "lies on no floor");
    expectBreach("src/production/A.cpp", "\"PageRasterLib/PdfDocument.h\"", "lies on no floor");
}

TEST(WallChecker, TheLogicKnowsBoostAndTheStandardLibraryAlone) {
    expectAllowed("src/production/A.cpp", "<boost/shared_ptr.hpp>");
    expectAllowed("src/production/A.cpp", "<vector>");
    expectBreach("src/production/A.cpp", "<fmt/format.h>", "fmt");
    expectBreach("src/production/A.cpp", "<unistd.h>", "operating system");
}

TEST(WallChecker, OfTheLogicTheOthersKnowThePlatformAlone) {
    expectAllowed("backends/system/A.cpp", "\"platform/Gdi.h\"");
    expectAllowed("libs/PageRasterLib/A.cpp", "\"platform/Gdi.h\"");
    expectBreach("backends/system/A.cpp", "\"production/Helper.h\"", "only src/platform");
    expectBreach("libs/PageRasterLib/A.cpp", "\"scheduling/imagefile/FileUtil.h\"", "only src/platform");
}

TEST(WallChecker, ABackendMayUseWhatItsBuildFileNames) {
    expectAllowed("backends/gdiplus/codecs/A.cpp", "\"system/PathResolver.h\"");
    expectAllowed("backends/gdiplus/image/A.cpp", "\"gdiplus/codecs/ByteSource.h\"");
    expectBreach("backends/gdiplus/image/A.cpp", "\"system/PathResolver.h\"",
                 "backends/gdiplus/image may not use backends/system");
    expectBreach("backends/gdiplus/codecs/A.cpp", "\"gdiplus/image/Bitmap.h\"", "may not use");
}

TEST(WallChecker, HeadersOfAParentFolderAreSharedByItsParts) {
    expectAllowed("backends/gdiplus/codecs/jpeg/A.cpp", "\"gdiplus/LoadError.h\"");
    expectBreach("backends/system/A.cpp", "\"gdiplus/LoadError.h\"", "without a wall");
}

TEST(WallChecker, AFolderWithoutAWallUsesNothing) {
    expectBreach("backends/new/A.cpp", "\"system/PathResolver.h\"", "without a wall");
}

TEST(WallChecker, AForeignLibraryStaysBehindItsFolder) {
    expectAllowed("backends/engine/A.cpp", "<libavcodec/avcodec.h>");
    expectAllowed("backends/gdiplus/codecs/jpeg/A.cpp", "<jpeglib.h>");
    expectBreach("backends/gdiplus/codecs/A.cpp", "<libavutil/frame.h>", "FFmpeg");
    expectBreach("libs/PageRasterLib/A.cpp", "<libswscale/swscale.h>", "FFmpeg");
    expectBreach("backends/engine/A.cpp", "<jpeglib.h>", "libjpeg-turbo");
    expectBreach("libs/PageRasterLib/A.cpp", "<Page.h>", "poppler");
}

TEST(WallChecker, ALibraryThatNoTableNamesIsABreach) {
    expectBreach("backends/engine/A.cpp", "<somebody/else.h>", "no library in the table");
    expectBreach("backends/engine/A.cpp", "\"somebody/else.h\"", "no file of the project");
}

TEST(WallChecker, TheHostKnowsInstalledHeadersAndItsOwn) {
    expectAllowed("host/main.cpp", "<KestoThumbnailer/ImageHelper.h>");
    expectAllowed("host/main.cpp", "<CLI/App.hpp>");
    expectAllowed("host/main.cpp", "<nlohmann/json.hpp>");
    expectAllowed("host/main.cpp", "<fmt/format.h>");
    expectAllowed("host/main.cpp", "\"Report.h\"");
    expectBreach("host/main.cpp", "\"platform/Gdi.h\"", "no file of the project");
    expectBreach("host/main.cpp", "\"../src/platform/Gdi.h\"", "only the installed headers");
    expectBreach("host/main.cpp", "<boost/shared_ptr.hpp>", "Boost");
    expectBreach("host/main.cpp", "<unistd.h>", "operating system");
}

TEST(WallChecker, AnExampleKnowsInstalledHeadersAlone) {
    expectAllowed("examples/thumbnail.cpp", "<KestoThumbnailer/ImageHelper.h>");
    expectAllowed("examples/thumbnail.cpp", "<string>");
    expectBreach("examples/thumbnail.cpp", "<CLI/App.hpp>", "CLI11");
}

TEST(WallChecker, TheInstalledHeadersAreNotForTheInside) {
    expectBreach("backends/system/A.cpp", "<KestoThumbnailer/platform/Gdi.h>", "for those outside");
}

TEST(WallChecker, AnExceptionLetsOneIncludeOfOneFileStand) {
    const Exception up[] = {{"src/production/A.cpp", "scheduling/Loader.h", "a reason"}};
    EXPECT_THAT(breachesOf("src/production/A.cpp", "\"scheduling/Loader.h\"", up), IsEmpty());
    EXPECT_EQ(breachesOf("src/production/B.cpp", "\"scheduling/Loader.h\"", up).size(), 2U);
}

TEST(WallChecker, AnExceptionThatNothingNeedsIsTold) {
    const Exception stale[] = {{"src/production/A.cpp", "production/Helper.h", "a reason"}};
    EXPECT_THAT(
        breachesOf("src/production/A.cpp", "\"production/Helper.h\"", stale),
        ElementsAre(Breach{"src/production/A.cpp", 0, "production/Helper.h", "an exception not needed"}));
}

TEST(WallList, ALineThatComesTwiceAddsItsNames) {
    std::istringstream lines("a/b: one two\na/b: three\nc:\n");
    EXPECT_EQ(readWalls(lines), (WallList{{"a/b", {"one", "two", "three"}}, {"c", {}}}));
}

} // namespace Walls
