#include "scheduling/LoaderFixture.h"

#include "support/renderer/TestProject.h"

#include <gmock/gmock.h>

#include <boost/weak_ptr.hpp>

#include <filesystem>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::Arrival;
using TestSupport::burntIn;
using TestSupport::makeTestMedia;
using TestSupport::makeTestProject;
using TestSupport::pixelOf;
using TestSupport::TestProject;
using TestSupport::wideOf;

class ProjectThumbnails : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob job(std::vector<double> times = {0.0}) {
        ThumbnailLoaderJob made = projectJob("frame", std::move(times));
        made.project = project;
        made.useSpriteSheet = false;
        return made;
    }

    boost::shared_ptr<TestProject> project = makeTestProject(8, 4);
};

/// Leaves what it gets.
class LookingCallback final : public IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob&) override {
        width = (*bitmap)->GetWidth();
        came.set();
    }

    UINT width = 0;
    Event came{EventReset::Automatic};
};

} // namespace

TEST_F(ProjectThumbnails, EachTimeIsOnePictureInOrder) {
    ThumbnailLoader loader;
    ASSERT_TRUE(loader.GetThumbnailAsync(job({0.0, 1.0, 2.5})));
    const std::vector<Arrival> arrived = pictures.await(3);
    EXPECT_EQ(pixelOf(*arrived[0].bitmap, 0, 0), burntIn(0));
    EXPECT_EQ(pixelOf(*arrived[1].bitmap, 0, 0), burntIn(30));
    EXPECT_EQ(pixelOf(*arrived[2].bitmap, 7, 3), burntIn(75));
}

TEST_F(ProjectThumbnails, ThePictureIsTheFrameWithinTheBounds) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob small = job();
    small.width = 4;
    small.height = 4;
    loader.GetThumbnailAsync(small);
    const Arrival arrived = pictures.await(1)[0];
    EXPECT_EQ(arrived.bitmap->GetWidth(), 4U);
    EXPECT_EQ(arrived.bitmap->GetHeight(), 2U);
}

TEST_F(ProjectThumbnails, TheCallbackGetsTheJobWithTheTimeOfItsPictureFirst) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob asked = job({0.5, 1.5});
    asked.opaqueValue = 77;
    asked.userData = "mine";
    loader.GetThumbnailAsync(asked);
    const std::vector<Arrival> arrived = pictures.await(2);
    EXPECT_TRUE(arrived[0].job == asked);
    EXPECT_THAT(arrived[1].job.times, ElementsAre(1.5, 1.5));
    EXPECT_EQ(arrived[1].job.opaqueValue, 77U);
    EXPECT_EQ(arrived[1].job.userData, "mine");
}

TEST_F(ProjectThumbnails, CallbacksComeOnOneThreadThatIsNotTheCallers) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(job({0.0, 1.0}));
    const std::vector<Arrival> arrived = pictures.await(2);
    EXPECT_NE(arrived[0].thread, std::this_thread::get_id());
    EXPECT_EQ(arrived[0].thread, arrived[1].thread);
}

TEST_F(ProjectThumbnails, WhatACallbackLeavesIsDeleted) {
    ThumbnailLoader loader;
    LookingCallback callback;
    ThumbnailLoaderJob looked = job();
    looked.callback = &callback;
    loader.GetThumbnailAsync(looked);
    callback.came.wait();
    EXPECT_EQ(callback.width, 8U);
}

TEST_F(ProjectThumbnails, EachPictureIsSavedUnderItsPath) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob saved = job({0.0, 2.0});
    saved.outputFilePath = (folder / "frames.png").string();
    loader.GetThumbnailAsync(saved);
    pictures.await(2);
    Gdiplus::Bitmap first(wideOf(folder / "frames.png").c_str());
    Gdiplus::Bitmap second(wideOf(folder / "frames_1.png").c_str());
    EXPECT_EQ(pixelOf(first, 0, 0), burntIn(0));
    EXPECT_EQ(pixelOf(second, 0, 0), burntIn(60));
}

TEST_F(ProjectThumbnails, AFileNeedsNoCallback) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob saved = job({1.0});
    saved.callback = nullptr;
    saved.outputFilePath = (folder / "frame.png").string();
    loader.GetThumbnailAsync(saved);
    drain(loader);
    Gdiplus::Bitmap file(wideOf(folder / "frame.png").c_str());
    EXPECT_EQ(pixelOf(file, 0, 0), burntIn(30));
}

TEST_F(ProjectThumbnails, AFileThatCannotBeWrittenDoesNotStopThePicture) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob saved = job({1.0});
    saved.outputFilePath = (folder / "no such folder/frame.png").string();
    loader.GetThumbnailAsync(saved);
    EXPECT_EQ(pictures.await(1).size(), 1U);
}

