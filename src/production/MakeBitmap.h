#pragma once

#include "platform/Gdiplus.h"

#include <memory>

namespace KestoThumbnailer {

/// Null for a length below 1, when there is no memory for the bitmap or its pixels, and for a format that
/// nothing can be drawn into.
std::unique_ptr<Gdiplus::Bitmap> MakeBitmap(int width, int height, PixelFormat format);

} // namespace KestoThumbnailer
