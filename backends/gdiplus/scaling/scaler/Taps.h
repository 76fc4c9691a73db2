#pragma once

#include "gdiplus/scaling/scaler/Axis.h"

#include <cstddef>
#include <span>
#include <vector>

namespace GdiplusBackend::Scaling {

/// The source pixels that make up each target pixel of one direction, with their weights. What a kernel would
/// read beyond the picture's border is added to the weight of the pixel at the edge.
class Taps {
public:
    Taps(const Axis& axis, Kernel kernel, int sourceLength);

    int first(int targetPixel) const { return firsts[static_cast<std::size_t>(targetPixel)]; }
    std::span<const float> weights(int targetPixel) const {
        const auto pixel = static_cast<std::size_t>(targetPixel);
        return std::span(allWeights).subspan(offsets[pixel], offsets[pixel + 1] - offsets[pixel]);
    }
    /// The source pixels that any target pixel reads: from `lowest` to before `end`.
    int lowest() const { return lowestPixel; }
    int end() const { return endPixel; }

private:
    void addTargetPixel(double center, double widening, Kernel kernel, int sourceLength);

    std::vector<int> firsts;
    std::vector<std::size_t> offsets;
    std::vector<float> allWeights;
    int lowestPixel;
    int endPixel = 0;
};

} // namespace GdiplusBackend::Scaling
