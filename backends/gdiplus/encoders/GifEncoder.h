#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

namespace GdiplusBackend {

/// Writes a GIF file of one frame. A palette is kept; true colour is kept where there are at most 256
/// different ones, else brought down by `ColorQuantizer`. All colours with an alpha below 128 become one
/// transparent index, all others opaque. `GenericError` for sides over 65,535 pixels.
Result<void> encodeGif(const ConstPixelView& picture, const EncodeOptions& options, ByteSink& sink);

} // namespace GdiplusBackend
