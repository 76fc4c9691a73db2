#include "gdiplus/scaling/scaler/EdgeRow.h"

#include <cstring>

namespace GdiplusBackend::Scaling {

namespace {

std::byte* repeatPixel(const std::byte* pixel, int count, std::byte* out) {
    for (int done = 0; done < count; ++done, out += bytesPerPixel)
        std::memcpy(out, pixel, bytesPerPixel);
    return out;
}

} // namespace

std::byte* copyEdgeRow(const EdgeRow& row, std::byte* out) {
    out = repeatPixel(row.leftmost, row.before, out);
    const std::size_t inside = static_cast<std::size_t>(row.inside * bytesPerPixel);
    std::memcpy(out, row.pixels, inside);
    return repeatPixel(row.rightmost, row.after, out + inside);
}

} // namespace GdiplusBackend::Scaling
