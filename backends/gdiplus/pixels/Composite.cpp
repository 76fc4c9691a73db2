#include "gdiplus/pixels/Composite.h"

#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/Premultiply.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace GdiplusBackend {

using Gdiplus::ARGB;

namespace {

constexpr int chunk = 256;
using Chunk = std::array<ARGB, chunk>;

std::uint32_t over(std::uint32_t source, std::uint32_t destination) {
    const std::uint32_t rest = 255 - (source >> 24);
    std::uint32_t sum = 0;
    for (int shift = 0; shift < 32; shift += 8)
        sum |= std::min<std::uint32_t>(255, (source >> shift & 255) +
                                                scaleByAlpha(destination >> shift & 255, rest))
               << shift;
    return sum;
}

bool isOpaqueFormat(PixelFormat format) {
    return !IsAlphaPixelFormat(format) && !IsIndexedPixelFormat(format);
}

/// Blends premultiplied pixels over a row of `target`, without touching what they leave as it is.
void blendRow(const ARGB* premultiplied, const PixelView& target, int x, int y, int count) {
    if (target.format == PixelFormat32bppPARGB) {
        std::byte* to = target.row(y) + static_cast<std::ptrdiff_t>(x) * 4;
        for (int i = 0; i < count; ++i) {
            std::uint32_t destination = 0;
            std::memcpy(&destination, to + static_cast<std::ptrdiff_t>(i) * 4, 4);
            const std::uint32_t sum = over(premultiplied[i], destination);
            std::memcpy(to + static_cast<std::ptrdiff_t>(i) * 4, &sum, 4);
        }
        return;
    }
    Chunk pixels;
    readArgb(target, x, y, count, pixels.data());
    for (int i = 0; i < count; ++i)
        if (premultiplied[i] >> 24 != 0)
            pixels[static_cast<std::size_t>(i)] = unpremultiplyArgb(
                over(premultiplied[i], premultiplyArgb(pixels[static_cast<std::size_t>(i)])));
    writeArgb(target, x, y, count, pixels.data());
}

/// Pixels `[x, x + count)` of a row, premultiplied.
void readPremultiplied(const ConstPixelView& picture, int x, int y, int count, ARGB* out) {
    if (picture.format == PixelFormat32bppPARGB) {
        std::memcpy(out, picture.row(y) + static_cast<std::ptrdiff_t>(x) * 4,
                    static_cast<std::size_t>(count) * 4);
        return;
    }
    readArgb(picture, x, y, count, out);
    std::transform(out, out + count, out, premultiplyArgb);
}

} // namespace

void sourceOver(const ConstPixelView& source, const PixelView& target, int x, int y) {
    if (isOpaqueFormat(source.format) && source.format != PixelFormat32bppRGB) {
        convertPixels(source, 0, 0, cutOut(target, {x, y, source.width, source.height}));
        return;
    }
    Chunk pixels;
    for (int row = 0; row < source.height; ++row)
        for (int column = 0; column < source.width; column += chunk) {
            const int count = std::min(chunk, source.width - column);
            if (source.format == PixelFormat32bppRGB) {
                readArgb(source, column, row, count, pixels.data());
                writeArgb(target, x + column, y + row, count, pixels.data());
            } else {
                readPremultiplied(source, column, row, count, pixels.data());
                blendRow(pixels.data(), target, x + column, y + row, count);
            }
        }
}

void fillOver(ARGB color, const PixelView& target, int x, int y, int width, int height) {
    Chunk pixels;
    pixels.fill(premultiplyArgb(color));
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; column += chunk)
            blendRow(pixels.data(), target, column, row, std::min(chunk, x + width - column));
}

} // namespace GdiplusBackend
