#pragma once

#include <algorithm>
#include <cstdint>

namespace GdiplusBackend {

/// `value * alpha / 255`, rounded to nearest; both from 0 to 255.
constexpr std::uint32_t scaleByAlpha(std::uint32_t value, std::uint32_t alpha) {
    // For n up to 255 * 255 + 127 the shifts equal the division n / 255.
    const std::uint32_t n = value * alpha + 127;
    return (n + 1 + (n >> 8)) >> 8;
}

/// The colour that was premultiplied by `alpha`: rounded down, at most 255, and as it stands for alpha 0.
constexpr std::uint32_t unpremultiply(std::uint32_t value, std::uint32_t alpha) {
    return alpha == 0 ? value : std::min<std::uint32_t>(255, value * (255U * 65536U / alpha) >> 16);
}

constexpr std::uint32_t premultiplyArgb(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    return alpha << 24 | scaleByAlpha(argb >> 16 & 255, alpha) << 16 |
           scaleByAlpha(argb >> 8 & 255, alpha) << 8 | scaleByAlpha(argb & 255, alpha);
}

constexpr std::uint32_t unpremultiplyArgb(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    return alpha << 24 | unpremultiply(argb >> 16 & 255, alpha) << 16 |
           unpremultiply(argb >> 8 & 255, alpha) << 8 | unpremultiply(argb & 255, alpha);
}

} // namespace GdiplusBackend
