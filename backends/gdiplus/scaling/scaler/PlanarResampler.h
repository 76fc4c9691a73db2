#pragma once

#include "gdiplus/scaling/Scaler.h"

namespace GdiplusBackend::Scaling {

/// Whether `resamplePlanar` can do it: the region and the target are wider and higher than the kernel.
bool canResamplePlanar(const ScaleRequest& request, const PixelView& target);

/// Scales with the linear or the cubic kernel through zimg, plane by plane. Rows are split into planes and
/// joined again as they are needed.
Result<void> resamplePlanar(const ScaleRequest& request, const PixelView& target);

} // namespace GdiplusBackend::Scaling
