#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

namespace GdiplusBackend {

/// Writes a PNG file (ISO/IEC 15948): 8-bit RGB, 8-bit RGB with alpha, or a palette of 1, 4 or 8 bits, with
/// its alpha where it has some. The picture is compressed as a whole, so memory for its filtered and its
/// compressed bytes is taken meanwhile.
Result<void> encodePng(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink);

} // namespace GdiplusBackend
