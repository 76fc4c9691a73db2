#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace KestoRenderLib {

/// A thread of its own that runs commands one at a time, oldest first.
///
/// Any thread may push and wait, a command may push. Nothing that a command or one of the thread's own
/// functions throws is caught: it ends the process. Requires: not destroyed by one of its commands, nor while
/// another thread is in a call. Guarantees: once the destructor has returned, nothing runs.
class KESTO_EXPORT CommandQueueThread {
public:
    /// The `limit` of a push that never waits.
    static constexpr std::size_t noLimit = static_cast<std::size_t>(-1);

    /// `name` is for diagnostics; the system keeps its first 15 bytes, and an empty one leaves the thread
    /// with its maker's. `threadStarted` and `threadEnding` run on the thread, before the first command and
    /// after the last; either may be empty. With `startAtOnce` the thread starts here, else with the first
    /// push. Throws std::system_error when the system has no thread to give.
    CommandQueueThread(const std::string& name, std::function<void()> threadStarted,
                       std::function<void()> threadEnding, bool startAtOnce);

    /// Drops the commands that have not begun, and waits for the one that runs. To have them all run, wait
    /// for them first.
    ~CommandQueueThread();
    CommandQueueThread(const CommandQueueThread&) = delete;
    CommandQueueThread& operator=(const CommandQueueThread&) = delete;

    /// Appends a copy. While `limit` or more commands have not begun, it waits, so that none is lost; 0
    /// counts as 1. A command that pushes never waits, as it would wait for itself. Throws
    /// std::invalid_argument for an empty command, std::system_error when the thread can't be started; then
    /// nothing is queued.
    void pushCommand(const std::function<void()>& command, std::size_t limit);

    /// Returns when no command is queued and none runs; what they held is then destroyed, too. Throws
    /// KestoRenderLibException when a command calls it, which would wait for itself.
    void waitUntilAllCommandsAreFinished();

private:
    class Queue;

    const std::unique_ptr<Queue> queue;
};

} // namespace KestoRenderLib
