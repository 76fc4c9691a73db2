#pragma once

#include "gdiplus/pixels/PixelView.h"

namespace GdiplusBackend {

/// What all transparent pixels count as; opaque colours have an alpha of 255 and so never equal it.
constexpr Gdiplus::ARGB clearColor = 0;

/// Calls `visit` with each pixel of a row, made opaque or `clearColor`.
template <typename Visit>
void visitRow(const ConstPixelView& picture, int y, Visit visit) {
    const std::byte* pixel = picture.row(y);
    const bool hasAlpha = picture.format == PixelFormat32bppARGB;
    const int step = hasAlpha ? 4 : 3;
    for (int x = 0; x < picture.width; ++x, pixel += step) {
        const bool isClear = hasAlpha && std::to_integer<int>(pixel[3]) < 128;
        visit(isClear ? clearColor
                      : 0xFF000000U | std::to_integer<Gdiplus::ARGB>(pixel[2]) << 16 |
                            std::to_integer<Gdiplus::ARGB>(pixel[1]) << 8 |
                            std::to_integer<Gdiplus::ARGB>(pixel[0]));
    }
}

} // namespace GdiplusBackend
