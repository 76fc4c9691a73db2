#pragma once

#include "ThumbnailRequest.h"

#include <KestoThumbnailer/IThumbnailLoaderFinishedCallback.h>
#include <KestoThumbnailer/IThumbnailLoaderGdiplusBitmapCallback.h>
#include <KestoThumbnailer/ThumbnailLoader.h>

#include <chrono>
#include <functional>
#include <optional>

namespace KestoHost {

/// A loader that is given one request at a time, and what becomes of it: the file, or the reason why there is
/// none. What is no picture is tried as a video or project on the same thread. The process must have started
/// GDI+.
class ThumbnailWorker final : public KestoThumbnailer::IThumbnailLoaderGdiplusBitmapCallback,
                              public KestoThumbnailer::IThumbnailLoaderFinishedCallback {
public:
    /// Gets the report when a request has ended, on the loader's thread; it may begin the next, but not
    /// destroy the worker. Must not throw.
    using Finished = std::function<void(ThumbnailWorker& worker, const ThumbReport& report)>;

    explicit ThumbnailWorker(Finished finished);
    /// Waits for the request that is running.
    ~ThumbnailWorker() = default;
    ThumbnailWorker(const ThumbnailWorker&) = delete;
    ThumbnailWorker& operator=(const ThumbnailWorker&) = delete;

    /// Returns at once. Requires: nothing is running, and `refusalOf` has nothing against the request.
    void begin(ThumbnailRequest next);

    // For the loader alone.
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                        const KestoThumbnailer::ThumbnailLoaderJob& job) override;
    void OnThumbnailJobFinished(const KestoThumbnailer::ThumbnailLoaderJob& job) override;

private:
    void tryWithoutLoader();

    using Clock = std::chrono::steady_clock;

    const Finished finished;

    // Of the request that runs; the loader's queue hands them over.
    ThumbnailRequest request;
    ThumbReport report;
    bool hasPicture = false;
    bool isMoment = false; ///< of an animation, which to the loader is a still picture
    Clock::time_point start;

    KestoThumbnailer::ThumbnailLoader loader; // last: its thread uses all of the above
};

} // namespace KestoHost
