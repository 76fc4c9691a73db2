#include "libs/KestoRenderLib/project/Composition.h"
#include "libs/KestoRenderLib/project/GifFile.h"
#include "support/JpegFile.h"
#include "support/PdfFile.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

using namespace KestoMediaLib;
using KestoRenderLib::ProjectGenerator;
using Rate = boost::rational<unsigned long>;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class MediaProject : public ::testing::Test {
protected:
    static void expectCanvas(const Project& project, float width, float height) {
        EXPECT_EQ(project.timeline()->attributeWidth()->value(), width);
        EXPECT_EQ(project.timeline()->attributeHeight()->value(), height);
    }

    std::string image(int width, int height) const {
        const TestSupport::PngFile file = {
            .width = width, .height = height, .pixelAt = [](int, int) { return 0xFFFF0000U; }};
        return folder.write("a.png", file.bytes()).string();
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(MediaProject, AVideoKeepsItsFrameRateSizeAndDuration) {
    const auto project = ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(videoPath("h264.mp4"));
    ASSERT_TRUE(project);
    EXPECT_TRUE(project->frameRate() == Rate(25));
    expectCanvas(*project, 128, 96);
    EXPECT_EQ(endOfProject(*project), RationalUtil::toKestoTime(SafeRational(90, 25)));
}

TEST_F(MediaProject, AnImageStandsForFiveSecondsAtThirtyFrames) {
    const auto project = ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(image(20, 10));
    ASSERT_TRUE(project);
    EXPECT_TRUE(project->frameRate() == Rate(30));
    expectCanvas(*project, 20, 10);
    EXPECT_EQ(endOfProject(*project), 5 * modelTimePerSecond);
}

TEST_F(MediaProject, AnImageOnItsSideHasAnUprightCanvas) {
    const TestSupport::JpegFile onItsSide = {
        .width = 32, .height = 16, .pixelAt = [](int, int) { return 0U; }, .orientation = 6};
    const auto project = ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(
        folder.write("a.jpg", onItsSide.bytes()).string());
    ASSERT_TRUE(project);
    expectCanvas(*project, 16, 32);
}

TEST_F(MediaProject, AnAnimatedGifLastsAsLongAsItPlays) {
    const auto bytes = RenderTests::gifOf(std::array{0xFF0000U, 0x00FF00U, 0x0000FFU}, 20);
    const auto project =
        ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(folder.write("a.gif", bytes).string());
    ASSERT_TRUE(project);
    EXPECT_EQ(endOfProject(*project), 6 * modelTimePerSecond / 10);
}

TEST_F(MediaProject, ADocumentShowsItsFirstPage) {
    const TestSupport::PdfFile document = {.widthInPoints = 72, .heightInPoints = 36};
    const auto project = ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(
        folder.write("a.PDF", document.text()).string());
    ASSERT_TRUE(project);
    expectCanvas(*project, 96, 48);
}

TEST_F(MediaProject, HasTheFrameRateThatWasAskedFor) {
    const auto project = ProjectGenerator::Create_MediaProject(videoPath("h264.mp4"), Rate(30000, 1001));
    ASSERT_TRUE(project);
    EXPECT_TRUE(project->frameRate() == Rate(30000, 1001));
    expectCanvas(*project, 128, 96);
    EXPECT_EQ(endOfProject(*project), RationalUtil::toKestoTime(SafeRational(90, 25)));
}

TEST_F(MediaProject, WithoutAFrameRateThereIsNone) {
    EXPECT_FALSE(ProjectGenerator::Create_MediaProject(videoPath("h264.mp4"), Rate(0)));
    EXPECT_THAT(ProjectGenerator::TryMediaProject("a.mp4", Rate(0)).problem, HasSubstr("frame rate"));
}

TEST_F(MediaProject, OfAMissingFileThereIsNone) {
    const std::string path = (folder / "no.mp4").string();
    EXPECT_FALSE(ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(path));
    EXPECT_FALSE(ProjectGenerator::Create_MediaProject(path, Rate(30)));
    EXPECT_EQ(ProjectGenerator::TryProjectFromFile(path).problem, path + ": no such file");
}

TEST_F(MediaProject, OfAnEmptyPathThereIsNone) {
    EXPECT_FALSE(ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(""));
}

TEST_F(MediaProject, OfAFolderThereIsNone) {
    const auto outcome = ProjectGenerator::TryProjectFromFile((folder / "").string());
    EXPECT_FALSE(outcome.project);
    EXPECT_THAT(outcome.problem, HasSubstr("found a folder"));
}

TEST_F(MediaProject, OfAFileWithoutPicturesThereIsNone) {
    const std::string path = folder.write("a.mp4", "no video at all").string();
    const auto outcome = ProjectGenerator::TryProjectFromFile(path);
    EXPECT_FALSE(outcome.project);
    EXPECT_THAT(outcome.problem, StartsWith(path));
}
