#pragma once

#include <KestoThumbnailer/platform/KestoMediaTime.h>

#include <optional>
#include <string>

namespace KestoHost {

/// A moment or a length, in whole numbers of `KestoMediaLib::modelTimePerSecond`. The moments of the usual
/// frame rates are exact in it.
using ModelTime = __int64;

/// The longest time that a user may name, in seconds: some thirty years, far within the range of model time.
constexpr double longestSeconds = 1e9;

/// The nearest one, so that what was typed with enough digits for a frame's start is that start. Requires 0
/// to `longestSeconds`.
ModelTime modelTimeOf(double seconds);
double secondsOf(ModelTime time);

/// Reads seconds, "mm:ss" or "hh:mm:ss", the seconds with or without a fraction: "75.5", "1:15.5". Nothing
/// for any other text, minutes or seconds of 60 and more after a colon, and what is longer than
/// `longestSeconds`.
std::optional<ModelTime> parseTime(const std::string& text);

/// In whole milliseconds, the nearest: what WebVTT can tell.
long long millisecondsOf(ModelTime time);
/// "hh:mm:ss.mmm" of milliseconds of at least 0, with as many digits of hours as it takes.
std::string clockText(long long milliseconds);

/// "12.5 s": as few digits as say it to the microsecond.
std::string secondsText(ModelTime time);

} // namespace KestoHost
