#pragma once

#include "Report.h"
#include "video/ModelTime.h"

#include <optional>
#include <string>
#include <vector>

namespace KestoHost {

/// When tiles are taken: one of the three is set.
struct TimesAsked {
    std::optional<int> count = {};                    ///< evenly: tile i at duration * i / count
    std::optional<ModelTime> every = {};              ///< 0, then this much later each
    std::optional<std::vector<ModelTime>> times = {}; ///< in ascending order, each once
};

/// The most tiles of one sheet.
constexpr int mostTiles = 10'000;

/// Reads "0,2.5,1:10" into ascending times, each once. Nothing for any other text.
std::optional<std::vector<ModelTime>> parseTimes(const std::string& list);

/// What is wrong with the value of an option, as CLI11 wants it: empty when nothing is.
std::string checkTileCount(const std::string& text);
std::string checkEvery(const std::string& text);
std::string checkTimes(const std::string& list);

/// Why media of that duration has no such tiles; `input` is its name.
std::optional<Failure> refusalOfTimes(const TimesAsked& asked, ModelTime duration, const std::string& input);

/// In ascending order, each before `duration`. Requires: `refusalOfTimes` has nothing against it.
std::vector<ModelTime> timesFor(const TimesAsked& asked, ModelTime duration);

/// When a tile is the one to show, in milliseconds.
struct Cue {
    long long start = 0;
    long long end = 0;

    friend bool operator==(const Cue&, const Cue&) = default;
};

/// One for each of `times`, up to the next of them, the last one up to the end of the media.
std::vector<Cue> cuesFor(const std::vector<ModelTime>& times, ModelTime duration);

} // namespace KestoHost
