#pragma once

#include <cstddef>
#include <span>

namespace GdiplusBackend {

/// The colour whose product with `alpha` is nearest to `premultiplied`; 0 where nothing is left to tell.
constexpr unsigned straightColour(unsigned premultiplied, unsigned alpha) {
    if (alpha == 0)
        return 0;
    return premultiplied >= alpha ? 255U : (premultiplied * 255U + alpha / 2U) / alpha;
}

/// Divides B, G and R of each pixel by its A.
inline void unpremultiply(std::span<std::byte> bgra) {
    for (std::size_t pixel = 0; pixel + 4 <= bgra.size(); pixel += 4) {
        const auto alpha = std::to_integer<unsigned>(bgra[pixel + 3]);
        if (alpha == 255)
            continue;
        for (std::size_t channel = pixel; channel < pixel + 3; ++channel)
            bgra[channel] =
                static_cast<std::byte>(straightColour(std::to_integer<unsigned>(bgra[channel]), alpha));
    }
}

} // namespace GdiplusBackend
