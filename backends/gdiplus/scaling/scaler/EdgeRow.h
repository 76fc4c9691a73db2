#pragma once

#include "gdiplus/pixels/PixelView.h"

#include <algorithm>

namespace GdiplusBackend::Scaling {

constexpr std::ptrdiff_t bytesPerPixel = 4;

/// `count` pixels of a row from column `first` on, where columns beyond the picture repeat its edge: `before`
/// times the leftmost pixel, `inside` pixels of memory from `pixels` on, `after` times the rightmost pixel.
struct EdgeRow {
    const std::byte* leftmost;
    const std::byte* pixels;
    const std::byte* rightmost;
    int before;
    int inside;
    int after;
};

/// Rows beyond the picture repeat its edge as well.
inline EdgeRow edgeRow(const ConstPixelView& source, int y, int first, int count) {
    const std::byte* row = source.row(std::clamp(y, 0, source.height - 1));
    const int before = std::clamp(-first, 0, count);
    const int inside = std::clamp(source.width - std::max(first, 0), 0, count - before);
    const std::byte* rightmost = row + (source.width - 1) * bytesPerPixel;
    const std::byte* pixels = inside > 0 ? row + (first + before) * bytesPerPixel : row;
    return {row, pixels, rightmost, before, inside, count - before - inside};
}

/// Copies the pixels of a row, the repeated ones too, and gives the end of what it wrote.
std::byte* copyEdgeRow(const EdgeRow& row, std::byte* out);

} // namespace GdiplusBackend::Scaling
