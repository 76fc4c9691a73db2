#pragma once

#include "gdiplus/scaling/Scaler.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace GdiplusBackend::Scaling {

/// A source that was averaged over blocks of whole pixels, with the region in its own coordinates.
struct ReducedSource {
    std::vector<std::byte> pixels;
    ScaleRequest request;
};

/// Averages blocks of the source where a direction shrinks by 4 or more, so that at least a factor of 2 is
/// left for the kernel. Reads only what the region and the kernel need. Nothing when no direction shrinks so
/// much.
std::optional<ReducedSource> reduceSource(const ScaleRequest& request, const PixelView& target);

} // namespace GdiplusBackend::Scaling
