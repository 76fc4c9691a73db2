#include "gdiplus/pixels/ConvertPixels.h"

#include "gdiplus/pixels/Premultiply.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace GdiplusBackend {

using Gdiplus::ARGB;

namespace {

constexpr ARGB opaque = 0xFF000000;

std::uint32_t load32(const std::byte* bytes) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

void store32(std::byte* bytes, std::uint32_t value) {
    std::memcpy(bytes, &value, sizeof value);
}

unsigned load16(const std::byte* bytes) {
    return std::to_integer<unsigned>(bytes[0]) | std::to_integer<unsigned>(bytes[1]) << 8;
}

void store16(std::byte* bytes, unsigned value) {
    bytes[0] = static_cast<std::byte>(value);
    bytes[1] = static_cast<std::byte>(value >> 8);
}

/// A sample of `bits` bits spread over the range of 8.
constexpr std::uint32_t widen(unsigned value, unsigned bits) {
    return value << (8 - bits) | value >> (2 * bits - 8);
}

ARGB readPacked16(const std::byte* bytes, unsigned greenBits) {
    const unsigned word = load16(bytes);
    const unsigned blue = word & 31;
    const unsigned green = word >> 5 & ((1U << greenBits) - 1);
    const unsigned red = word >> (5 + greenBits) & 31;
    return opaque | widen(red, 5) << 16 | widen(green, greenBits) << 8 | widen(blue, 5);
}

void writePacked16(std::byte* bytes, ARGB pixel, unsigned greenBits) {
    const unsigned red = pixel >> 19 & 31;
    const unsigned green = (pixel >> 8 & 255) >> (8 - greenBits);
    const unsigned blue = pixel >> 3 & 31;
    store16(bytes, red << (5 + greenBits) | green << 5 | blue);
}

ARGB readBgr(const std::byte* bytes) {
    return opaque | std::to_integer<ARGB>(bytes[2]) << 16 | std::to_integer<ARGB>(bytes[1]) << 8 |
           std::to_integer<ARGB>(bytes[0]);
}

ARGB readCmyk(const std::byte* bytes) {
    const std::uint32_t paper = 255 - std::to_integer<std::uint32_t>(bytes[3]);
    const auto channel = [&](std::byte ink) {
        return scaleByAlpha(255 - std::to_integer<std::uint32_t>(ink), paper);
    };
    return opaque | channel(bytes[0]) << 16 | channel(bytes[1]) << 8 | channel(bytes[2]);
}

/// Applies `read` to `count` pixels of `Step` bytes each.
template <int Step, typename Read>
void readRow(const std::byte* from, int count, ARGB* out, Read read) {
    for (int i = 0; i < count; ++i)
        out[i] = read(from + static_cast<std::ptrdiff_t>(i) * Step);
}

template <int Step, typename Write>
void writeRow(std::byte* to, int count, const ARGB* pixels, Write write) {
    for (int i = 0; i < count; ++i)
        write(to + static_cast<std::ptrdiff_t>(i) * Step, pixels[i]);
}

void copyPixels(const ConstPixelView& source, int x, int y, const PixelView& target) {
    const std::size_t bits = GetPixelFormatSize(source.format);
    const std::size_t skippedBits = static_cast<std::size_t>(x) * bits;
    if (skippedBits % 8 != 0) {
        for (int row = 0; row < target.height; ++row)
            for (int column = 0; column < target.width; ++column)
                writeIndex(target, column, row, readIndex(source, x + column, y + row));
        return;
    }
    const std::size_t bytes = bytesPerRow(target.width, target.format);
    for (int row = 0; row < target.height; ++row)
        std::memcpy(target.row(row), source.row(y + row) + skippedBits / 8, bytes);
}

/// The way of most photos into the scaler.
void widenBgrRow(const std::byte* from, std::byte* to, int count) {
    for (int i = 0; i + 1 < count; ++i) // loads a byte of the pixel behind, which the last one does not have
        store32(to + std::ptrdiff_t{i} * 4, load32(from + std::ptrdiff_t{i} * 3) | opaque);
    if (count > 0)
        store32(to + std::ptrdiff_t{count - 1} * 4, readBgr(from + std::ptrdiff_t{count - 1} * 3));
}

} // namespace

bool canConvert(PixelFormat from, PixelFormat to) {
    if (from == to)
        return GetPixelFormatSize(from) != 0;
    switch (to) {
    case PixelFormat16bppRGB555:
    case PixelFormat16bppRGB565:
    case PixelFormat24bppRGB:
    case PixelFormat32bppRGB:
    case PixelFormat32bppARGB:
    case PixelFormat32bppPARGB:
        return true;
    default:
        return false;
    }
}

