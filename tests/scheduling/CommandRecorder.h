#pragma once

#include "platform/Threading.h"
#include "scheduling/WorkerThreadManager.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

namespace TestSupport {

/// The kinds that a `CommandRecorder` does something for; it only records the others.
constexpr std::int32_t gateKind = 1000; ///< stays in the handler until `open`
constexpr std::int32_t lastKind = 1001; ///< wakes `waitForLast`

/// A command as it came to the handler. `number` is 0 for a payload that is no int.
struct RanCommand {
    std::int32_t kind;
    int number;
    std::uint64_t tag;

    friend bool operator==(const RanCommand&, const RanCommand&) = default;
};

/// A handler's context that records what is run, and holds and watches the worker by events. It must outlive
/// the manager.
class CommandRecorder {
public:
    static void handle(void* context, KestoThumbnailer::THUMB_THREADCMD command);

    /// Keeps the worker busy inside the handler, and returns when it is there.
    void occupy(KestoThumbnailer::IWorkerThreadManager& manager);
    /// Lets the worker out of the handler.
    void open() { opened.set(); }

    /// Returns when the worker has run all that was pushed so far.
    void drain(KestoThumbnailer::IWorkerThreadManager& manager);

    /// Pushes `pending` while the worker is busy, then lets it run them all.
    void runTogether(KestoThumbnailer::IWorkerThreadManager& manager,
                     const std::vector<KestoThumbnailer::THUMB_THREADCMD>& pending);

    /// All that was run, without what drives the worker.
    std::vector<RanCommand> ran() KESTO_EXCLUDES(lock);
    std::vector<std::int32_t> ranKinds();
    std::vector<int> ranNumbers();

    /// True when the worker is past the gate.
    bool hasLeftGate() const { return leftGate; }
    /// The thread that ran the last command.
    std::thread::id worker() KESTO_EXCLUDES(lock);
    /// Signalled by the end of a thread that has run a command.
    Event threadEnded{EventReset::Manual};

private:
    void record(const KestoThumbnailer::THUMB_THREADCMD& command) KESTO_EXCLUDES(lock);

    Event atGate{EventReset::Automatic};
    Event opened{EventReset::Automatic};
    Event lastRan{EventReset::Automatic};
    std::atomic<bool> leftGate = false; // one flag, read on its own
    Mutex lock;
    std::vector<RanCommand> commands KESTO_GUARDED_BY(lock);
    std::thread::id lastThread KESTO_GUARDED_BY(lock);
};

KestoThumbnailer::THUMB_THREADCMD command(std::int32_t kind, int number = 0, std::uint64_t tag = 0);

/// A payload that signals `gone` when its last copy is destroyed.
boost::shared_ptr<void> signalsItsEnd(Event& gone);

} // namespace TestSupport
