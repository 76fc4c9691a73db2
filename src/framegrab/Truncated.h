#pragma once

#include <cmath>
#include <limits>

namespace KestoThumbnailer {

/// Cut toward zero. Beyond the range of `Integer` its end; 0 for what is no number.
template <class Integer>
Integer Truncated(double value) {
    using Range = std::numeric_limits<Integer>;
    if (std::isnan(value))
        return 0;
    // The largest 64-bit value has no double of its own; the one that stands for it is out of range.
    if (value >= static_cast<double>(Range::max()))
        return Range::max();
    if (value <= static_cast<double>(Range::min()))
        return Range::min();
    return static_cast<Integer>(value);
}

} // namespace KestoThumbnailer
