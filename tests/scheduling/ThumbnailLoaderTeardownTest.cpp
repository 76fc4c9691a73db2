#include "scheduling/LoaderFixture.h"

#include "support/renderer/GeneratedProjects.h"
#include "support/renderer/TestProject.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include <memory>
#include <thread>
#include <utility>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::burntIn;
using TestSupport::GeneratedProjects;
using TestSupport::makeTestProject;
using TestSupport::pixelOf;
using TestSupport::ProjectRequest;
using TestSupport::TestMedia;
using TestSupport::TestProject;

/// Stays in the renderer until told to go on.
class SlowProject {
public:
    SlowProject() {
        shared->script->onRender = [this](const auto&) {
            rendering.set();
            goOn.wait();
        };
    }

    boost::shared_ptr<TestProject> shared = makeTestProject(8, 4);
    Event rendering{EventReset::Automatic};
    Event goOn{EventReset::Manual};
};

class LoaderTeardown : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob sheetJob(std::vector<double> times) {
        ThumbnailLoaderJob job = projectJob("sheet", std::move(times));
        job.project = project;
        job.width = 8;
        job.height = 4;
        return job;
    }

    /// A job that signals `dropped` when it is no longer in the queue.
    ThumbnailLoaderJob watchedJob() {
        ThumbnailLoaderJob job = imageJob("pending");
        job.mediaToRender = {
            boost::shared_ptr<const KestoMediaLib::Media>(new TestMedia, [this](const TestMedia* media) {
                delete media;
                dropped.set();
            })};
        return job;
    }

    /// Destroys the loader on a thread of its own, and returns when it has begun to.
    std::thread beginToDestroy(std::unique_ptr<ThumbnailLoader> loader) {
        loader->GetThumbnailAsync(watchedJob());
        std::thread destroying([doomed = std::move(loader)]() mutable { doomed.reset(); });
        dropped.wait();
        return destroying;
    }

    boost::shared_ptr<TestProject> project = makeTestProject(8, 4);
    Event dropped{EventReset::Automatic};
};

} // namespace

TEST_F(LoaderTeardown, AnIdleLoaderGoes) {
    { const ThumbnailLoader loader; }
    SUCCEED();
}

TEST_F(LoaderTeardown, PendingJobsAreDroppedAndTheRunningOneIsFinished) {
    SlowProject slow;
    auto loader = std::make_unique<ThumbnailLoader>();
    ThumbnailLoaderJob running = projectJob("running");
    running.project = slow.shared;
    loader->GetThumbnailAsync(running);
    slow.rendering.wait();
    loader->GetThumbnailAsync(imageJob("first pending"));
    std::thread destroying = beginToDestroy(std::move(loader));
    slow.goOn.set();
    destroying.join();
    EXPECT_THAT(pictures.keys(), ElementsAre("running"));
}

TEST_F(LoaderTeardown, ASheetThatCanFillIsCompleted) {
    SlowProject slow;
    auto loader = std::make_unique<ThumbnailLoader>();
    project = slow.shared;
    loader->GetThumbnailAsync(sheetJob({0.0, 1.0, 2.0}));
    slow.rendering.wait();
    std::thread destroying = beginToDestroy(std::move(loader));
    slow.goOn.set();
    destroying.join();
    ASSERT_EQ(pictures.count(), 1U);
    EXPECT_EQ(pixelOf(*pictures.arrivals()[0].bitmap, 16, 0), burntIn(60));
}

TEST_F(LoaderTeardown, ASheetWithATileThatHasNoPictureIsGivenUp) {
    {
        ThumbnailLoader loader;
        Event rendering{EventReset::Automatic};
        project->script->rendersNothing = true;
        project->script->onRender = [&rendering](const auto& pass) {
            if (pass.frame == 60)
                rendering.set();
        };
        loader.GetThumbnailAsync(sheetJob({0.0, 1.0, 2.0}));
        loader.GetThumbnailAsync(imageJob("behind it"));
        rendering.wait();
    }
    EXPECT_THAT(pictures.arrivals(), IsEmpty());
}

