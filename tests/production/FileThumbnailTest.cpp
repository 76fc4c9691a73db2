#include "production/GdiplusBitmapThumbnailingHelper.h"

#include "support/GdiplusUser.h"
#include "support/TempFolder.h"
#include "support/renderer/GeneratedProjects.h"
#include "support/renderer/TestProject.h"

#include <boost/weak_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::KestoRenderLibException;
using ::testing::ElementsAre;
using TestSupport::burntIn;
using TestSupport::makeTestProject;
using TestSupport::pixelOf;
using TestSupport::ProjectRequest;
using TestSupport::TestProject;
using TestSupport::TimelineCall;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;
using Rate = boost::rational<unsigned long>;

class FileThumbnail : public ::testing::Test {
protected:
    Picture thumbnailOf(const std::wstring& path, double time = 0, int width = 0, int height = 0) {
        return Picture(GdiplusBitmapThumbnailingHelper::GetThumbnailForFile(path, time, width, height, 25));
    }
    Picture thumbnail(double time, int width = 0, int height = 0) {
        return thumbnailOf(file, time, width, height);
    }
    __int64 frameNumberAt(double time) {
        thumbnail(time);
        return project->script->renderedFrames().back();
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
    std::wstring file = TestSupport::wideOf(folder.write("film.mp4", "a film"));
    boost::shared_ptr<TestProject> project = makeTestProject(64, 32, 25);
    TestSupport::GeneratedProjects projects{[this](const ProjectRequest&) { return project; }};
};

} // namespace

TEST_F(FileThumbnail, AFileIsAskedForAsTheOneMediaOfAProject) {
    thumbnail(0);
    const auto requests = projects.requests();
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests[0].origin, TestSupport::ProjectOrigin::MediaFile);
    EXPECT_EQ(requests[0].text, (folder / "film.mp4").string());
    EXPECT_EQ(requests[0].frameRate, Rate(25));
}

TEST_F(FileThumbnail, APathIsAskedForInUtf8) {
    folder.write("f\xC3\xBCr \xE6\x98\xA0.mp4", "a film");
    thumbnailOf(TestSupport::wideOf(folder / "f\xC3\xBCr \xE6\x98\xA0.mp4"));
    ASSERT_EQ(projects.requests().size(), 1U);
    EXPECT_EQ(projects.requests()[0].text, (folder / "f\xC3\xBCr \xE6\x98\xA0.mp4").string());
}

TEST_F(FileThumbnail, TheFrameAtTheTimeIsShown) {
    const Picture shown = thumbnail(2);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->GetWidth(), 64U);
    EXPECT_EQ(shown->GetHeight(), 32U);
    EXPECT_EQ(shown->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(pixelOf(*shown, 0, 0), burntIn(50));
    EXPECT_EQ(pixelOf(*shown, 63, 31), burntIn(50));
}

TEST_F(FileThumbnail, TheTimeIsCutToMilliseconds) {
    EXPECT_EQ(frameNumberAt(0.0399), 0);
    EXPECT_EQ(frameNumberAt(0.04), 1);
    EXPECT_EQ(frameNumberAt(-0.0009), 0);
}

TEST_F(FileThumbnail, ATimeThatIsNoNumberIsTheFirstFrame) {
    EXPECT_EQ(frameNumberAt(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST_F(FileThumbnail, AFrameIsShrunkIntoTheBox) {
    const Picture shown = thumbnail(1, 16, 16);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->GetWidth(), 16U);
    EXPECT_EQ(shown->GetHeight(), 8U);
    EXPECT_EQ(pixelOf(*shown, 8, 4), burntIn(25));
}

TEST_F(FileThumbnail, AFrameIsNeverEnlarged) {
    const Picture shown = thumbnail(1, 640, 320);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->GetWidth(), 64U);
}

TEST_F(FileThumbnail, AFrameKeepsItsOrientation) {
    project->script->paint = [](KestoRenderLib::MetaBitmap& bitmap, const TimelineCall& pass) {
        TestSupport::fill(bitmap, burntIn(pass.frame));
        bitmap.AsGdiplusBitmap()->SetPixel(0, 0, Gdiplus::Color(0xFFFFFFFF));
    };
    const Picture shown = thumbnail(1);
    EXPECT_EQ(pixelOf(*shown, 0, 0), 0xFFFFFFFF);
    EXPECT_EQ(pixelOf(*shown, 0, 31), burntIn(25));
}

TEST_F(FileThumbnail, ATransparentFrameEndsOnBlack) {
    project->script->paint = [](KestoRenderLib::MetaBitmap& bitmap, const TimelineCall&) {
        TestSupport::fill(bitmap, 0);
    };
    EXPECT_EQ(pixelOf(*thumbnail(1), 5, 5), 0xFF000000);
}

TEST_F(FileThumbnail, AFrameThatIsNotThereIsNull) {
    project->script->rendersNothing = true;
    EXPECT_FALSE(thumbnail(0));
}

TEST_F(FileThumbnail, AMissingFileIsNullAndAskedForNowhere) {
    EXPECT_FALSE(thumbnailOf(L""));
    EXPECT_FALSE(thumbnailOf(TestSupport::wideOf(folder / "missing.mp4")));
    EXPECT_THAT(projects.requests(), ElementsAre());
}

TEST_F(FileThumbnail, AFileOfWhichNoProjectCanBeMadeIsNull) {
    project.reset();
    EXPECT_FALSE(thumbnail(0));
    EXPECT_EQ(projects.requests().size(), 1U);
}

TEST_F(FileThumbnail, WhatTheFrameGrabberThrowsPassesThrough) {
    project->script->hasNoTimeline = true;
    EXPECT_THROW(thumbnail(0), KestoRenderLibException);
}

TEST_F(FileThumbnail, NothingIsHeldAfterAnExceptionOfTheRenderer) {
    project->script->onRender = [](const TimelineCall&) { throw std::length_error("too long"); };
    EXPECT_THROW(thumbnail(0), std::length_error);
    EXPECT_EQ(project->script->partsLetGo().size(), 4U);
}

TEST_F(FileThumbnail, EachCallHasAPipelineOfItsOwnThatGoesWithIt) {
    thumbnail(0);
    thumbnail(1);
    EXPECT_EQ(project->script->pipelines().size(), 2U);
    EXPECT_EQ(project->script->partsLetGo().size(), 8U);
    EXPECT_EQ(project.use_count(), 1);
}

} // namespace KestoThumbnailer
