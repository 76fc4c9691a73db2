#include "scheduling/LoaderFixture.h"

#include "platform/KestoRenderLib.h"
#include "scheduling/ThumbnailLoader.h"
#include "support/renderer/GeneratedProjects.h"
#include "support/renderer/TestProject.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::KestoRenderLibException;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::CommandKeeper;
using TestSupport::GeneratedProjects;
using TestSupport::makeTestMedia;
using TestSupport::makeTestProject;
using TestSupport::ProjectOrigin;
using TestSupport::ProjectRequest;

/// What a loader pushes, without a worker to run it.
class QueuedThumbnails : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob calloutJob(std::vector<double> times) {
        ThumbnailLoaderJob job;
        job.sourceKind = SourceCallout;
        job.mediaToRender = {makeTestMedia()};
        job.times = std::move(times);
        return job;
    }

    boost::shared_ptr<CommandKeeper> queue = boost::make_shared<CommandKeeper>();
    std::unique_ptr<ThumbnailLoader> loader = ThumbnailLoaderForTesting::over(queue);
};

} // namespace

TEST_F(QueuedThumbnails, AJobWithoutASourceIsRefusedAndItsFileStays) {
    ThumbnailLoaderJob job;
    job.times = {0.0};
    job.outputFilePath = folder.write("old.png", "old").string();
    EXPECT_FALSE(loader->GetThumbnailAsync(job));
    EXPECT_TRUE(std::filesystem::exists(job.outputFilePath));
    EXPECT_THAT(queue->commands, IsEmpty());
}

TEST_F(QueuedThumbnails, ACalloutJobWithoutMediaNamesNoSource) {
    ThumbnailLoaderJob job = calloutJob({0.0});
    job.mediaToRender.clear();
    EXPECT_FALSE(loader->GetThumbnailAsync(job));
}

TEST_F(QueuedThumbnails, MediaToRenderAreNoSourceOfOtherKinds) {
    ThumbnailLoaderJob job = calloutJob({0.0});
    job.sourceKind = SourceProject;
    EXPECT_FALSE(loader->GetThumbnailAsync(job));
}

TEST_F(QueuedThumbnails, WithoutAManagerAJobThrows) {
    const auto broken = ThumbnailLoaderForTesting::over(nullptr);
    try {
        broken->GetThumbnailAsync(projectJob("any"));
        FAIL() << "nothing is thrown";
    } catch (const KestoRenderLibException& refusal) {
        EXPECT_STREQ(refusal.what(), "ThreadManager Has Not Been Initialized for ThumbnailLoader");
    }
}

TEST_F(QueuedThumbnails, WithoutTimesNothingIsQueued) {
    EXPECT_TRUE(loader->GetThumbnailAsync(projectJob("project", {})));
    EXPECT_TRUE(loader->GetThumbnailAsync(imageJob("image", {})));
    EXPECT_TRUE(loader->GetThumbnailAsync(calloutJob({})));
    EXPECT_THAT(queue->commands, IsEmpty());
}

TEST_F(QueuedThumbnails, TheSourceDecidesTheKind) {
    loader->GetThumbnailAsync(projectJob("project"));
    loader->GetThumbnailAsync(imageJob("image"));
    loader->GetThumbnailAsync(calloutJob({0.0}));
    EXPECT_THAT(queue->kinds(), ElementsAre(1, 2, 5));
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdProjectFrame, ThumbCmdMediaFile, ThumbCmdCallout));
}

TEST_F(QueuedThumbnails, TwoTimesAreOneSheet) {
    loader->GetThumbnailAsync(projectJob("project", {0.0, 1.0}));
    loader->GetThumbnailAsync(imageJob("image", {0.0, 1.0}));
    EXPECT_THAT(queue->kinds(), ElementsAre(3, 4));
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdProjectSprite, ThumbCmdMediaSprite));
}

TEST_F(QueuedThumbnails, ASheetOfCalloutsQueuesNothing) {
    EXPECT_TRUE(loader->GetThumbnailAsync(calloutJob({0.0, 1.0})));
    EXPECT_THAT(queue->commands, IsEmpty());
}

TEST_F(QueuedThumbnails, OneTimeIsAPictureAlsoWhereASheetIsWanted) {
    ThumbnailLoaderJob job = projectJob("project", {1.0});
    job.useSpriteSheet = true;
    loader->GetThumbnailAsync(job);
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdProjectFrame));
}

