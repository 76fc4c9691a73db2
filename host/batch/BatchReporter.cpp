#include "BatchReporter.h"

#include "batch/Terminal.h"

#include <fmt/format.h>

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
        printLocked(fmt::format("{} goes to {}", input, output));
}

void BatchReporter::tell(const ThumbReport& report) {
    if (json)
        jsonLines.print(jsonLine(report));
    const MutexLock held(lock);
    countLocked(report);
    if (report.failure)
        printLocked("kesto-thumbnail: " + report.failure->message);
    else if (!hasBar && !json)
        printLocked(report.input + " -> " + report.output);
    if (Clock::now() - lastDrawn >= betweenDraws)
        drawBarLocked();
}

void BatchReporter::tellInterruption() {
    const MutexLock held(lock);
    printLocked(
        "kesto-thumbnail: interrupted: waiting for the pictures that are begun; once more to end now");
}

void BatchReporter::tellSummary(bool interrupted) {
    const MutexLock held(lock);
    const Progress progress = progressLocked();
    if (json)
        jsonLines.print(jsonLine(progress.counts, progress.seconds, interrupted));
    if (hasBar)
        rewriteLine("");
    if (hasBar || !json)
        std::fputs((summaryText(progress, interrupted) + '\n').c_str(), stderr);
}

BatchCounts BatchReporter::counts() const {
    const MutexLock held(lock);
    return sums;
}

void BatchReporter::countLocked(const ThumbReport& report) {
    if (!report.failure)
        ++sums.written;
    else if (report.failure->withoutPicture)
        ++sums.withoutPicture;
    else
        ++sums.failed;
}

void BatchReporter::printLocked(const std::string& line) {
    if (hasBar)
        rewriteLine("");
    std::fputs((line + '\n').c_str(), stderr);
    drawBarLocked();
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
