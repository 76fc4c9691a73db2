#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

namespace GdiplusBackend {

/// Writes a baseline JFIF file (ITU-T T.81 and T.871) with 4:2:0 chroma. `jpegQuality` scales the standard's
/// tables; outside of 0 to 100 it counts as the nearer of them. Alpha is dropped, so transparent pixels show
/// their colours. A picture whose palette is gray becomes one of a single component. `GenericError` for sides
/// over 65,500 pixels.
Result<void> encodeJpeg(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink);

} // namespace GdiplusBackend
