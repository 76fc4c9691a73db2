#pragma once

#include "gdiplus/pixels/PixelView.h"

#include <cstdint>

namespace GdiplusBackend {

/// Whether pixels of `from` can be written as `to`: everything becomes everything else, but nothing becomes
/// CMYK or another indexed format.
bool canConvert(Gdiplus::PixelFormat from, Gdiplus::PixelFormat to);

/// Reads `count` pixels from (x, y) as 0xAARRGGBB, not premultiplied; formats without alpha give 255. CMYK is
/// taken as plain inks.
void readArgb(const ConstPixelView& picture, int x, int y, int count, Gdiplus::ARGB* out);

/// Writes pixels that are not premultiplied. RGB formats drop alpha without blending; the fourth byte of
/// `32bppRGB` takes it. `picture` is not indexed and not CMYK.
void writeArgb(const PixelView& picture, int x, int y, int count, const Gdiplus::ARGB* pixels);

/// Copies the rectangle of `target`'s size at (x, y) of `source`, converting where the formats differ, which
/// `canConvert` allows. Equal formats are copied byte for byte.
void convertPixels(const ConstPixelView& source, int x, int y, const PixelView& target);

/// The palette index at (x, y) of an indexed picture.
unsigned readIndex(const ConstPixelView& picture, int x, int y);
/// Sets it to the low bits of `index`; the neighbours in the same byte stay.
void writeIndex(const PixelView& picture, int x, int y, unsigned index);

} // namespace GdiplusBackend
