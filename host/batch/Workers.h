#pragma once

#include "ThumbnailRequest.h"
#include "ThumbnailWorker.h"

#include <KestoThumbnailer/platform/Threading.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace KestoHost {

/// Spreads requests over several workers, which run them in the order in which they came. No more wait than
/// there are workers, so that memory does not grow with the number of requests. A worker is made when it is
/// first needed.
class Workers {
public:
    /// `told` gets each report, on any worker and on several at a time. `mayBegin` is asked before each
    /// request is begun; once it says no, what waits is dropped. Both must not throw.
    Workers(std::size_t count, std::function<void(const ThumbReport&)> told, std::function<bool()> mayBegin);
    /// Drops what waits, and lets the requests end that are running.
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Returns when the request is taken in, which waits for room. False: nothing is begun any more.
    bool add(ThumbnailRequest request) KESTO_EXCLUDES(lock);

    /// Returns when all that was added has ended or was dropped.
    void finish() KESTO_EXCLUDES(lock);

private:
    void onFinished(ThumbnailWorker& worker, const ThumbReport& report) KESTO_EXCLUDES(lock);
    void beginNextLocked() KESTO_REQUIRES(lock);
    ThumbnailWorker* idleWorkerLocked() KESTO_REQUIRES(lock);
    std::optional<ThumbnailRequest> takeLocked() KESTO_REQUIRES(lock);

    const std::size_t most;
    const std::function<void(const ThumbReport&)> told;
    const std::function<bool()> mayBegin;

    Mutex lock;
    std::condition_variable changed; // for every change of `waiting` and `running`
    std::deque<ThumbnailRequest> waiting KESTO_GUARDED_BY(lock);
    std::vector<ThumbnailWorker*> idle KESTO_GUARDED_BY(lock);
    std::size_t running KESTO_GUARDED_BY(lock) = 0;
    // Last, so that no worker outlives what it uses. Changed by the thread that adds.
    std::vector<std::unique_ptr<ThumbnailWorker>> workers KESTO_GUARDED_BY(lock);
};

} // namespace KestoHost
