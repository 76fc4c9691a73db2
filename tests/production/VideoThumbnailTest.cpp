#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "support/GdiplusUser.h"
#include "support/GifFile.h"
#include "support/ShownNumber.h"
#include "support/TempFolder.h"
#include "support/recording/ScriptedRecordings.h"
#include "support/renderer/GeneratedProjects.h"
#include "support/renderer/TestProject.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace KestoThumbnailer {

namespace {

using TestSupport::burntIn;
using TestSupport::makeTestProject;
using TestSupport::pixelOf;
using TestSupport::ProjectRequest;
using TestSupport::readFile;
using TestSupport::ScriptedTrack;
using TestSupport::TestProject;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;
using Rate = boost::rational<unsigned long>;

constexpr Gdiplus::ARGB red = 0xFFFF0000;
constexpr Gdiplus::ARGB blue = 0xFF0000FF;
const ScriptedTrack screenTrack{100, 164, 92, [](int, int) { return red; }};
const ScriptedTrack cameraTrack{101, 40, 30, [](int, int) { return blue; }};

/// Any file is a project of 64 by 32, wherever it gets as far as that.
class VideoThumbnail : public ::testing::Test {
protected:
    Picture thumbnailOf(const std::string& name, double time = 0, int width = 0, int height = 0) {
        return thumbnailOf(name, "content", time, width, height);
    }
    Picture thumbnailOf(const std::string& name, std::string_view content, double time, int width = 0,
                        int height = 0) {
        folder.write(name, content);
        return Picture(GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(
            TestSupport::wideOf(folder / name), time, width, height, Rate(30), -1));
    }
    bool isRendered(const std::string& name) {
        const std::size_t before = projects.requests().size();
        const Picture shown = thumbnailOf(name);
        return shown && projects.requests().size() == before + 1;
    }
    bool isNullWithoutAProject(const std::string& name) {
        const std::size_t before = projects.requests().size();
        const Picture shown = thumbnailOf(name);
        return !shown && projects.requests().size() == before;
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
    TestSupport::ScriptedRecordings recordings;
    boost::shared_ptr<TestProject> project = makeTestProject(64, 32, 30);
    TestSupport::GeneratedProjects projects{[this](const ProjectRequest&) { return project; }};
};

} // namespace

TEST_F(VideoThumbnail, AFileIsRenderedAtItsTimeIntoTheBox) {
    const Picture shown = thumbnailOf("film.mp4", 2.5, 32, 32);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->GetWidth(), 32U);
    EXPECT_EQ(shown->GetHeight(), 16U);
    EXPECT_EQ(pixelOf(*shown, 16, 8), burntIn(75));
}

TEST_F(VideoThumbnail, TheFrameRateIsHandedOn) {
    thumbnailOf("film.mp4");
    ASSERT_EQ(projects.requests().size(), 1U);
    EXPECT_EQ(projects.requests()[0].frameRate, Rate(30));
}

TEST_F(VideoThumbnail, AFileOfAnyOtherKindIsRendered) {
    EXPECT_TRUE(isRendered("film.mov"));
    EXPECT_TRUE(isRendered("film.AVI"));
    EXPECT_TRUE(isRendered("film"));
    EXPECT_TRUE(isRendered("film.plumex.avi"));
    EXPECT_TRUE(isRendered("film.gift"));
}

TEST_F(VideoThumbnail, AWholePlumexIsNoVideo) {
    EXPECT_TRUE(isNullWithoutAProject("recording.plumex"));
    EXPECT_TRUE(isNullWithoutAProject("recording.PLUMEX"));
}

TEST_F(VideoThumbnail, AGifIsShownByItsOwnRoute) {
    const TestSupport::GifFile file =
        TestSupport::GifFile(8, 4, {0x000000, 0x00FF00})
            .frame({.width = 8, .height = 4})
            .frame({.width = 8, .height = 4, .index = [](int, int) { return 1; }});
    for (const char* name : {"moving.gif", "moving.GIF"}) {
        const Picture shown(GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(
            TestSupport::wideOf(folder.write(name, file.bytes())), 0.15, 4, 0, Rate(30), -1));
        ASSERT_TRUE(shown) << name;
        EXPECT_EQ(shown->GetWidth(), 4U);
        EXPECT_EQ(pixelOf(*shown, 1, 1), 0xFF00FF00U);
    }
    EXPECT_TRUE(projects.requests().empty());
}

TEST_F(VideoThumbnail, AGifIsNeverRenderedAsAProject) {
    EXPECT_TRUE(isNullWithoutAProject("moving.gif"));
    EXPECT_TRUE(isNullWithoutAProject("moving.Gif"));
}

