#include "gdiplus/pixels/Composite.h"

#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/Premultiply.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <numeric>

namespace GdiplusBackend {

using Gdiplus::ARGB;

namespace {

constexpr int chunk = 256;
using Chunk = std::array<ARGB, chunk>;

std::uint32_t over(std::uint32_t source, std::uint32_t destination) {
    const std::uint32_t rest = 255 - (source >> 24);
    const std::uint32_t even = addPairs(source & pairMask, scalePairByAlpha(destination & pairMask, rest));
    const std::uint32_t odd =
        addPairs(source >> 8 & pairMask, scalePairByAlpha(destination >> 8 & pairMask, rest));
    return odd << 8 | even;
}

bool isOpaqueFormat(PixelFormat format) {
    return !IsAlphaPixelFormat(format) && !IsIndexedPixelFormat(format);
}

bool isOpaque(ARGB pixel) {
    return pixel >> 24 == 255;
}

bool areOpaque(const ARGB* pixels, int count) {
    return isOpaque(std::accumulate(pixels, pixels + count, ~ARGB{0}, std::bit_and<>()));
}

bool areNothing(const ARGB* premultiplied, int count) {
    return std::accumulate(premultiplied, premultiplied + count, ARGB{0}, std::bit_or<>()) == 0;
}

/// A source without alpha leaves the pixel as it is, down to what premultiplying would lose.
ARGB blended(ARGB premultiplied, ARGB pixel) {
    if (isOpaque(premultiplied))
        return premultiplied;
    if (premultiplied >> 24 == 0)
        return pixel;
    return unpremultiplyArgb(over(premultiplied, premultiplyArgb(pixel)));
}

void blendPremultipliedRow(const ARGB* premultiplied, std::byte* to, int count) {
    for (int i = 0; i < count; ++i, to += 4) {
        std::uint32_t destination = 0;
        std::memcpy(&destination, to, 4);
        const std::uint32_t sum = over(premultiplied[i], destination);
        std::memcpy(to, &sum, 4);
    }
}

/// Blends premultiplied pixels over a row of `target`, without touching what they leave as it is.
void blendRow(const ARGB* premultiplied, const PixelView& target, int x, int y, int count) {
    if (areNothing(premultiplied, count))
        return;
    if (areOpaque(premultiplied, count))
        return writeArgb(target, x, y, count, premultiplied);
    if (target.format == PixelFormat32bppPARGB)
        return blendPremultipliedRow(premultiplied, target.row(y) + static_cast<std::ptrdiff_t>(x) * 4,
                                     count);
    Chunk pixels;
    readArgb(target, x, y, count, pixels.data());
    std::transform(premultiplied, premultiplied + count, pixels.data(), pixels.data(), blended);
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
    if (!areOpaque(out, count))
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
