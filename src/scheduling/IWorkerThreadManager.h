#pragma once

#include "scheduling/THUMB_THREADCMD.h"

#include <cstdint>

class Event;

namespace KestoThumbnailer {

/// Runs one command, which it owns. On the worker, where an exception ends the process. No lock is held: it
/// may push, but neither stop nor destroy the manager.
using CommandHandler = void (*)(void* context, THUMB_THREADCMD command);

/// True when `queued` need not run since `taken`, which this may change, stands for both. On the worker, with
/// the queue locked: it must not call the manager.
using PruneFunction = bool (*)(THUMB_THREADCMD& taken, THUMB_THREADCMD& queued);

/// A queue of commands and the one thread that runs them, one at a time, oldest first. Held by a
/// `boost::shared_ptr` that was made with the concrete class, since no destructor is virtual.
class IWorkerThreadManager {
public:
    /// Starts the thread; once for a manager. A null `handler` drops every command. `name` is for
    /// diagnostics. Throws std::system_error when the system has no thread to give.
    virtual void Start(CommandHandler handler, void* context, const char* name) = 0;

    /// Whether a command that is taken stands for its duplicates behind it, which never run then. Without a
    /// function those of its kind are its duplicates, and it gets the `data` of the last one. Not to be
    /// called once commands have been pushed.
    virtual void SetPruning(bool enabled, PruneFunction function) = 0;

    /// Appends a copy; from any thread. Before `Start` it waits for the thread, after `Stop` it never runs.
    /// Throws KestoRenderLib::KestoRenderLibException for the kinds 0 and -1, and queues nothing.
    virtual void PushCommand(const THUMB_THREADCMD& command) = 0;

    /// Drops what is pending and ends the thread after the command that it runs now, if any; `waitForThread`
    /// returns after that. Returns 0. Not from a handler.
    virtual std::uint32_t Stop(bool waitForThread) = 0;

    /// What every push signals; the manager's own. Null before `Start`.
    virtual Event* GetCommandEvent() = 0;

protected:
    ~IWorkerThreadManager() = default;
};

} // namespace KestoThumbnailer
