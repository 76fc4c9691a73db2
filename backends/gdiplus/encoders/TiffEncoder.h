#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

namespace GdiplusBackend {

/// Writes a TIFF 6.0 file of one page, LZW compressed: true colour with horizontal differencing as RGB or,
/// for 32bppARGB, RGB with unassociated alpha; a palette as palette or, for black and white, as bilevel
/// picture; a palette with alpha as RGB with unassociated alpha. The file is made in memory. `GenericError`
/// for one over 4 GiB.
Result<void> encodeTiff(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink);

} // namespace GdiplusBackend
