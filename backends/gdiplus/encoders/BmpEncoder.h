#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

namespace GdiplusBackend {

/// Writes a BMP file with a BITMAPINFOHEADER, rows bottom-up, not compressed. The kind of pixels stays:
/// indexed, 24-bit, or 32-bit BI_RGB whose fourth byte is the alpha. `GenericError` for a file over 4 GiB.
Result<void> encodeBmp(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink);

} // namespace GdiplusBackend
