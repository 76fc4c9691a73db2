#include "Workers.h"

#include <utility>

namespace KestoHost {

Workers::Workers(std::size_t count, std::function<void(const ThumbReport&)> whomToTell,
                 std::function<bool()> whetherToBegin)
    : most(count)
    , told(std::move(whomToTell))
    , mayBegin(std::move(whetherToBegin)) {}

Workers::~Workers() {
    {
        const MutexLock held(lock);
        waiting.clear();
    }
    finish();
}

bool Workers::add(ThumbnailRequest request) {
    MutexLock held(lock);
    while (waiting.size() >= most && mayBegin())
        changed.wait(held.native());
    if (!mayBegin())
        return false;
    waiting.push_back(std::move(request));
    beginNextLocked();
    return true;
}

void Workers::finish() {
    MutexLock held(lock);
    while (!waiting.empty() || running != 0)
        changed.wait(held.native());
}

void Workers::beginNextLocked() {
    ThumbnailWorker* const worker = idleWorkerLocked();
    if (!worker)
        return;
    if (auto next = takeLocked()) {
        worker->begin(std::move(*next)); // its end waits for the lock
        ++running;
    } else {
        idle.push_back(worker);
    }
}

void Workers::onFinished(ThumbnailWorker& worker, const ThumbReport& report) {
    told(report);
    const MutexLock held(lock);
    if (auto next = takeLocked()) {
        worker.begin(std::move(*next));
    } else {
        idle.push_back(&worker);
        --running;
    }
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

std::optional<ThumbnailRequest> Workers::takeLocked() {
    if (!mayBegin())
        waiting.clear();
    if (waiting.empty())
        return std::nullopt;
    ThumbnailRequest next = std::move(waiting.front());
    waiting.pop_front();
    return next;
}

} // namespace KestoHost
