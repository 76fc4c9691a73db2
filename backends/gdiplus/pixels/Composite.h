#pragma once

#include "gdiplus/pixels/PixelView.h"

namespace GdiplusBackend {

/// Whether `sourceOver` can draw into the format.
constexpr bool isDrawable(Gdiplus::PixelFormat format) {
    return !IsIndexedPixelFormat(format) && format != PixelFormat32bppCMYK;
}

/// Draws `source` over the rectangle of its size at (x, y), which lies inside `target`: source-over of Porter
/// and Duff (1984) on premultiplied values, each sum rounded to nearest. `source` has any format that
/// `convertPixels` reads. Opaque pixels replace, fully transparent ones leave the target's bytes alone.
void sourceOver(const ConstPixelView& source, const PixelView& target, int x, int y);

/// `sourceOver` with one colour, not premultiplied, for the whole rectangle.
void fillOver(Gdiplus::ARGB color, const PixelView& target, int x, int y, int width, int height);

} // namespace GdiplusBackend
