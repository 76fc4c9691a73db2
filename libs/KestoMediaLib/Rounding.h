#pragma once

#include "platform/WinTypes.h"

#include <algorithm>
#include <limits>

namespace KestoMediaLib {

// NOLINTNEXTLINE(bugprone-reserved-identifier): the compiler's name
using Wide = __int128;

/// `numerator / denominator` as the nearest whole number, halves away from 0; what does not fit is the
/// nearest that does. `denominator` is above 0, and neither lies beyond 2 to the power of 126.
inline __int64 nearestInteger(Wide numerator, Wide denominator) {
    const Wide half = denominator / 2;
    const Wide rounded = (numerator < 0 ? numerator - half : numerator + half) / denominator;
    constexpr Wide lowest = std::numeric_limits<__int64>::min();
    constexpr Wide highest = std::numeric_limits<__int64>::max();
    return static_cast<__int64>(std::clamp(rounded, lowest, highest));
}

} // namespace KestoMediaLib
