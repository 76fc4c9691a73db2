#include "sheet/SheetTimes.h"

#include "Arguments.h"

#include <fmt/format.h>

#include <algorithm>

namespace KestoHost {

namespace {

/// Rounded down, and without the product of two large numbers.
ModelTime fractionOf(ModelTime duration, int numerator, int denominator) {
    return duration / denominator * numerator + duration % denominator * numerator / denominator;
}

std::vector<ModelTime> evenTimes(ModelTime duration, int count) {
    std::vector<ModelTime> times;
    times.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        times.push_back(fractionOf(duration, i, count));
    return times;
}

/// Without a tile that would be shown for less than a millisecond at the very end.
std::vector<ModelTime> timesWithStep(ModelTime duration, ModelTime step) {
    std::vector<ModelTime> times;
    for (ModelTime time = 0; millisecondsOf(time) < millisecondsOf(duration); time += step)
        times.push_back(time);
    return times;
}

/// At least one for a step, which has a tile at 0.
ModelTime tilesAsked(const TimesAsked& asked, ModelTime duration) {
    if (asked.every)
        return (duration - 1) / *asked.every + 1;
    return asked.times ? static_cast<ModelTime>(asked.times->size()) : *asked.count;
}

bool hasCueWithoutLength(const std::vector<ModelTime>& times, ModelTime duration) {
    const std::vector<Cue> cues = cuesFor(times, duration);
    return std::any_of(cues.begin(), cues.end(), [](const Cue& cue) { return cue.end <= cue.start; });
}

} // namespace

std::optional<std::vector<ModelTime>> parseTimes(const std::string& list) {
    std::vector<ModelTime> times;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        const std::optional<ModelTime> time = parseTime(list.substr(start, end - start));
        if (!time)
            return std::nullopt;
        times.push_back(*time);
        start = end + 1;
    }
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    return times;
}

std::string checkTileCount(const std::string& text) {
    const std::optional<int> count = parseTrack(text);
    if (count && *count >= 1 && *count <= mostTiles)
        return {};
    return fmt::format("expected a whole number from 1 to {}, found \"{}\"", mostTiles, text);
}

std::string checkEvery(const std::string& text) {
    const std::optional<ModelTime> step = parseTime(text);
    if (step && millisecondsOf(*step) >= 1)
        return {};
    return fmt::format("expected seconds of at least 0.001, or hh:mm:ss.mmm, found \"{}\"", text);
}

std::string checkTimes(const std::string& list) {
    if (parseTimes(list))
        return {};
    return fmt::format("expected times with commas between them, each in seconds or as hh:mm:ss.mmm, found "
                       "\"{}\"",
                       list);
}

std::optional<Failure> refusalOfTimes(const TimesAsked& asked, ModelTime duration, const std::string& input) {
    if (duration <= 0)
        return Failure{"no-duration",
                       fmt::format("\"{}\" has no duration that tiles could be taken from.", input),
                       /*withoutPicture=*/true};
    if (asked.times && asked.times->back() >= duration)
        return Failure{"after-end", fmt::format("\"{}\" ends at {}; there is no tile at {}.", input,
                                                secondsText(duration), secondsText(asked.times->back()))};
    if (tilesAsked(asked, duration) > mostTiles)
        return Failure{"sheet-too-large",
                       fmt::format("\"{}\" of {} would have {} tiles; a sheet has at most {}.", input,
                                   secondsText(duration), tilesAsked(asked, duration), mostTiles)};
    if (hasCueWithoutLength(timesFor(asked, duration), duration))
        return Failure{"too-dense",
                       fmt::format("Tiles of \"{}\", which lasts {}, would follow each other within "
                                   "a millisecond.",
                                   input, secondsText(duration))};
    return std::nullopt;
}

std::vector<ModelTime> timesFor(const TimesAsked& asked, ModelTime duration) {
    if (asked.times)
        return *asked.times;
    return asked.every ? timesWithStep(duration, *asked.every) : evenTimes(duration, *asked.count);
}

std::vector<Cue> cuesFor(const std::vector<ModelTime>& times, ModelTime duration) {
    std::vector<Cue> cues;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const ModelTime end = i + 1 < times.size() ? times[i + 1] : duration;
        cues.push_back({millisecondsOf(times[i]), millisecondsOf(end)});
    }
    return cues;
}

} // namespace KestoHost
