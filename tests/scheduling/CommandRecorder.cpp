#include "scheduling/CommandRecorder.h"

#include <algorithm>
#include <iterator>

namespace TestSupport {

using KestoThumbnailer::IWorkerThreadManager;
using KestoThumbnailer::THUMB_THREADCMD;

namespace {

/// Dies with the thread that made it.
struct ThreadEnd {
    Event& ended;
    ~ThreadEnd() { ended.set(); }
};

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): a handler owns its command
void CommandRecorder::handle(void* context, THUMB_THREADCMD command) {
    auto& recorder = *static_cast<CommandRecorder*>(context);
    const thread_local ThreadEnd end{recorder.threadEnded};
    if (command.kind == gateKind) {
        recorder.atGate.set();
        recorder.opened.wait();
        recorder.leftGate = true;
    } else if (command.kind == lastKind) {
        recorder.lastRan.set();
    } else {
        recorder.record(command);
    }
}

void CommandRecorder::occupy(IWorkerThreadManager& manager) {
    manager.PushCommand(command(gateKind));
    atGate.wait();
}

void CommandRecorder::drain(IWorkerThreadManager& manager) {
    manager.PushCommand(command(lastKind));
    lastRan.wait();
}

void CommandRecorder::runTogether(IWorkerThreadManager& manager,
                                  const std::vector<THUMB_THREADCMD>& pending) {
    occupy(manager);
    for (const auto& next : pending)
        manager.PushCommand(next);
    open();
    drain(manager);
}

std::vector<RanCommand> CommandRecorder::ran() {
    const MutexLock held(lock);
    return commands;
}

std::vector<std::int32_t> CommandRecorder::ranKinds() {
    std::vector<std::int32_t> kinds;
    std::ranges::transform(ran(), std::back_inserter(kinds), &RanCommand::kind);
    return kinds;
}

std::vector<int> CommandRecorder::ranNumbers() {
    std::vector<int> numbers;
    std::ranges::transform(ran(), std::back_inserter(numbers), &RanCommand::number);
    return numbers;
}

std::thread::id CommandRecorder::worker() {
    const MutexLock held(lock);
    return lastThread;
}

void CommandRecorder::record(const THUMB_THREADCMD& command) {
    const int* number = boost::any_cast<int>(&command.data);
    const MutexLock held(lock);
    commands.push_back({command.kind, number ? *number : 0, command.tag});
    lastThread = std::this_thread::get_id();
}

THUMB_THREADCMD command(std::int32_t kind, int number, std::uint64_t tag) {
    return {kind, number, tag};
}

boost::shared_ptr<void> signalsItsEnd(Event& gone) {
    return {static_cast<void*>(nullptr), [&gone](void*) { gone.set(); }};
}

} // namespace TestSupport
