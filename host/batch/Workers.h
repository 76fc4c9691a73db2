#pragma once

#include "ThumbnailRequest.h"
#include "ThumbnailWorker.h"
#include "batch/Admission.h"

#include <KestoThumbnailer/platform/Threading.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace KestoHost {

/// Spreads requests over several workers, which run them in the order in which they came, as far as their
/// pictures fit into memory at a time. No more wait than there are workers, so that memory does not grow with
/// the number of requests either. A worker is made when it is first needed.
class Workers {
public:
    /// `told` gets each report, on any worker and on several at a time. `mayBegin` is asked before each
    /// request is begun; once it says no, what waits is dropped. Both must not throw. `memory` is the budget,
    /// in bytes.
    Workers(std::size_t count, std::int64_t memory, std::function<void(const ThumbReport&)> told,
            std::function<bool()> mayBegin);
    /// Drops what waits, and lets the requests end that are running.
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Returns when the request is taken in, which waits for room. `bytes` is the memory that it needs.
    /// False: nothing is begun any more.
    bool add(ThumbnailRequest request, std::int64_t bytes) KESTO_EXCLUDES(lock);

    /// Returns when all that was added has ended or was dropped.
    void finish() KESTO_EXCLUDES(lock);

private:
    struct Waiting {
        ThumbnailRequest request;
        std::int64_t bytes = 0;
    };

    void onFinished(ThumbnailWorker& worker, const ThumbReport& report) KESTO_EXCLUDES(lock);
    void beginWhatFitsLocked() KESTO_REQUIRES(lock);
    bool nextFitsLocked() KESTO_REQUIRES(lock);
    ThumbnailWorker* idleWorkerLocked() KESTO_REQUIRES(lock);

    const std::size_t most;
    const std::function<void(const ThumbReport&)> told;
    const std::function<bool()> mayBegin;

    Mutex lock;
    std::condition_variable changed; // for every change of `waiting` and `admission`
    std::deque<Waiting> waiting KESTO_GUARDED_BY(lock);
    std::vector<ThumbnailWorker*> idle KESTO_GUARDED_BY(lock);
    Admission admission KESTO_GUARDED_BY(lock);
    std::unordered_map<const ThumbnailWorker*, std::int64_t> bytesInWork KESTO_GUARDED_BY(lock);
    // Last, so that no worker outlives what it uses.
    std::vector<std::unique_ptr<ThumbnailWorker>> workers KESTO_GUARDED_BY(lock);
};

} // namespace KestoHost
