#pragma once

#include "gdiplus/pixels/PixelBuffer.h"

namespace GdiplusBackend {

constexpr bool swapsSides(Gdiplus::RotateFlipType type) {
    return (type & 1) != 0;
}

/// The one turn that equals `first` and then `second`.
constexpr Gdiplus::RotateFlipType combine(Gdiplus::RotateFlipType first, Gdiplus::RotateFlipType second) {
    // A turn after a mirroring counts backwards, as seen before it.
    const bool mirrored = (first & 4) != 0;
    const int quarters = mirrored ? first - second : first + second;
    return static_cast<Gdiplus::RotateFlipType>((quarters & 3) | ((first ^ second) & 4));
}

/// A turned and mirrored copy in the same format.
Result<PixelBuffer> rotateFlip(const ConstPixelView& picture, Gdiplus::RotateFlipType type);

} // namespace GdiplusBackend
