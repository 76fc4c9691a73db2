#include "scheduling/LoaderFixture.h"

#include "support/renderer/TestProject.h"

#include <boost/any.hpp>
#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <algorithm>

namespace KestoThumbnailer {

namespace {

using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::CommandKeeper;

class PausedThumbnails : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob zoomJob(std::string key) {
        ThumbnailLoaderJob job = projectJob(std::move(key));
        job.zoomWidth = 2;
        job.zoomHeight = 2;
        job.zoomRect = {0, 0, 4, 4};
        return job;
    }
};

} // namespace

TEST_F(PausedThumbnails, ALoaderIsPausedFromPauseToResume) {
    ThumbnailLoader loader;
    EXPECT_FALSE(loader.IsPaused());
    loader.Pause();
    EXPECT_TRUE(loader.IsPaused());
    loader.Pause();
    loader.Resume();
    EXPECT_FALSE(loader.IsPaused());
}

TEST_F(PausedThumbnails, AZoomJobRunsAndAPlainOneWaitsForResume) {
    ThumbnailLoader loader;
    loader.Pause();
    EXPECT_TRUE(loader.GetThumbnailAsync(imageJob("plain")));
    EXPECT_TRUE(loader.GetThumbnailAsync(zoomJob("first zoom")));
    EXPECT_EQ(pictures.await(1)[0].job.thumbnailKey, "first zoom");
    EXPECT_TRUE(loader.GetThumbnailAsync(zoomJob("second zoom")));
    pictures.await(2);
    EXPECT_THAT(pictures.keys(), ElementsAre("first zoom", "second zoom"));
    loader.Resume();
    pictures.await(3);
    EXPECT_THAT(pictures.keys(), ElementsAre("first zoom", "second zoom", "plain"));
}

TEST_F(PausedThumbnails, WhatRunsAlreadyIsFinished) {
    ThumbnailLoader loader;
    occupy(loader);
    loader.Pause();
    gate.open();
    loader.GetThumbnailAsync(zoomJob("after it"));
    EXPECT_EQ(pictures.await(1)[0].job.thumbnailKey, "after it");
}

TEST_F(PausedThumbnails, CommandsOfEveryKindGoBackAsTheyAre) {
    const auto queue = boost::make_shared<CommandKeeper>();
    const auto loader = ThumbnailLoaderForTesting::over(queue);
    loader->Pause();
    const ThumbnailLoaderJob job = imageJob("back");
    for (std::int32_t kind = ThumbCmdProjectFrame; kind <= ThumbCmdCallout; ++kind)
        ThumbnailLoader::HandleThreadCommand(loader.get(), {kind, job, 9});
    EXPECT_THAT(queue->kinds(), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_EQ(queue->commands[1].tag, 9U);
    EXPECT_TRUE(queue->job(1) == job);
    EXPECT_EQ(pictures.count(), 0U);
}

TEST_F(PausedThumbnails, APayloadThatIsNoJobIsRefusedAllTheSame) {
    const auto loader = ThumbnailLoaderForTesting::over(boost::make_shared<CommandKeeper>());
    loader->Pause();
    EXPECT_THROW(ThumbnailLoader::HandleThreadCommand(loader.get(), {ThumbCmdMediaFile, 7, 0}),
                 boost::bad_any_cast);
}

TEST_F(PausedThumbnails, TheQueueGoesRoundInItsOrder) {
    ThumbnailLoader loader;
    occupy(loader);
    loader.Pause();
    for (const char* key : {"a", "b", "c"})
        loader.GetThumbnailAsync(imageJob(key));
    gate.open();
    loader.GetThumbnailAsync(zoomJob("zoom"));
    pictures.await(1);
    loader.Resume();
    pictures.await(4);
    EXPECT_THAT(pictures.keys(), AnyOf(ElementsAre("zoom", "a", "b", "c"), ElementsAre("zoom", "b", "c", "a"),
                                       ElementsAre("zoom", "c", "a", "b")));
}

TEST_F(PausedThumbnails, DuplicatesAreFoldedMeanwhile) {
    ThumbnailLoader loader;
    occupy(loader); // so that all three are pending at the first take, whose order decides which is newest
    loader.Pause();
    for (const char* key : {"older", "newer", "newest"}) {
        ThumbnailLoaderJob job = imageJob(key);
        job.dedupeId = 5;
        loader.GetThumbnailAsync(job);
    }
    gate.open();
    // The zoom job is behind them all, so that the worker has taken one of them before it.
    loader.GetThumbnailAsync(zoomJob("zoom"));
    pictures.await(1);
    loader.Resume();
    pictures.await(2);
    drain(loader);
    EXPECT_THAT(pictures.keys(), ElementsAre("zoom", "newest"));
}

TEST_F(PausedThumbnails, APausedLoaderGoesWithoutRunningAnything) {
    {
        ThumbnailLoader loader;
        loader.Pause();
        loader.GetThumbnailAsync(imageJob("first"));
        loader.GetThumbnailAsync(imageJob("second"));
    }
    EXPECT_THAT(pictures.arrivals(), IsEmpty());
}

TEST_F(PausedThumbnails, ASheetThatWasBegunIsCompleted) {
    ThumbnailLoader loader;
    Event begun{EventReset::Automatic};
    Event goOn{EventReset::Manual};
    ThumbnailLoaderJob sheet = projectJob("sheet", {0.0, 1.0, 2.0});
    const auto project = TestSupport::makeTestProject(8, 4);
    project->script->onRender = [&begun, &goOn](const auto&) {
        begun.set();
        goOn.wait();
    };
    sheet.project = project;
    loader.GetThumbnailAsync(sheet);
    begun.wait();
    loader.Pause();
    goOn.set();
    EXPECT_EQ(pictures.await(1)[0].job.thumbnailKey, "");
    EXPECT_EQ(project->script->renderedFrames().size(), 3U);
}

} // namespace KestoThumbnailer
