#pragma once

#include "platform/Threading.h"
#include "scheduling/IWorkerThreadManager.h"

#include <optional>
#include <thread>
#include <vector>

namespace KestoThumbnailer {

/// The queue under a loader. After `Start`, several threads may push while one takes.
///
/// A take costs time linear in the length of the queue, which has no limit. Any negative kind ends the
/// thread when it is taken. Requires: not destroyed on its own thread. Guarantees: once `Stop(true)` or the
/// destructor has returned, no handler runs.
class WorkerThreadManager final : public IWorkerThreadManager {
public:
    WorkerThreadManager() = default;
    ~WorkerThreadManager();
    WorkerThreadManager(const WorkerThreadManager&) = delete;
    WorkerThreadManager& operator=(const WorkerThreadManager&) = delete;

    void Start(CommandHandler commandHandler, void* context, const char* name) override
        KESTO_EXCLUDES(lifecycleLock, queueLock);
    void SetPruning(bool enabled, PruneFunction function) override;
    void PushCommand(const THUMB_THREADCMD& command) override KESTO_EXCLUDES(queueLock);
    std::uint32_t Stop(bool waitForThread) override KESTO_EXCLUDES(lifecycleLock, queueLock);
    Event* GetCommandEvent() override KESTO_EXCLUDES(queueLock);

private:
    Event& CreateCommandEvent() KESTO_EXCLUDES(queueLock);
    void Push(THUMB_THREADCMD command) KESTO_EXCLUDES(queueLock);

    void RunCommands(Event& pushed) KESTO_EXCLUDES(lifecycleLock, queueLock);
    bool RunNextCommand(Event& pushed) KESTO_EXCLUDES(lifecycleLock, queueLock);
    THUMB_THREADCMD TakeCommand(Event& pushed) KESTO_EXCLUDES(lifecycleLock, queueLock);
    THUMB_THREADCMD TakeFrontLocked() KESTO_REQUIRES(queueLock);
    void PruneLocked(THUMB_THREADCMD& taken) KESTO_REQUIRES(queueLock);
    bool FoldInto(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued) const;

    // Set before work is pushed; the queue's lock hands them over.
    bool pruneEnabled = true;
    void* handlerContext = nullptr;
    CommandHandler handler = nullptr;
    PruneFunction pruneFunction = nullptr;

    std::optional<Event> commandEvent KESTO_GUARDED_BY(queueLock); // stays from `Start` to the end
    std::thread threadHandle KESTO_GUARDED_BY(lifecycleLock);
    std::thread unawaitedThread KESTO_GUARDED_BY(lifecycleLock); // stopped, runs out by itself
    std::vector<THUMB_THREADCMD> commands KESTO_GUARDED_BY(queueLock);

    Mutex queueLock{LockRanks::workerQueue}; // held while duplicates are searched for
    // Held while the thread is awaited; never by it.
    Mutex lifecycleLock KESTO_ACQUIRED_BEFORE(queueLock){LockRanks::workerLifecycle};
};

} // namespace KestoThumbnailer
