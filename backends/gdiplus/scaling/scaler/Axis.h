#pragma once

#include "gdiplus/scaling/Scaler.h"

#include <algorithm>
#include <cmath>

namespace GdiplusBackend::Scaling {

/// One direction of a mapping: `length` source pixels from `start` on become `target` pixels. Target pixel t
/// samples around start + (t + 0.5) * step().
struct Axis {
    double start = 0;
    double length = 0;
    int target = 0;

    double step() const { return length / target; }
    /// Every target pixel is one source pixel.
    bool isCopy() const { return length == target && start == std::floor(start); }
};

/// Half the width of the kernel, in source pixels when enlarging, in target pixels when shrinking.
constexpr int kernelRadius(Kernel kernel) {
    switch (kernel) {
    case Kernel::Nearest:
        return 0;
    case Kernel::Linear:
        return 1;
    case Kernel::Cubic:
        return 2;
    }
    return 0;
}

/// How many source pixels beyond the region a kernel reads at most.
inline int kernelReach(Kernel kernel, const Axis& axis) {
    if (axis.isCopy())
        return 0;
    return static_cast<int>(std::ceil(kernelRadius(kernel) * std::max(axis.step(), 1.0))) + 1;
}

inline Axis horizontalAxis(const ScaleRequest& request, const PixelView& target) {
    return {request.region.x, request.region.width, target.width};
}

inline Axis verticalAxis(const ScaleRequest& request, const PixelView& target) {
    return {request.region.y, request.region.height, target.height};
}

} // namespace GdiplusBackend::Scaling
