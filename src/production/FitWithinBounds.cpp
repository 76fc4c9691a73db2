#include "production/FitWithinBounds.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace KestoThumbnailer {

namespace {

std::int32_t WrappingProduct(int a, int b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/// The whole part, held at the ends of the range; 0 for what is no number.
int ToLength(double value) {
    constexpr double longest = std::numeric_limits<int>::max();
    return value > 0 ? static_cast<int>(std::min(value, longest)) : 0;
}

int TruncatedShare(int length, int other, int bound) {
    return ToLength(static_cast<float>(length) / static_cast<float>(other) * static_cast<float>(bound));
}

int RoundedShare(int bound, int length, int other) {
    return ToLength(std::round(static_cast<double>(bound) * length / other));
}

} // namespace

void FitWithinBounds(int& width, int& height, int maxWidth, int maxHeight) {
    if (width <= maxWidth && height <= maxHeight)
        return;
    if ((maxWidth == 0 && maxHeight == 0) || maxWidth < 0 || maxHeight < 0)
        return;

    // Deliberate: one bound truncates in single precision, two bounds round in double precision, and the
    // products that choose between two wrap in 32 bits, so that very large sizes may be fitted to the other.
    if (maxWidth == 0) {
        if (height > maxHeight) {
            width = TruncatedShare(width, height, maxHeight);
            height = maxHeight;
        }
    } else if (maxHeight == 0) {
        if (width > maxWidth) {
            height = TruncatedShare(height, width, maxWidth);
            width = maxWidth;
        }
    } else if (WrappingProduct(width, maxHeight) > WrappingProduct(height, maxWidth)) {
        height = RoundedShare(maxWidth, height, width);
        width = maxWidth;
    } else {
        width = RoundedShare(maxHeight, width, height);
        height = maxHeight;
    }
    width = std::max(width, 1);
    height = std::max(height, 1);
}

} // namespace KestoThumbnailer
