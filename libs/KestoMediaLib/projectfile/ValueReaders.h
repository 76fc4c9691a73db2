#pragma once

#include "KestoMediaLib/KeyFrames.h"
#include "KestoMediaLib/PlainMedia.h"
#include "KestoMediaLib/projectfile/ReadContext.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace KestoMediaLib::ProjectReading {

/// What a number means, and which ones are good.
struct NumberRule {
    std::string_view meaning; ///< as in "expected seconds of at least 0"
    double lowest;
    double highest;
};

constexpr double longestSeconds = 10'000'000;
constexpr NumberRule secondsRule = {"seconds", 0, longestSeconds};

// Each reports what is wrong with the value, and then gives the lowest value, an empty text, false or the
// like.

double readNumber(const JsonPlace& place, const NumberRule& rule, FirstError& errors);
__int64 readWhole(const JsonPlace& place, const NumberRule& rule, FirstError& errors);
bool readFlag(const JsonPlace& place, FirstError& errors);
/// Texts are of at most a million bytes, and without the character 0.
std::string readText(const JsonPlace& place, FirstError& errors);
std::string readChoice(const JsonPlace& place, std::span<const std::string_view> choices, FirstError& errors);
/// "#rrggbb" or "#rrggbbaa".
ArgbColor readColor(const JsonPlace& place, FirstError& errors);

/// A number or a fraction like "1001/30000". Numbers are rounded to one of `parts` to the whole.
SafeRational readRational(const JsonPlace& place, const NumberRule& rule, __int64 parts, FirstError& errors);

/// Seconds, as model time.
__int64 readTime(const JsonPlace& place, FirstError& errors);

/// A path, complete with the project's folder.
std::string readPath(const JsonPlace& place, ReadContext& context);

/// A number, or an object of key frames.
KeyFramedParam readAnimated(const JsonPlace& place, const NumberRule& rule, ReadContext& context);

/// Two of these in an array, or an object of key frames whose values are pairs.
KeyFramedVector readAnimatedPair(const JsonPlace& place, const NumberRule& rule, ReadContext& context);

/// As `readAnimatedPair`; a single number, or key frames of single numbers, count for both components.
KeyFramedVector readAnimatedScale(const JsonPlace& place, const NumberRule& rule, ReadContext& context);

} // namespace KestoMediaLib::ProjectReading
