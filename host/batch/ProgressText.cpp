#include "ProgressText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace KestoHost {

namespace {

constexpr std::size_t shortestBar = 5;

std::string clockText(double seconds) {
    const auto whole = static_cast<std::int64_t>(std::min(seconds, 1e9));
    if (whole < 3600)
        return fmt::format("{}:{:02}", whole / 60, whole % 60);
    return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string rateText(double rate) {
    return rate >= 10 ? fmt::format("{:.0f}/s", rate) : fmt::format("{:.1f}/s", rate);
}

std::string lossText(const BatchCounts& counts) {
    return counts.notWritten() == 0 ? "" : fmt::format("  {} not written", counts.notWritten());
}

std::string barText(double share, std::size_t length) {
    const auto full = static_cast<std::size_t>(share * static_cast<double>(length));
    return '[' + std::string(full, '#') + std::string(length - full, '.') + ']';
}

std::string withTotal(const Progress& progress, std::size_t total, std::size_t columns) {
    const std::size_t done = progress.counts.all();
    const double share = total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(total);
    const double rate = rateOf(progress);
    const std::string count = fmt::format("{}/{} ", done, total);
    std::string rest = fmt::format(" {:3.0f}%", std::floor(share * 100));
    if (rate > 0)
        rest += fmt::format("  {}  {} left", rateText(rate),
                            clockText(std::ceil(static_cast<double>(total - done) / rate)));
    rest += lossText(progress.counts);
    const std::size_t taken = count.size() + rest.size() + 2; // the bar's brackets
    if (taken + shortestBar > columns)
        return count + rest;
    return count + barText(share, columns - taken) + rest;
}

std::string withoutTotal(const Progress& progress) {
    return fmt::format("{} done  {}  {}{}", progress.counts.all(), rateText(rateOf(progress)),
                       clockText(progress.seconds), lossText(progress.counts));
}

} // namespace

double rateOf(const Progress& progress) {
    return progress.seconds > 0 ? static_cast<double>(progress.counts.all()) / progress.seconds : 0;
}

std::string progressText(const Progress& progress, std::size_t columns) {
    const std::string text =
        progress.total ? withTotal(progress, *progress.total, columns) : withoutTotal(progress);
    return text.substr(0, columns);
}

} // namespace KestoHost
