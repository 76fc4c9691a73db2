#pragma once

#include "gdiplus/scaling/scaler/PlaneRows.h"

namespace GdiplusBackend::Scaling {

/// As many pixels as fill whole vectors, and gives their number; 0 on processors without SSE2.
int splitPixelsSse2(const std::byte* pixels, int count, const PlaneRow& planes);
int joinPixelsSse2(const PlaneRow& planes, int count, std::byte* pixels);

} // namespace GdiplusBackend::Scaling
