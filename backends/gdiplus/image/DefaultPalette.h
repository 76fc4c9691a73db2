#pragma once

#include "platform/GdiplusTypes.h"

#include <vector>

namespace GdiplusBackend {

/// The palette of a new bitmap: black and white, the 16 colours of the first colour displays, or those
/// followed by 24 transparent entries and the 216 colours of a 6 by 6 by 6 cube. Empty for a format without
/// palette.
std::vector<Gdiplus::ARGB> defaultPalette(Gdiplus::PixelFormat format);

} // namespace GdiplusBackend
