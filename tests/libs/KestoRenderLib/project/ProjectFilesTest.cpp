#include "libs/KestoRenderLib/project/Composition.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace RenderTests;
using KestoRenderLib::ProjectGenerator;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

/// A canvas of 4 by 2, red, with a picture over its right half.
const std::string twoTracks = R"({
    "format": "kesto-project", "version": 2, "frameRate": 10, "canvas": {"width": 4, "height": 2},
    "tracks": [
        {"media": [{"kind": "color", "color": "#ff0000", "width": 4, "height": 2, "start": 0, "duration": 1}]},
        {"media": [{"kind": "image", "file": "green.png", "width": 2, "height": 2, "start": 0.5, "duration": 1,
                    "position": [1, 0]}]}
    ]
})";

class ProjectFiles : public ::testing::Test {
protected:
    ProjectFiles() {
        const TestSupport::PngFile picture = {
            .width = 2, .height = 2, .pixelAt = [](int, int) { return green; }};
        folder.write("green.png", picture.bytes());
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(ProjectFiles, AreRenderedAsTheyTell) {
    const auto path = folder.write("two-tracks.qrlproj", twoTracks);
    const auto outcome = ProjectGenerator::TryProjectFromFile(path.string());
    ASSERT_TRUE(outcome.project) << outcome.problem;
    EXPECT_EQ(outcome.problem, "");
    EXPECT_EQ(lettersOf(rendered(outcome.project, 0)), "RRRR\nRRRR\n");
    EXPECT_EQ(lettersOf(rendered(outcome.project, 5)), "RRGG\nRRGG\n");
    EXPECT_EQ(lettersOf(rendered(outcome.project, 10)), "..GG\n..GG\n");
}

TEST_F(ProjectFiles, AreKnownByTheirExtensionInAnyCase) {
    const auto path = folder.write("TWO.QRLPROJ", twoTracks);
    EXPECT_TRUE(ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(path.string()));
}

TEST_F(ProjectFiles, TextsFindTheirFilesInTheBaseFolder) {
    const auto project =
        ProjectGenerator::CreateProjectFromQrlprojJsonContent(twoTracks, (folder / "").string());
    ASSERT_TRUE(project);
    EXPECT_EQ(lettersOf(rendered(project, 5)), "RRGG\nRRGG\n");
}

TEST_F(ProjectFiles, FilesThatAreNotThereLeaveHoles) {
    const auto project = ProjectGenerator::CreateProjectFromQrlprojJsonContent(twoTracks, "/nowhere");
    ASSERT_TRUE(project);
    EXPECT_EQ(lettersOf(rendered(project, 5)), "RRRR\nRRRR\n");
}

TEST_F(ProjectFiles, DamagedOnesAreNoProjects) {
    const std::string path = folder.write("a.qrlproj", "{\"format\": ").string();
    EXPECT_FALSE(ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(path));
    EXPECT_THAT(ProjectGenerator::TryProjectFromFile(path).problem, StartsWith(path));
    EXPECT_FALSE(ProjectGenerator::CreateProjectFromQrlprojJsonContent("[]", ""));
}

TEST_F(ProjectFiles, MissingOnesAreNoProjects) {
    const std::string path = (folder / "no.qrlproj").string();
    const auto outcome = ProjectGenerator::TryProjectFromFile(path);
    EXPECT_FALSE(outcome.project);
    EXPECT_THAT(outcome.problem, StartsWith(path));
}

TEST_F(ProjectFiles, ACanvasThatIsTooLargeIsRefused) {
    const auto outcome = ProjectGenerator::TryProjectFromJson(
        R"({"format": "kesto-project", "version": 2, "frameRate": 10,
            "canvas": {"width": 32000, "height": 32000}, "tracks": []})",
        "");
    EXPECT_FALSE(outcome.project);
    EXPECT_THAT(outcome.problem, HasSubstr("/canvas/width"));
}
