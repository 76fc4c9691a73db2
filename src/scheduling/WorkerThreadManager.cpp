#include "scheduling/WorkerThreadManager.h"

#include "platform/KestoRenderLib.h"

#include <cassert>
#include <utility>

namespace KestoThumbnailer {

namespace {

constexpr std::int32_t noCommand = 0;
constexpr std::int32_t exitCommand = -1;
constexpr std::uint32_t threadEnded = 0;

} // namespace

WorkerThreadManager::~WorkerThreadManager() {
    Stop(true);
    {
        const MutexLock held(lifecycleLock);
        if (unawaitedThread.joinable())
            unawaitedThread.join(); // it still reads the queue
    }
    commandEvent.reset();
}

void WorkerThreadManager::Start(CommandHandler commandHandler, void* context, const char* /*name*/) {
    const MutexLock held(lifecycleLock);
    handler = commandHandler;
    handlerContext = context;
    Event& pushed = CreateCommandEvent();
    threadHandle = std::thread([this, &pushed] { RunCommands(pushed); });
}

void WorkerThreadManager::SetPruning(bool enabled, PruneFunction function) {
    pruneEnabled = enabled;
    pruneFunction = function;
}

void WorkerThreadManager::PushCommand(const THUMB_THREADCMD& command) {
    if (command.kind == noCommand || command.kind == exitCommand)
        throw KestoRenderLib::KestoRenderLibException(
            "Invalid command type pushed into worker thread manager");
    Push(command);
}

std::uint32_t WorkerThreadManager::Stop(bool waitForThread) {
    const MutexLock held(lifecycleLock);
    if (!threadHandle.joinable())
        return threadEnded;
    Push({exitCommand, {}, 0});
    if (waitForThread)
        threadHandle.join();
    else
        unawaitedThread = std::move(threadHandle);
    return threadEnded;
}

Event* WorkerThreadManager::GetCommandEvent() {
    const MutexLock held(queueLock);
    return commandEvent ? &*commandEvent : nullptr;
}

Event& WorkerThreadManager::CreateCommandEvent() {
    const MutexLock held(queueLock);
    assert(!commandEvent);
    return commandEvent.emplace(EventReset::Automatic);
}

void WorkerThreadManager::Push(THUMB_THREADCMD command) {
    const MutexLock held(queueLock);
    if (command.kind == exitCommand)
        commands.clear();
    commands.push_back(std::move(command));
    if (commandEvent)
        commandEvent->set();
}

void WorkerThreadManager::RunCommands(Event& pushed) {
    while (RunNextCommand(pushed)) {
    }
}

/// False when the thread is to end.
bool WorkerThreadManager::RunNextCommand(Event& pushed) {
    THUMB_THREADCMD command = TakeCommand(pushed);
    if (command.kind < 0)
        return false; // Deliberate: any negative kind ends the thread, and not the exit command alone.
    if (handler)
        handler(handlerContext, std::move(command));
    return true;
}

THUMB_THREADCMD WorkerThreadManager::TakeCommand(Event& pushed) {
    while (true) {
        {
            const MutexLock held(queueLock);
            if (!commands.empty())
                return TakeFrontLocked();
        }
        pushed.wait(); // one signal may stand for several commands, or for one that is gone
    }
}

THUMB_THREADCMD WorkerThreadManager::TakeFrontLocked() {
    THUMB_THREADCMD taken = std::move(commands.front());
    commands.erase(commands.begin());
    if (pruneEnabled)
        PruneLocked(taken);
    return taken;
}

void WorkerThreadManager::PruneLocked(THUMB_THREADCMD& taken) {
    auto kept = commands.begin();
    for (auto queued = commands.begin(); queued != commands.end(); ++queued) {
        if (FoldInto(taken, *queued))
            continue;
        if (kept != queued)
            *kept = std::move(*queued);
        ++kept;
    }
    commands.erase(kept, commands.end());
}

/// True when `queued` need not run any more.
bool WorkerThreadManager::FoldInto(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued) const {
    if (pruneFunction)
        return pruneFunction(taken, queued);
    if (queued.kind != taken.kind)
        return false;
    taken.data = std::move(queued.data);
    return true;
}

} // namespace KestoThumbnailer