unsigned readIndex(const ConstPixelView& picture, int x, int y) {
    const unsigned bits = GetPixelFormatSize(picture.format);
    const std::size_t place = static_cast<std::size_t>(x) * bits;
    const unsigned byte = std::to_integer<unsigned>(picture.row(y)[place / 8]);
    return byte >> (8 - bits - place % 8) & ((1U << bits) - 1);
}

void writeIndex(const PixelView& picture, int x, int y, unsigned index) {
    const unsigned bits = GetPixelFormatSize(picture.format);
    const std::size_t place = static_cast<std::size_t>(x) * bits;
    const unsigned shift = 8 - bits - static_cast<unsigned>(place % 8);
    const unsigned mask = ((1U << bits) - 1) << shift;
    std::byte& byte = picture.row(y)[place / 8];
    byte = static_cast<std::byte>((std::to_integer<unsigned>(byte) & ~mask) | (index << shift & mask));
}

void readArgb(const ConstPixelView& picture, int x, int y, int count, ARGB* out) {
    const std::byte* from =
        picture.row(y) + static_cast<std::size_t>(x) * GetPixelFormatSize(picture.format) / 8;
    switch (picture.format) {
    case PixelFormat16bppRGB555:
        return readRow<2>(from, count, out, [](const std::byte* p) { return readPacked16(p, 5); });
    case PixelFormat16bppRGB565:
        return readRow<2>(from, count, out, [](const std::byte* p) { return readPacked16(p, 6); });
    case PixelFormat24bppRGB:
        return readRow<3>(from, count, out, readBgr);
    case PixelFormat32bppRGB:
        return readRow<4>(from, count, out, [](const std::byte* p) { return load32(p) | opaque; });
    case PixelFormat32bppARGB:
        return readRow<4>(from, count, out, load32);
    case PixelFormat32bppPARGB:
        return readRow<4>(from, count, out, [](const std::byte* p) { return unpremultiplyArgb(load32(p)); });
    case PixelFormat32bppCMYK:
        return readRow<4>(from, count, out, readCmyk);
    default:
        for (int i = 0; i < count; ++i) {
            const unsigned index = readIndex(picture, x + i, y);
            out[i] = index < picture.palette.size() ? picture.palette[index] : opaque;
        }
    }
}

void writeArgb(const PixelView& picture, int x, int y, int count, const ARGB* pixels) {
    std::byte* to = picture.row(y) + static_cast<std::size_t>(x) * GetPixelFormatSize(picture.format) / 8;
    switch (picture.format) {
    case PixelFormat16bppRGB555:
        return writeRow<2>(to, count, pixels, [](std::byte* p, ARGB pixel) { writePacked16(p, pixel, 5); });
    case PixelFormat16bppRGB565:
        return writeRow<2>(to, count, pixels, [](std::byte* p, ARGB pixel) { writePacked16(p, pixel, 6); });
    case PixelFormat24bppRGB:
        return writeRow<3>(to, count, pixels, [](std::byte* p, ARGB pixel) {
            p[0] = static_cast<std::byte>(pixel);
            p[1] = static_cast<std::byte>(pixel >> 8);
            p[2] = static_cast<std::byte>(pixel >> 16);
        });
    case PixelFormat32bppPARGB:
        return writeRow<4>(to, count, pixels,
                           [](std::byte* p, ARGB pixel) { store32(p, premultiplyArgb(pixel)); });
    default:
        return writeRow<4>(to, count, pixels, store32);
    }
}

void convertPixels(const ConstPixelView& source, int x, int y, const PixelView& target) {
    if (source.format == target.format)
        return copyPixels(source, x, y, target);
    if (source.format == PixelFormat24bppRGB && GetPixelFormatSize(target.format) == 32) {
        for (int row = 0; row < target.height; ++row)
            widenBgrRow(source.row(y + row) + std::ptrdiff_t{x} * 3, target.row(row), target.width);
        return;
    }
    constexpr int chunk = 256;
    std::array<ARGB, chunk> pixels;
    for (int row = 0; row < target.height; ++row)
        for (int column = 0; column < target.width; column += chunk) {
            const int count = std::min(chunk, target.width - column);
            readArgb(source, x + column, y + row, count, pixels.data());
            writeArgb(target, column, row, count, pixels.data());
        }
}

} // namespace GdiplusBackend