TEST_F(QueuedThumbnails, ACommandHasItsOwnTimeFirstAndTheOthersAsTheyWere) {
    ThumbnailLoaderJob job = imageJob("image", {1.0, 2.0, 3.0});
    job.useSpriteSheet = false;
    loader->GetThumbnailAsync(job);
    ASSERT_EQ(queue->commands.size(), 3U);
    EXPECT_THAT(queue->job(0).times, ElementsAre(1.0, 2.0, 3.0));
    EXPECT_THAT(queue->job(1).times, ElementsAre(2.0, 2.0, 3.0));
    EXPECT_THAT(queue->job(2).times, ElementsAre(3.0, 2.0, 3.0));
}

TEST_F(QueuedThumbnails, CalloutsKeepTheFirstTime) {
    ThumbnailLoaderJob job = calloutJob({1.0, 2.0});
    job.useSpriteSheet = false;
    loader->GetThumbnailAsync(job);
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdCallout, ThumbCmdCallout));
    EXPECT_THAT(queue->job(1).times, ElementsAre(1.0, 2.0));
}

TEST_F(QueuedThumbnails, TagsAreZero) {
    loader->GetThumbnailAsync(imageJob("image"));
    EXPECT_EQ(queue->commands.at(0).tag, 0U);
}

TEST_F(QueuedThumbnails, FilesAfterTheFirstAreNumberedAndInLowerCase) {
    ThumbnailLoaderJob job = imageJob("image", {1.0, 2.0, 3.0});
    job.useSpriteSheet = false;
    job.outputFilePath = "/No Such/Frames.PNG";
    loader->GetThumbnailAsync(job);
    EXPECT_THAT(queue->paths(),
                ElementsAre("/No Such/Frames.PNG", "/no such/frames_1.png", "/no such/frames_2.png"));
}

TEST_F(QueuedThumbnails, AFileWithoutAPointGetsOneAtItsEnd) {
    ThumbnailLoaderJob job = calloutJob({1.0, 2.0});
    job.useSpriteSheet = false;
    job.outputFilePath = "/No Such/Frames";
    loader->GetThumbnailAsync(job);
    EXPECT_THAT(queue->paths(), ElementsAre("/No Such/Frames", "/No Such/Frames_1."));
}

TEST_F(QueuedThumbnails, WithoutAFileNoneIsNumbered) {
    ThumbnailLoaderJob job = imageJob("image", {1.0, 2.0});
    job.useSpriteSheet = false;
    loader->GetThumbnailAsync(job);
    EXPECT_THAT(queue->paths(), ElementsAre("", ""));
}

TEST_F(QueuedThumbnails, ASheetIsOneCommandWithTheJobAsItIs) {
    ThumbnailLoaderJob job = projectJob("project", {3.0, 1.0});
    job.outputFilePath = "/no such/Sheet.PNG";
    loader->GetThumbnailAsync(job);
    ASSERT_EQ(queue->commands.size(), 1U);
    EXPECT_TRUE(queue->job(0) == job);
}

TEST_F(QueuedThumbnails, AnAcceptedJobRemovesItsOldFile) {
    for (ThumbnailLoaderJob job : {projectJob("project"), imageJob("image"), calloutJob({0.0})}) {
        job.outputFilePath = folder.write("old.png", "old").string();
        EXPECT_TRUE(loader->GetThumbnailAsync(job));
        EXPECT_FALSE(std::filesystem::exists(job.outputFilePath));
    }
}

TEST_F(QueuedThumbnails, AnOldFileThatCannotBeRemovedDoesNotStopTheJob) {
    ThumbnailLoaderJob job = imageJob("image");
    job.outputFilePath = (folder / "a folder").string();
    std::filesystem::create_directory(job.outputFilePath);
    EXPECT_TRUE(loader->GetThumbnailAsync(job));
    EXPECT_TRUE(std::filesystem::exists(job.outputFilePath));
    EXPECT_EQ(queue->commands.size(), 1U);
}

TEST_F(QueuedThumbnails, APathOfAProjectBecomesAProject) {
    const auto made = makeTestProject(8, 4);
    const GeneratedProjects projects([&made](const ProjectRequest&) { return made; });
    ThumbnailLoaderJob job;
    job.mediaPath = "film.project";
    job.times = {0.0};
    EXPECT_TRUE(loader->GetThumbnailAsync(job));
    ASSERT_EQ(projects.requests().size(), 1U);
    EXPECT_EQ(projects.requests()[0].origin, ProjectOrigin::File);
    EXPECT_EQ(projects.requests()[0].text, "film.project");
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdProjectFrame));
    EXPECT_EQ(queue->job(0).project, made);
    EXPECT_FALSE(job.project);
}