TEST_F(VideoThumbnail, AMoskIsNeverRenderedAsAProject) {
    EXPECT_TRUE(isNullWithoutAProject("recording.mosk"));
    EXPECT_TRUE(isNullWithoutAProject("recording.MOSK"));
    EXPECT_EQ(recordings.requests.size(), 2U);
}

TEST_F(VideoThumbnail, AMoskShowsItsFrameInTheBox) {
    recordings.tracksOf[(folder / "recording.mosk").string()] = {screenTrack, cameraTrack};
    const Picture shown = thumbnailOf("recording.mosk", 1.5, 82, 82);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->GetWidth(), 82U);
    EXPECT_EQ(shown->GetHeight(), 46U);
    EXPECT_EQ(pixelOf(*shown, 0, 0), red);
    EXPECT_EQ(pixelOf(*shown, 81, 45), blue);
    EXPECT_EQ(recordings.frameCalls.at(0).seconds, 1.5);
}

TEST_F(VideoThumbnail, OfAMoskTheTrackCounts) {
    recordings.tracksOf[(folder / "recording.mosk").string()] = {screenTrack, cameraTrack};
    folder.write("recording.mosk", "content");
    const Picture shown(GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(
        TestSupport::wideOf(folder / "recording.mosk"), 0, 0, 0, Rate(30), 1));
    ASSERT_TRUE(shown);
    EXPECT_EQ(pixelOf(*shown, 0, 0), blue);
}

TEST_F(VideoThumbnail, AMemberOfAMoskIsOneByItsNameAlone) {
    recordings.tracksOf[(folder / "recording.mosk").string()] = {screenTrack, cameraTrack};
    const Picture camera = thumbnailOf("recording.mosk!Cvideo0.mp4");
    ASSERT_TRUE(camera);
    EXPECT_EQ(pixelOf(*camera, 0, 0), blue);
    EXPECT_TRUE(isNullWithoutAProject("recording.mosk!Maudio0.mp4"));
    EXPECT_TRUE(isNullWithoutAProject("other.zip!Svideo0.mp4"));
}

TEST_F(VideoThumbnail, AMovOfPngsShowsItsStill) {
    for (const char* name : {"stills.mov", "stills.MOV"}) {
        const Picture shown = thumbnailOf(name, readFile(videoPath("stills.mov")), 0.21);
        ASSERT_TRUE(shown) << name;
        EXPECT_EQ(TestSupport::shownNumber(*shown), 5);
    }
    EXPECT_TRUE(projects.requests().empty());
}

TEST_F(VideoThumbnail, AMovOfPngsIsTriedNoOtherWay) {
    EXPECT_FALSE(thumbnailOf("stills.mov", readFile(videoPath("stills.mov")), 5));
    EXPECT_TRUE(projects.requests().empty());
}

TEST_F(VideoThumbnail, APngTrackElsewhereIsRendered) {
    EXPECT_TRUE(thumbnailOf("stills.mp4", readFile(videoPath("stills.mov")), 0));
    EXPECT_TRUE(thumbnailOf("other.mov", readFile(videoPath("prores.mov")), 0));
    EXPECT_EQ(projects.requests().size(), 2U);
}

TEST_F(VideoThumbnail, AStreamInsideAPlumexIsNeverRendered) {
    EXPECT_TRUE(isNullWithoutAProject("recording.plumex!Screen_Stream.avi"));
    EXPECT_TRUE(isNullWithoutAProject("recording.plumex!Camera_Stream.wmv"));
}

TEST_F(VideoThumbnail, AnythingElseInsideAPlumexIsAFile) {
    EXPECT_TRUE(isRendered("recording.plumex!Audio.wav"));
    EXPECT_TRUE(isRendered("recording.plumex!screen_stream.avi"));
    const std::wstring member = TestSupport::wideOf(folder / "other.plumex") + L"!Audio.wav";
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(member, 0, 0, 0, Rate(30), -1), nullptr);
    EXPECT_EQ(projects.requests().size(), 2U);
}

TEST_F(VideoThumbnail, AMissingFileIsNull) {
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(L"", 0, 0, 0, Rate(30), -1), nullptr);
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::GetThumbnailForVideo(
                  TestSupport::wideOf(folder / "missing.mp4"), 0, 0, 0, Rate(30), -1),
              nullptr);
}

TEST_F(VideoThumbnail, AFileThatFailsIsTriedNoOtherWay) {
    project->script->rendersNothing = true;
    EXPECT_FALSE(thumbnailOf("film.mp4"));
    EXPECT_EQ(projects.requests().size(), 1U);
}

} // namespace KestoThumbnailer
