#pragma once

#include <chrono>

namespace PageRasterLib {

/// How long one call may work on a document: 30 seconds, or what the environment variable
/// KESTO_PDF_TIME_LIMIT_MS said when the document was opened. A document that once took longer is done for
/// good, since its objects were cut off while they were read.
class TimeLimit {
public:
    TimeLimit();

    /// Starts a call. False when an earlier one took too long.
    bool begin();
    bool isPassed() const;
    /// For work that is sure to take too long, or too much memory.
    void pass() { passed = true; }

private:
    using Clock = std::chrono::steady_clock;

    std::chrono::milliseconds allowed;
    Clock::time_point end;
    mutable bool passed = false;
};

} // namespace PageRasterLib
