#pragma once

#include "batch/BatchCounts.h"

#include <cstddef>
#include <optional>
#include <string>

namespace KestoHost {

/// How far a batch is.
struct Progress {
    BatchCounts counts;
    std::optional<std::size_t> total; ///< none when only the end will tell
    double seconds = 0;               ///< since the start
};

/// Inputs a second; 0 at the start.
double rateOf(const Progress& progress);

/// One line of ASCII, at most `columns` long: with a total a bar and the time left, else the time gone. What
/// does not fit is left out, the bar first.
std::string progressText(const Progress& progress, std::size_t columns);

} // namespace KestoHost
