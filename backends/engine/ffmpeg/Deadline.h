#pragma once

#include <chrono>

namespace EngineBackend {

/// How long one call may work on a file: 30 seconds, or what the environment variable
/// KESTO_VIDEO_TIME_LIMIT_MS said when the file was opened.
class Deadline {
public:
    Deadline();

    /// Starts a call.
    void begin() { end = Clock::now() + allowed; }
    bool isPassed() const { return Clock::now() >= end; }

private:
    using Clock = std::chrono::steady_clock;

    std::chrono::milliseconds allowed;
    Clock::time_point end;
};

} // namespace EngineBackend