TEST_F(QueuedThumbnails, ATextOfAProjectBecomesAProject) {
    const auto made = makeTestProject(8, 4);
    const GeneratedProjects projects([&made](const ProjectRequest&) { return made; });
    ThumbnailLoaderJob job;
    job.projectJson = "{ }";
    job.projectBasePath = "base";
    job.sourceKind = SourceVideo;
    job.times = {0.0};
    EXPECT_TRUE(loader->GetThumbnailAsync(job));
    ASSERT_EQ(projects.requests().size(), 1U);
    EXPECT_EQ(projects.requests()[0].origin, ProjectOrigin::JsonText);
    EXPECT_EQ(projects.requests()[0].text, "{ }");
    EXPECT_EQ(projects.requests()[0].basePath, "base");
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdProjectFrame));
}

TEST_F(QueuedThumbnails, AProjectThatCannotBeMadeIsAQuietEndWithoutTheOldFile) {
    ThumbnailLoaderJob ofPath;
    ofPath.mediaPath = "no.project";
    ThumbnailLoaderJob ofText;
    ofText.projectJson = "{ }";
    for (ThumbnailLoaderJob job : {ofPath, ofText}) {
        job.times = {0.0};
        job.outputFilePath = folder.write("old.png", "old").string();
        EXPECT_TRUE(loader->GetThumbnailAsync(job));
        EXPECT_FALSE(std::filesystem::exists(job.outputFilePath));
    }
    EXPECT_THAT(queue->commands, IsEmpty());
}

TEST_F(QueuedThumbnails, WhatAProjectsMakerThrowsIsTheCallers) {
    const GeneratedProjects projects([](const ProjectRequest&) -> boost::shared_ptr<KestoMediaLib::Project> {
        throw std::runtime_error("no such track");
    });
    ThumbnailLoaderJob job;
    job.mediaPath = "broken.project";
    job.times = {0.0};
    EXPECT_THROW(loader->GetThumbnailAsync(job), std::runtime_error);
    EXPECT_THAT(queue->commands, IsEmpty());
}

TEST_F(QueuedThumbnails, AProjectComesBeforeAPathAndAPathBeforeAText) {
    const GeneratedProjects projects([](const ProjectRequest&) { return makeTestProject(8, 4); });
    ThumbnailLoaderJob job = projectJob("all three");
    job.mediaPath = "film.project";
    job.projectJson = "{ }";
    loader->GetThumbnailAsync(job);
    EXPECT_THAT(projects.requests(), IsEmpty());
    job.project.reset();
    loader->GetThumbnailAsync(job);
    ASSERT_EQ(projects.requests().size(), 1U);
    EXPECT_EQ(projects.requests()[0].origin, ProjectOrigin::File);
}

TEST_F(QueuedThumbnails, OnlyAProjectsPathBecomesAProject) {
    const GeneratedProjects projects([](const ProjectRequest&) { return makeTestProject(8, 4); });
    for (const ThumbnailSourceKind kind : {SourceVideo, SourceImage, SourceCallout}) {
        ThumbnailLoaderJob job = imageJob("file");
        job.sourceKind = kind;
        loader->GetThumbnailAsync(job);
    }
    EXPECT_THAT(projects.requests(), IsEmpty());
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdMediaFile, ThumbCmdMediaFile, ThumbCmdMediaFile));
}

TEST_F(QueuedThumbnails, ACalloutComesBeforeItsProject) {
    ThumbnailLoaderJob job = calloutJob({0.0});
    job.project = makeTestProject(8, 4);
    loader->GetThumbnailAsync(job);
    job.mediaToRender.clear();
    loader->GetThumbnailAsync(job);
    EXPECT_THAT(queue->kinds(), ElementsAre(ThumbCmdCallout, ThumbCmdCallout));
}

TEST_F(QueuedThumbnails, TheLoadersStyleDecidesWhereTilesLie) {
    ThumbnailLoader rows;
    ThumbnailLoader grid(true, SpriteStyleGrid);
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    rows.GetThumbnailRectInSpriteSheet(10, 6, 5, 16, left, top, right, bottom);
    EXPECT_EQ(CRect(left, top, right, bottom), CRect(50, 0, 60, 6));
    grid.GetThumbnailRectInSpriteSheet(10, 6, 5, 16, left, top, right, bottom);
    EXPECT_EQ(CRect(left, top, right, bottom), CRect(0, 6, 10, 12));
}

} // namespace KestoThumbnailer