TEST_F(LoaderTeardown, ASheetWhoseTilesAreDuplicatesIsGivenUp) {
    SlowProject slow;
    auto loader = std::make_unique<ThumbnailLoader>();
    project = slow.shared;
    ThumbnailLoaderJob sheet = sheetJob({0.0, 1.0, 2.0, 3.0});
    sheet.zoomWidth = 2;
    sheet.zoomHeight = 2;
    sheet.zoomRect = {0, 0, 2, 2};
    sheet.dedupeId = 1;
    loader->GetThumbnailAsync(sheet);
    slow.rendering.wait();
    std::thread destroying = beginToDestroy(std::move(loader));
    slow.goOn.set();
    destroying.join();
    EXPECT_LT(slow.shared->script->passes().size(), 5U);
}

TEST_F(LoaderTeardown, ASheetOfAFileNeverFillsAndIsGivenUp) {
    {
        ThumbnailLoader loader;
        const GeneratedProjects projects([this](const ProjectRequest&) { return project; });
        Event rendering{EventReset::Automatic};
        project->script->onRender = [&rendering](const auto&) { rendering.set(); };
        ThumbnailLoaderJob sheet = imageJob("sheet", {0.0, 1.0, 2.0});
        sheet.mediaPath = folder.write("video.mp4", "a video").string();
        sheet.sourceKind = SourceVideo;
        loader.GetThumbnailAsync(sheet);
        loader.GetThumbnailAsync(imageJob("behind it"));
        rendering.wait();
    }
    EXPECT_THAT(pictures.arrivals(), IsEmpty());
}

TEST_F(LoaderTeardown, ASheetOfImagesNeverFillsAndIsGivenUp) {
    {
        ThumbnailLoader loader;
        occupy(loader);
        loader.GetThumbnailAsync(imageJob("sheet", {0.0, 1.0}));
        loader.GetThumbnailAsync(imageJob("behind it"));
        gate.open();
    }
    EXPECT_THAT(pictures.arrivals(), IsEmpty());
}

TEST_F(LoaderTeardown, ASheetOfAProjectUnderAnotherKindNeverFillsAndIsGivenUp) {
    {
        ThumbnailLoader loader;
        Event rendering{EventReset::Automatic};
        project->script->onRender = [&rendering](const auto&) { rendering.set(); };
        ThumbnailLoaderJob sheet = sheetJob({0.0, 1.0});
        sheet.sourceKind = SourceVideo;
        loader.GetThumbnailAsync(sheet);
        rendering.wait();
    }
    EXPECT_THAT(pictures.arrivals(), IsEmpty());
}

TEST_F(LoaderTeardown, ASheetThatIsPendingIsDropped) {
    auto loader = std::make_unique<ThumbnailLoader>();
    occupy(*loader);
    loader->GetThumbnailAsync(sheetJob({0.0, 1.0}));
    std::thread destroying = beginToDestroy(std::move(loader));
    gate.open();
    destroying.join();
    EXPECT_THAT(project->script->pipelines(), IsEmpty());
    EXPECT_THAT(pictures.arrivals(), IsEmpty());
}

TEST_F(LoaderTeardown, JobsThatCallbacksAskForMeanwhileNeverRun) {
    struct AskingMore final : IThumbnailLoaderGdiplusBitmapCallback {
        void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap**, const ThumbnailLoaderJob&) override {
            arrived.set();
            goOn.wait();
            loader->GetThumbnailAsync(more);
        }
        ThumbnailLoader* loader = nullptr;
        ThumbnailLoaderJob more;
        Event arrived{EventReset::Automatic};
        Event goOn{EventReset::Automatic};
    };
    AskingMore asking;
    auto loader = std::make_unique<ThumbnailLoader>();
    asking.loader = loader.get();
    asking.more = imageJob("more");
    ThumbnailLoaderJob first = imageJob("first");
    first.callback = &asking;
    loader->GetThumbnailAsync(first);
    asking.arrived.wait();
    std::thread destroying = beginToDestroy(std::move(loader));
    asking.goOn.set();
    destroying.join();
    EXPECT_THAT(pictures.arrivals(), IsEmpty());
}

} // namespace KestoThumbnailer
