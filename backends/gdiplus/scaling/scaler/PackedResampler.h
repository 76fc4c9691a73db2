#pragma once

#include "gdiplus/scaling/Scaler.h"

namespace GdiplusBackend::Scaling {

/// Scales with the linear or the cubic kernel in plain C++, for any region and any size.
void resamplePacked(const ScaleRequest& request, const PixelView& target);

} // namespace GdiplusBackend::Scaling
