#pragma once

#include "platform/GdiplusTypes.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>

namespace GdiplusBackend {

/// Bytes of a row of `width` pixels without padding.
constexpr std::size_t bytesPerRow(int width, Gdiplus::PixelFormat format) {
    return (static_cast<std::size_t>(width) * GetPixelFormatSize(format) + 7) / 8;
}

/// Bytes from row to row in memory that this library allocates: rounded up to 4.
constexpr std::size_t alignedStride(int width, Gdiplus::PixelFormat format) {
    return (bytesPerRow(width, format) + 3) & ~std::size_t{3};
}

/// The longest stride that a locked bitmap can tell its caller.
constexpr std::size_t longestStride = std::numeric_limits<INT>::max();

/// Pixels in somebody's memory.
///
///     |<-- bytesPerRow -->|pad|   `top` is the top picture row; where rows lie bottom-up in memory
///     |<------ stride ------->|   it is the last one there, and the stride is negative
template <typename Byte>
struct BasicPixelView {
    Byte* top = nullptr;
    std::ptrdiff_t stride = 0;
    int width = 0;
    int height = 0;
    Gdiplus::PixelFormat format = 0;
    std::span<const Gdiplus::ARGB> palette = {}; ///< for indexed formats

    Byte* row(int y) const { return top + stride * y; }

    operator BasicPixelView<const Byte>() const // NOLINT(google-explicit-constructor): adds const only
        requires(!std::is_const_v<Byte>) {
        return {top, stride, width, height, format, palette};
    }
};

using PixelView = BasicPixelView<std::byte>;
using ConstPixelView = BasicPixelView<const std::byte>;

/// The pixels of a rectangle inside `picture`, in place. Its left border lies between two bytes.
template <typename Byte>
BasicPixelView<Byte> cutOut(const BasicPixelView<Byte>& picture, const Gdiplus::Rect& area) {
    BasicPixelView<Byte> part = picture;
    part.top =
        picture.row(area.Y) + static_cast<std::size_t>(area.X) * GetPixelFormatSize(picture.format) / 8;
    part.width = area.Width;
    part.height = area.Height;
    return part;
}

} // namespace GdiplusBackend
