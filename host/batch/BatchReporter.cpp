#include "BatchReporter.h"

#include "batch/Terminal.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>

namespace KestoHost {

namespace {

constexpr std::chrono::milliseconds betweenDraws(100);

std::string summaryText(const Progress& progress, bool interrupted) {
    return fmt::format("kesto-thumbnail: {}{} written, {} without picture, {} failed; {:.1f} s, {:.1f}/s",
                       interrupted ? "interrupted: " : "", progress.counts.written,
                       progress.counts.withoutPicture, progress.counts.failed, progress.seconds,
                       rateOf(progress));
}

} // namespace

// A bar would be torn by the objects where both go to a terminal.
BatchReporter::BatchReporter(bool asJson, std::optional<std::size_t> expected)
    : json(asJson)
    , hasBar(canRewriteLines() && !(asJson && isOutputATerminal()))
    , total(expected) {
    const MutexLock held(lock);
    drawBarLocked();
}

void BatchReporter::tellNumbered(const std::string& input, const std::string& output) {
    const MutexLock held(lock);
    if (hasBar)
        printForPeopleLocked(fmt::format("{} goes to {}", input, output));
}

void BatchReporter::tell(const ThumbReport& report) {
    const MutexLock held(lock);
    countLocked(report);
    if (json)
        printForMachinesLocked(jsonLine(report));
    if (report.failure)
        printForPeopleLocked("kesto-thumbnail: " + report.failure->message);
    else if (!hasBar && !json)
        printForPeopleLocked(report.input + " -> " + report.output);
    if (Clock::now() - lastDrawn >= betweenDraws)
        drawBarLocked();
}

void BatchReporter::tellSummary(bool interrupted) {
    const MutexLock held(lock);
    if (hasBar)
        rewriteLine("");
    if (json)
        printForMachinesLocked(jsonLine(sums, progressLocked().seconds, interrupted));
    if (hasBar || !json)
        std::fputs((summaryText(progressLocked(), interrupted) + '\n').c_str(), stderr);
}

BatchCounts BatchReporter::counts() const {
    const MutexLock held(lock);
    return sums;
}

int BatchReporter::outputError() const {
    const MutexLock held(lock);
    return firstOutputError;
}

void BatchReporter::countLocked(const ThumbReport& report) {
    if (!report.failure)
        ++sums.written;
    else if (report.failure->withoutPicture)
        ++sums.withoutPicture;
    else
        ++sums.failed;
}

void BatchReporter::printForPeopleLocked(const std::string& line) {
    if (hasBar)
        rewriteLine("");
    std::fputs((line + '\n').c_str(), stderr);
    drawBarLocked();
}

/// Written through, so that the reader of a pipe sees each input when it is done.
void BatchReporter::printForMachinesLocked(const std::string& line) {
    if (firstOutputError != 0)
        return;
    errno = 0;
    std::fputs((line + '\n').c_str(), stdout);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        firstOutputError = errno != 0 ? errno : EIO;
}

void BatchReporter::drawBarLocked() {
    if (!hasBar)
        return;
    rewriteLine(progressText(progressLocked(), lineLength()));
    lastDrawn = Clock::now();
}

Progress BatchReporter::progressLocked() const {
    const std::chrono::duration<double> gone = Clock::now() - start;
    return {.counts = sums, .total = total, .seconds = gone.count()};
}

} // namespace KestoHost
