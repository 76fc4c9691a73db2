#include "video/ModelTime.h"

#include "Arguments.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace KestoHost {

namespace {

using KestoMediaLib::modelTimePerSecond;

constexpr ModelTime modelTimePerMillisecond = modelTimePerSecond / 1000;

std::vector<std::string> partsOf(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator)
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

bool isDigits(const std::string& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// Digits with at most one point among them; no sign, no exponent.
bool isPlainDecimal(const std::string& text) {
    std::string digits = text;
    if (const std::size_t point = digits.find('.'); point != std::string::npos)
        digits.erase(point, 1);
    return isDigits(digits);
}

std::optional<double> secondsOfClock(const std::vector<std::string>& parts) {
    constexpr double sixty = 60;
    if (parts.size() > 3 || !isPlainDecimal(parts.back()))
        return std::nullopt;
    double total = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i + 1 < parts.size() && !isDigits(parts[i]))
            return std::nullopt;
        const std::optional<double> part = parseSeconds(parts[i]);
        if (!part || (i > 0 && *part >= sixty))
            return std::nullopt;
        total = total * sixty + *part;
    }
    return total;
}

} // namespace

ModelTime modelTimeOf(double seconds) {
    // Apart, since the product of a long time would not have a double's digits left for its fraction.
    const double whole = std::floor(seconds);
    return static_cast<ModelTime>(whole) * modelTimePerSecond +
           std::llround((seconds - whole) * static_cast<double>(modelTimePerSecond));
}

double secondsOf(ModelTime time) {
    return static_cast<double>(time) / static_cast<double>(modelTimePerSecond);
}

std::optional<ModelTime> parseTime(const std::string& text) {
    const std::vector<std::string> parts = partsOf(text, ':');
    const std::optional<double> seconds = parts.size() == 1 ? parseSeconds(text) : secondsOfClock(parts);
    if (!seconds || *seconds > longestSeconds)
        return std::nullopt;
    return modelTimeOf(*seconds);
}

long long millisecondsOf(ModelTime time) {
    return (time + modelTimePerMillisecond / 2) / modelTimePerMillisecond;
}

std::string clockText(long long milliseconds) {
    const long long seconds = milliseconds / 1000;
    return fmt::format("{:02}:{:02}:{:02}.{:03}", seconds / 3600, seconds / 60 % 60, seconds % 60,
                       milliseconds % 1000);
}

std::string secondsText(ModelTime time) {
    return fmt::format("{} s", std::round(secondsOf(time) * 1e6) / 1e6);
}

} // namespace KestoHost
