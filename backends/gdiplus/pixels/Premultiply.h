#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace GdiplusBackend {

/// `value * alpha / 255`, rounded to nearest; both from 0 to 255.
constexpr std::uint32_t scaleByAlpha(std::uint32_t value, std::uint32_t alpha) {
    // For n up to 255 * 255 + 127 the shifts equal the division n / 255.
    const std::uint32_t n = value * alpha + 127;
    return (n + 1 + (n >> 8)) >> 8;
}

/// The first and third byte of a pixel, each with room above it to calculate in.
constexpr std::uint32_t pairMask = 0x00FF00FF;

/// `scaleByAlpha` of the two bytes of `pair`.
constexpr std::uint32_t scalePairByAlpha(std::uint32_t pair, std::uint32_t alpha) {
    const std::uint32_t n = pair * alpha + 0x007F007F;
    return (n + 0x00010001 + (n >> 8 & pairMask)) >> 8 & pairMask;
}

/// The sums of the bytes of two pairs, each at most 255.
constexpr std::uint32_t addPairs(std::uint32_t one, std::uint32_t other) {
    const std::uint32_t sum = one + other;
    const std::uint32_t carry = sum & 0x01000100;
    return (sum | (carry - (carry >> 8))) & pairMask;
}

/// 255 / alpha in 65536ths, rounded down; 1 for alpha 0.
constexpr std::array<std::uint32_t, 256> inverseAlphas = [] {
    std::array<std::uint32_t, 256> inverses{65536};
    for (std::uint32_t alpha = 1; alpha < inverses.size(); ++alpha)
        inverses[alpha] = 255U * 65536U / alpha;
    return inverses;
}();

/// The colour that was premultiplied by `alpha`: rounded down, at most 255, and as it stands for alpha 0.
constexpr std::uint32_t unpremultiply(std::uint32_t value, std::uint32_t alpha) {
    return std::min<std::uint32_t>(255, value * inverseAlphas[alpha] >> 16);
}

constexpr std::uint32_t premultiplyArgb(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    const std::uint32_t greenAndOpaque = (argb >> 8 & 255) | 0x00FF0000;
    return scalePairByAlpha(greenAndOpaque, alpha) << 8 | scalePairByAlpha(argb & pairMask, alpha);
}

constexpr std::uint32_t unpremultiplyArgb(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    return alpha << 24 | unpremultiply(argb >> 16 & 255, alpha) << 16 |
           unpremultiply(argb >> 8 & 255, alpha) << 8 | unpremultiply(argb & 255, alpha);
}

} // namespace GdiplusBackend
