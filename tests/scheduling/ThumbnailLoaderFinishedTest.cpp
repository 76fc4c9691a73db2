#include "scheduling/LoaderFixture.h"

#include "scheduling/IThumbnailLoaderFinishedCallback.h"
#include "support/renderer/TestProject.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace KestoThumbnailer {

namespace {

using ::testing::ElementsAre;

/// Notes what it is told, in order.
class EndRecorder final : public IThumbnailLoaderGdiplusBitmapCallback,
                          public IThumbnailLoaderFinishedCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap**, const ThumbnailLoaderJob& job) override {
        note("picture of " + job.thumbnailKey);
    }
    void OnThumbnailJobFinished(const ThumbnailLoaderJob& job) override {
        note("end of " + job.thumbnailKey);
        if (then)
            then(job);
    }

    std::vector<std::string> told() KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        return notes;
    }

    std::function<void(const ThumbnailLoaderJob& job)> then; ///< set before the first job

private:
    void note(const std::string& text) KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        notes.push_back(text);
    }

    Mutex lock;
    std::vector<std::string> notes KESTO_GUARDED_BY(lock);
};

class FinishedThumbnails : public TestSupport::LoaderFixture {
protected:
    ThumbnailLoaderJob toldOf(ThumbnailLoaderJob job) {
        job.callback = &ends;
        return job;
    }
    ThumbnailLoaderJob missingImage(const std::string& key) {
        ThumbnailLoaderJob job = toldOf(imageJob(key));
        job.mediaPath = (folder / "nothing.png").string();
        return job;
    }

    EndRecorder ends;
};

} // namespace

TEST_F(FinishedThumbnails, AreToldAfterTheirPicture) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(toldOf(imageJob("image")));
    loader.GetThumbnailAsync(toldOf(projectJob("project")));
    drain(loader);
    EXPECT_THAT(ends.told(),
                ElementsAre("picture of image", "end of image", "picture of project", "end of project"));
}

TEST_F(FinishedThumbnails, AreToldWithoutAPictureToo) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(missingImage("missing"));
    drain(loader);
    EXPECT_THAT(ends.told(), ElementsAre("end of missing"));
}

TEST_F(FinishedThumbnails, AreToldOfEachTime) {
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = toldOf(projectJob("project", {0.0, 1.0}));
    job.useSpriteSheet = false;
    loader.GetThumbnailAsync(job);
    drain(loader);
    EXPECT_THAT(ends.told(),
                ElementsAre("picture of project", "end of project", "picture of project", "end of project"));
}

TEST_F(FinishedThumbnails, AreToldOnceOfASheet) {
    ThumbnailLoader loader;
    loader.GetThumbnailAsync(toldOf(projectJob("sheet", {0.0, 1.0})));
    drain(loader);
    // The sheet itself comes with a default job.
    EXPECT_THAT(ends.told(), ElementsAre("picture of ", "end of sheet"));
}

TEST_F(FinishedThumbnails, AreToldOnceOfDuplicates) {
    ThumbnailLoader loader;
    occupy(loader);
    loader.GetThumbnailAsync(missingImage("missing"));
    loader.GetThumbnailAsync(missingImage("missing"));
    gate.open();
    drain(loader);
    EXPECT_THAT(ends.told(), ElementsAre("end of missing"));
}

TEST_F(FinishedThumbnails, AreNotToldWhileThePauseSendsThemBack) {
    ThumbnailLoader loader;
    loader.Pause();
    loader.GetThumbnailAsync(missingImage("missing"));
    ThumbnailLoaderJob zoom = projectJob("zoom");
    zoom.zoomWidth = zoom.zoomHeight = 4;
    loader.GetThumbnailAsync(zoom);
    pictures.await(1); // the worker has taken the other job before
    EXPECT_THAT(ends.told(), ElementsAre());
    loader.Resume();
    drain(loader);
    EXPECT_THAT(ends.told(), ElementsAre("end of missing"));
}

TEST_F(FinishedThumbnails, MayAskForTheNext) {
    ThumbnailLoader loader;
    Event bothEnded(EventReset::Manual);
    ends.then = [this, &loader, &bothEnded](const ThumbnailLoaderJob& job) {
        if (job.thumbnailKey == "first")
            loader.GetThumbnailAsync(missingImage("second"));
        else
            bothEnded.set();
    };
    loader.GetThumbnailAsync(missingImage("first"));
    bothEnded.wait();
    EXPECT_THAT(ends.told(), ElementsAre("end of first", "end of second"));
}

TEST_F(FinishedThumbnails, CallbackThatWantsNoEndMayGoAfterItsPicture) {
    /// Destroys itself with its picture; the sanitizer sees a use after that.
    class ShortLived final : public IThumbnailLoaderGdiplusBitmapCallback {
    public:
        explicit ShortLived(std::unique_ptr<ShortLived>& holder)
            : owner(holder) {}
        void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap**, const ThumbnailLoaderJob&) override {
            owner.reset();
        }

    private:
        std::unique_ptr<ShortLived>& owner;
    };
    std::unique_ptr<ShortLived> callback;
    callback = std::make_unique<ShortLived>(callback);
    ThumbnailLoader loader;
    ThumbnailLoaderJob job = imageJob("image");
    job.callback = callback.get();
    loader.GetThumbnailAsync(job);
    drain(loader);
    EXPECT_EQ(callback, nullptr);
}

} // namespace KestoThumbnailer
