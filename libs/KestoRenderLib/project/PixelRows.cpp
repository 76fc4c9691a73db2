#include "KestoRenderLib/project/PixelRows.h"

#include "KestoRenderLib/project/Box.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace KestoRenderLib {

namespace {

constexpr unsigned one = 1U << 16; // an opacity of 1, as a fraction of 16 bits

unsigned fractionOf(double opacity) {
    return static_cast<unsigned>(std::lround(std::clamp(opacity, 0.0, 1.0) * one));
}

unsigned char* pixelsAt(const MetaBitmap& frame, int x, int y) {
    return frame.GetPixels() + static_cast<std::ptrdiff_t>(frame.GetStride()) * y +
           static_cast<std::ptrdiff_t>(x) * 4;
}

unsigned scaled(unsigned channel, unsigned fraction) {
    return (channel * fraction + one / 2) >> 16;
}

/// `channel * alpha / 255`, rounded to nearest.
unsigned scaledByAlpha(unsigned channel, unsigned alpha) {
    const unsigned product = channel * alpha + 128;
    return (product + (product >> 8)) >> 8;
}

bool isOpaque(const unsigned char* row, int count) {
    unsigned all = 255;
    for (int i = 0; i < count; ++i)
        all &= row[static_cast<std::ptrdiff_t>(i) * 4 + 3];
    return all == 255;
}

void blendRow(const unsigned char* from, unsigned char* to, int count, unsigned fraction) {
    for (int i = 0; i < count; ++i, from += 4, to += 4) {
        const unsigned rest = 255 - scaled(from[3], fraction);
        for (int c = 0; c < 4; ++c) {
            const unsigned sum = scaled(from[c], fraction) + scaledByAlpha(to[c], rest);
            to[c] = static_cast<unsigned char>(std::min(255U, sum));
        }
    }
}

/// The rectangle of `source` at (x, y), cut to `target`.
Rect coveredPart(const MetaBitmap& source, const MetaBitmap& target, int x, int y) {
    return intersection({x, y, x + source.GetWidth(), y + source.GetHeight()},
                        {0, 0, target.GetWidth(), target.GetHeight()});
}

} // namespace

void blendOver(const MetaBitmap& source, MetaBitmap& target, int x, int y, double opacity) {
    const Rect area = coveredPart(source, target, x, y);
    const int count = area.right - area.left;
    const unsigned fraction = fractionOf(opacity);
    for (int row = area.top; row < area.bottom; ++row) {
        const unsigned char* from = pixelsAt(source, area.left - x, row - y);
        unsigned char* to = pixelsAt(target, area.left, row);
        if (fraction == one && isOpaque(from, count))
            std::memcpy(to, from, static_cast<std::size_t>(count) * 4);
        else
            blendRow(from, to, count, fraction);
    }
}

void copyInto(const MetaBitmap& source, MetaBitmap& target, int x, int y) {
    const Rect area = coveredPart(source, target, x, y);
    for (int row = area.top; row < area.bottom; ++row)
        std::memcpy(pixelsAt(target, area.left, row), pixelsAt(source, area.left - x, row - y),
                    static_cast<std::size_t>(area.right - area.left) * 4);
}

void clear(MetaBitmap& target, const Rect& area) {
    for (int row = area.top; row < area.bottom; ++row)
        std::memset(pixelsAt(target, area.left, row), 0,
                    static_cast<std::size_t>(area.right - area.left) * 4);
}

void fade(MetaBitmap& target, const Rect& area, double opacity) {
    const unsigned fraction = fractionOf(opacity);
    for (int row = area.top; row < area.bottom; ++row) {
        unsigned char* channels = pixelsAt(target, area.left, row);
        const std::ptrdiff_t count = static_cast<std::ptrdiff_t>(area.right - area.left) * 4;
        for (std::ptrdiff_t i = 0; i < count; ++i)
            channels[i] = static_cast<unsigned char>(scaled(channels[i], fraction));
    }
}

} // namespace KestoRenderLib