TEST_F(ProjectThumbnails, WithoutABitmapNothingIsSavedAndNobodyIsTold) {
    ThumbnailLoader loader;
    project->script->rendersNothing = true;
    ThumbnailLoaderJob saved = job();
    saved.outputFilePath = (folder / "frame.png").string();
    loader.GetThumbnailAsync(saved);
    drain(loader);
    EXPECT_EQ(project->script->renderedFrames().size(), 1U);
    EXPECT_EQ(pictures.count(), 0U);
    EXPECT_FALSE(std::filesystem::exists(folder / "frame.png"));
}

TEST_F(ProjectThumbnails, ACommandWithoutTimesIsOfTimeZero) {
    ThumbnailLoader fed;
    fed.GetThumbnailAsync(job({1.0}));
    pictures.await(1);
    drain(fed);
    // From here on the worker sleeps, and this thread does its work.
    ThumbnailLoader::HandleThreadCommand(&fed, {ThumbCmdProjectFrame, job({}), 0});
    EXPECT_EQ(pixelOf(*pictures.await(2)[1].bitmap, 0, 0), burntIn(0));
}

TEST_F(ProjectThumbnails, ACommandOfALoaderWithoutAProjectMakesNothing) {
    ThumbnailLoader loader;
    ThumbnailLoader::HandleThreadCommand(&loader, {ThumbCmdProjectFrame, job(), 0});
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(ProjectThumbnails, OneGrabberServesAllJobsOfAProject) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(job({0.0, 1.0}));
    loader.GetThumbnailAsync(job({2.0}));
    pictures.await(3);
    EXPECT_EQ(project->script->pipelines().size(), 1U);
}

TEST_F(ProjectThumbnails, APendingFrameIsOfTheProjectThatWasQueuedLast) {
    ThumbnailLoader loader;
    occupy(loader);
    loader.GetThumbnailAsync(job({1.0}));
    ThumbnailLoaderJob later = job({2.0});
    const auto other = makeTestProject(6, 6);
    later.project = other;
    loader.GetThumbnailAsync(later);
    gate.open();
    EXPECT_EQ(pictures.await(2)[0].bitmap->GetWidth(), 6U);
    EXPECT_THAT(project->script->renderedFrames(), IsEmpty());
    EXPECT_THAT(other->script->renderedFrames(), ElementsAre(30, 60));
}

TEST_F(ProjectThumbnails, APendingFrameShowsTheMediaOfTheLatestJob) {
    ThumbnailLoader loader;
    occupy(loader);
    ThumbnailLoaderJob first = job({1.0});
    first.mediaToRender = {makeTestMedia()};
    loader.GetThumbnailAsync(first);
    ThumbnailLoaderJob latest = job({2.0});
    latest.mediaToRender = {makeTestMedia(), makeTestMedia()};
    loader.GetThumbnailAsync(latest);
    gate.open();
    const std::vector<Arrival> arrived = pictures.await(2);
    EXPECT_EQ(pixelOf(*arrived[0].bitmap, 0, 0), burntIn(30, 2));
    EXPECT_EQ(pixelOf(*arrived[1].bitmap, 0, 0), burntIn(60, 2));
}

TEST_F(ProjectThumbnails, AJobWithoutMediaShowsAllAgain) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob first = job({1.0});
    first.mediaToRender = {makeTestMedia()};
    loader.GetThumbnailAsync(first);
    EXPECT_EQ(pixelOf(*pictures.await(1)[0].bitmap, 0, 0), burntIn(30, 1));
    loader.GetThumbnailAsync(job({2.0}));
    EXPECT_EQ(pixelOf(*pictures.await(2)[1].bitmap, 0, 0), burntIn(60, 0));
}

TEST_F(ProjectThumbnails, TheLastProjectStaysWithTheLoader) {
    const boost::weak_ptr<TestProject> watched = project;
    {
        ThumbnailLoader loader;
        loader.GetThumbnailAsync(job());
        pictures.await(1);
        pictures.clear();
        project.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

TEST_F(ProjectThumbnails, AFormerProjectGoesWithoutALock) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob former = job();
    former.project =
        boost::shared_ptr<TestProject>(new TestProject(8, 4), [this, &loader](const TestProject* gone) {
            delete gone;
            loader.GetThumbnailAsync(job({2.0}));
        });
    loader.GetThumbnailAsync(former);
    pictures.await(1);
    drain(loader);
    former.project.reset();
    pictures.clear();

    loader.GetThumbnailAsync(job({1.0}));
    EXPECT_EQ(pixelOf(*pictures.await(2)[1].bitmap, 0, 0), burntIn(60));
}

TEST_F(ProjectThumbnails, ARendererThatCannotBeBuiltIsTheCallersException) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(job({1.0}));
    pictures.await(1);
    ThumbnailLoaderJob refused = job();
    const auto broken = makeTestProject(8, 4);
    broken->script->hasNoTimeline = true;
    refused.project = broken;
    EXPECT_THROW(loader.GetThumbnailAsync(refused), KestoRenderLib::KestoRenderLibException);

    loader.GetThumbnailAsync(job({2.0}));
    EXPECT_EQ(pixelOf(*pictures.await(2)[1].bitmap, 0, 0), burntIn(60));
}

} // namespace KestoThumbnailer
