#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/jpegdecoder/JpegReader.h"

namespace GdiplusBackend {

enum class EighthOutcome {
    Handled,
    NotHandled, ///< no row was given: decode in the usual way, which also knows what to say of damage
};

/// Gives the picture at an eighth of its size from its DC coefficients alone, several times as fast as
/// libjpeg. Handles undamaged Huffman-coded files, sequential and progressive, in grey, YCbCr and RGB. Chroma
/// that is sampled more coarsely is repeated instead of made finer, and so may differ a little from
/// libjpeg's.
///
/// `reader` has read the header of `source`, knows the wanted `out_color_space`, and is left as it is.
EighthOutcome decodeEighth(const JpegReader& reader, const ByteSource& source, RowSink& sink);

} // namespace GdiplusBackend
