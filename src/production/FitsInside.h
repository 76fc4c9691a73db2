#pragma once

#include "platform/Gdiplus.h"

namespace KestoThumbnailer {

/// Whether a bitmap needs no scaling for a box that has both bounds; never when one of them is below 1.
bool FitsInside(const Gdiplus::Bitmap& bitmap, int width, int height);

} // namespace KestoThumbnailer
