#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/tiffdecoder/TiffHandle.h"
#include "gdiplus/codecs/tiffdecoder/TiffShape.h"

namespace GdiplusBackend {

/// Three ways to the rows of a directory, each in the order in which they are stored.

/// A row of samples at a time; whatever the strips' size, one row is unpacked.
Result<void> decodeStrips(const TiffHandle& handle, const TiffShape& shape, RowSink& sink);
/// One row of tiles, or one strip of each plane, at a time.
Result<void> decodeBlocks(const TiffHandle& handle, const TiffShape& shape, RowSink& sink);
/// libtiff's own conversion, one strip or one row of tiles at a time, for `TiffColours::ByLibrary`. Alpha is
/// not looked at.
Result<void> decodeByLibrary(const TiffHandle& handle, const TiffShape& shape, RowSink& sink);

} // namespace GdiplusBackend
