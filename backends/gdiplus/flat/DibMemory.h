#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/pixels/PixelView.h"

#include <vector>

namespace GdiplusBackend {

/// How the pixels of a device-independent bitmap lie in memory.
struct DibLayout {
    int width = 0;
    int height = 0;
    std::size_t rowBytes = 0; ///< a multiple of 4
    bool isBottomUp = true;   ///< the last row in memory is the top picture row
    Gdiplus::PixelFormat format = 0;
    std::vector<Gdiplus::ARGB> palette;
};

/// `InvalidParameter` for a header that makes no sense, or of a kind not known.
Result<DibLayout> layoutOf(const BITMAPINFO& info);

/// The pixels at `bits`; the view refers to `layout` for its palette.
PixelView viewOf(const DibLayout& layout, VOID* bits);

} // namespace GdiplusBackend
