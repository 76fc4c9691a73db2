#pragma once

#include "Report.h"
#include "batch/BatchCounts.h"
#include "batch/JsonLines.h"
#include "batch/ProgressText.h"

#include <KestoThumbnailer/platform/Threading.h>

#include <chrono>
#include <optional>
#include <string>

namespace KestoHost {

/// Tells how a batch goes while it goes: on standard error a line for each input, or for each failure alone
/// and a progress bar where that is a terminal; on standard output one JSON object a line, if asked to. Any
/// thread.
class BatchReporter {
public:
    /// Without a `total`, only the end will tell it.
    BatchReporter(bool json, std::optional<std::size_t> total);

    /// That an input's thumbnail gets another name than the input has; said only where the name would not be
    /// told otherwise.
    void tellNumbered(const std::string& input, const std::string& output) KESTO_EXCLUDES(lock);

    void tell(const ThumbReport& report) KESTO_EXCLUDES(lock);

    /// That a signal came, and what is waited for now.
    void tellInterruption() KESTO_EXCLUDES(lock);

    /// The last line. Nothing is told after it.
    void tellSummary(bool interrupted) KESTO_EXCLUDES(lock);

    BatchCounts counts() const KESTO_EXCLUDES(lock);

    /// The errno of the first failed write to standard output; 0 without one.
    int outputError() const { return jsonLines.error(); }

private:
    using Clock = std::chrono::steady_clock;

    void countLocked(const ThumbReport& report) KESTO_REQUIRES(lock);
    void printLocked(const std::string& line) KESTO_REQUIRES(lock);
    void drawBarLocked() KESTO_REQUIRES(lock);
    Progress progressLocked() const KESTO_REQUIRES(lock);

    const bool json;
    const bool hasBar;
    const std::optional<std::size_t> total;
    const Clock::time_point start = Clock::now();

    JsonLines jsonLines;

    mutable Mutex lock; // held while a line is written to standard error, so that each stays whole
    BatchCounts sums KESTO_GUARDED_BY(lock);
    Clock::time_point lastDrawn KESTO_GUARDED_BY(lock);
};

} // namespace KestoHost
