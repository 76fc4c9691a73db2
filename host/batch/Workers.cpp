#include "Workers.h"

#include <utility>

namespace KestoHost {

Workers::Workers(std::size_t count, std::int64_t memory, std::function<void(const ThumbReport&)> whomToTell,
                 std::function<bool()> whetherToBegin)
    : most(count)
    , told(std::move(whomToTell))
    , mayBegin(std::move(whetherToBegin))
    , admission(memory) {}

Workers::~Workers() {
    {
        const MutexLock held(lock);
        waiting.clear();
    }
    finish();
}

bool Workers::add(ThumbnailRequest request, std::int64_t bytes) {
    MutexLock held(lock);
    while (waiting.size() >= most && mayBegin())
        changed.wait(held.native());
    if (!mayBegin())
        return false;
    waiting.push_back({std::move(request), bytes});
    beginWhatFitsLocked();
    return true;
}

void Workers::finish() {
    MutexLock held(lock);
    while (!waiting.empty() || admission.running() != 0)
        changed.wait(held.native());
}

void Workers::beginWhatFitsLocked() {
    while (nextFitsLocked()) {
        ThumbnailWorker* const worker = idleWorkerLocked();
        if (!worker)
            return;
        Waiting next = std::move(waiting.front());
        waiting.pop_front();
        admission.begin(next.bytes);
        bytesInWork[worker] = next.bytes;
        worker->begin(std::move(next.request)); // its end waits for the lock
    }
}

bool Workers::nextFitsLocked() {
    if (!mayBegin())
        waiting.clear();
    return !waiting.empty() && admission.admits(waiting.front().bytes);
}

void Workers::onFinished(ThumbnailWorker& worker, const ThumbReport& report) {
    told(report);
    const MutexLock held(lock);
    admission.end(bytesInWork[&worker]);
    idle.push_back(&worker);
    beginWhatFitsLocked();
    changed.notify_all();
}

ThumbnailWorker* Workers::idleWorkerLocked() {
    if (!idle.empty()) {
        ThumbnailWorker* const worker = idle.back();
        idle.pop_back();
        return worker;
    }
    if (workers.size() == most)
        return nullptr;
    workers.push_back(std::make_unique<ThumbnailWorker>(
        [this](ThumbnailWorker& worker, const ThumbReport& report) { onFinished(worker, report); }));
    return workers.back().get();
}

} // namespace KestoHost
