#pragma once

#include "platform/Gdiplus.h"

namespace KestoThumbnailer {

/// What makes a picture upright, by its orientation tag (CIPA DC-008, Orientation). `RotateNoneFlipNone` for
/// null, and without a tag of a known value.
Gdiplus::RotateFlipType ReadOrientation(Gdiplus::Bitmap* bitmap);

} // namespace KestoThumbnailer
