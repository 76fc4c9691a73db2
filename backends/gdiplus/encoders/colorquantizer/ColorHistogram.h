#pragma once

#include "gdiplus/pixels/PixelView.h"

#include <array>
#include <cstddef>
#include <vector>

namespace GdiplusBackend {

/// Pixels of nearly the same colour, with the exact mean of their channels.
struct ColorBin {
    double count = 0;
    std::array<double, 3> sums{}; ///< red, green, blue, over all pixels

    void add(const ColorBin& part) {
        count += part.count;
        for (std::size_t channel = 0; channel < sums.size(); ++channel)
            sums[channel] += part.sums[channel];
    }
    double mean(std::size_t channel) const { return sums[channel] / count; }
};

struct ColorHistogram {
    std::vector<ColorBin> bins; ///< none is empty
    bool hasClearPixels = false;
};

/// Counts the opaque pixels, into bins as fine as keep their number at 4,096 or below: of one colour each in
/// a picture of few colours, else of cubes of colours whose sides are a power of two.
ColorHistogram countColors(const ConstPixelView& picture);

} // namespace GdiplusBackend
