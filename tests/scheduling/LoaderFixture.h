#pragma once

#include "platform/Threading.h"
#include "scheduling/IThumbnailLoaderGdiplusBitmapCallback.h"
#include "scheduling/IWorkerThreadManager.h"
#include "scheduling/ThumbnailLoader.h"
#include "scheduling/ThumbnailLoaderJob.h"
#include "support/GdiplusUser.h"
#include "support/TempFolder.h"

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace KestoThumbnailer {

/// Opens the loader's door for tests.
class ThumbnailLoaderForTesting {
public:
    /// Over a manager that nobody starts; it may be null.
    static std::unique_ptr<ThumbnailLoader> over(boost::shared_ptr<IWorkerThreadManager> manager);
};

} // namespace KestoThumbnailer

namespace TestSupport {

/// A picture as it came to a callback.
struct Arrival {
    KestoThumbnailer::ThumbnailLoaderJob job;
    std::shared_ptr<Gdiplus::Bitmap> bitmap;
    std::thread::id thread;
};

/// Takes and keeps what arrives.
class PictureRecorder final : public KestoThumbnailer::IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                        const KestoThumbnailer::ThumbnailLoaderJob& job) override
        KESTO_EXCLUDES(lock);

    std::vector<Arrival> arrivals() KESTO_EXCLUDES(lock);
    std::vector<std::string> keys();
    std::size_t count() { return arrivals().size(); }
    /// Returns when so many have arrived, and gives them.
    std::vector<Arrival> await(std::size_t count) KESTO_EXCLUDES(lock);
    void clear() KESTO_EXCLUDES(lock);

private:
    Mutex lock;
    std::condition_variable arrived;
    std::vector<Arrival> pictures KESTO_GUARDED_BY(lock);
};

/// A callback that keeps the worker until it is opened.
class WorkerGate final : public KestoThumbnailer::IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                        const KestoThumbnailer::ThumbnailLoaderJob& job) override;

    void awaitWorker() { reached.wait(); }
    void open() { opened.set(); }

private:
    Event reached{EventReset::Automatic};
    Event opened{EventReset::Automatic};
};

/// A queue that keeps what is pushed and runs nothing.
class CommandKeeper final : public KestoThumbnailer::IWorkerThreadManager {
public:
    void Start(KestoThumbnailer::CommandHandler, void*, const char*) override {}
    void SetPruning(bool, KestoThumbnailer::PruneFunction) override {}
    void PushCommand(const KestoThumbnailer::THUMB_THREADCMD& command) override {
        commands.push_back(command);
    }
    std::uint32_t Stop(bool) override { return 0; }
    Event* GetCommandEvent() override { return nullptr; }

    std::vector<std::int32_t> kinds() const;
    /// Of the command with that number.
    const KestoThumbnailer::ThumbnailLoaderJob& job(std::size_t index) const;
    std::vector<std::string> paths() const;

    std::vector<KestoThumbnailer::THUMB_THREADCMD> commands;
};

/// What the tests of the loader work with. Declare the loader in the test, so that it goes first.
class LoaderFixture : public ::testing::Test {
protected:
    LoaderFixture();

    /// Of a project of its own, 8 by 4 pixels; with `pictures` as callback and `key` to tell it by.
    KestoThumbnailer::ThumbnailLoaderJob projectJob(std::string key, std::vector<double> times = {0.0});
    /// Of an image file, 8 by 4 blue pixels.
    KestoThumbnailer::ThumbnailLoaderJob imageJob(std::string key, std::vector<double> times = {0.0});

    /// Keeps the worker busy, and returns when it is. Leaves the loader's grabber alone.
    void occupy(KestoThumbnailer::ThumbnailLoader& loader);
    /// Returns when all has run that was queued so far. Leaves the loader's grabber alone.
    void drain(KestoThumbnailer::ThumbnailLoader& loader);

    GdiplusUser gdiplus;
    TempFolder folder;
    const std::string imagePath;
    PictureRecorder pictures;
    WorkerGate gate;

private:
    PictureRecorder last;
    std::size_t drained = 0;
};

} // namespace TestSupport
