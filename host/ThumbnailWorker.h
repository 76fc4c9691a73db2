#pragma once

#include "ThumbnailRequest.h"

#include <KestoThumbnailer/platform/Threading.h>

#include <functional>
#include <optional>
#include <thread>

namespace KestoHost {

/// Makes thumbnails on a thread of its own, one at a time. The process must have started GDI+.
class ThumbnailWorker {
public:
    /// Gets the report when a request has ended, on the worker's thread; it may begin the next. Must not
    /// throw.
    using Finished = std::function<void(ThumbnailWorker& worker, const ThumbReport& report)>;

    explicit ThumbnailWorker(Finished finished);
    /// Waits for the request that is running.
    ~ThumbnailWorker();
    ThumbnailWorker(const ThumbnailWorker&) = delete;
    ThumbnailWorker& operator=(const ThumbnailWorker&) = delete;

    /// Returns at once. Requires: nothing is running, and `refusalOf` has nothing against the request.
    void begin(ThumbnailRequest request);

private:
    void run();

    const Finished finished;
    std::optional<ThumbnailRequest> next; // handed over by `begun`; none ends the thread
    Event begun{EventReset::Automatic};
    std::thread thread;
};

} // namespace KestoHost
