#include "gdiplus/codecs/bmpdecoder/BmpSamples.h"

#include <bit>

namespace GdiplusBackend {

namespace {

constexpr std::array<std::uint32_t, 3> masksOfLayout = {0xFF0000, 0x00FF00, 0x0000FF};

std::byte levelOf(std::uint64_t value, std::uint64_t brightest) {
    return static_cast<std::byte>((value * 255 + brightest / 2) / brightest);
}

} // namespace

BmpSamples::Channel::Channel(std::uint32_t bits)
    : mask(bits)
    , shift(bits == 0 ? 0 : static_cast<unsigned int>(std::countr_zero(bits)))
    , brightest(bits >> shift) {
    if (brightest > 0 && brightest < levels.size())
        for (std::uint32_t value = 0; value <= brightest; ++value)
            levels[value] = levelOf(value, brightest);
}

std::byte BmpSamples::Channel::of(std::uint32_t pixel) const {
    const std::uint32_t value = (pixel & mask) >> shift;
    return brightest < levels.size() ? levels[value] : levelOf(value, brightest);
}

BmpSamples::BmpSamples(const BmpHeader& header)
    : width(header.width)
    , bitsPerPixel(header.bitsPerPixel)
    , asTheyAre(bitsPerPixel != 2 && bitsPerPixel != 16 &&
                !(bitsPerPixel == 32 && header.masks != masksOfLayout))
    , channels({Channel(header.masks[0]), Channel(header.masks[1]), Channel(header.masks[2])}) {
    if (!asTheyAre)
        out.resize(
            (std::size_t{width} * static_cast<std::size_t>(GdiplusBackend::bitsPerPixel(layoutOf(header))) +
             7) /
            8);
}

RowLayout BmpSamples::layoutOf(const BmpHeader& header) {
    switch (header.bitsPerPixel) {
    case 1:
        return RowLayout::Bits1;
    case 2:
    case 4:
        return RowLayout::Bits4;
    case 8:
        return RowLayout::Index8;
    case 24:
        return RowLayout::Bgr24;
    default:
        return RowLayout::Bgrx32;
    }
}

std::span<const std::byte> BmpSamples::converted(std::span<const std::byte> row) {
    if (asTheyAre)
        return row;
    if (bitsPerPixel == 2) {
        for (std::size_t i = 0; i < out.size(); ++i) {
            const std::byte pair = i % 2 == 0 ? row[i / 2] >> 4 : row[i / 2] & std::byte{0x0F};
            out[i] = (pair << 2 & std::byte{0x30}) | (pair & std::byte{0x03});
        }
        return out;
    }
    const std::size_t pixelBytes = static_cast<std::size_t>(bitsPerPixel) / 8;
    for (std::size_t x = 0; x < width; ++x) {
        std::uint32_t pixel = 0;
        for (std::size_t i = 0; i < pixelBytes; ++i)
            pixel |= std::to_integer<std::uint32_t>(row[x * pixelBytes + i]) << (8 * i);
        for (std::size_t channel = 0; channel < 3; ++channel)
            out[x * 4 + channel] = channels[2 - channel].of(pixel);
        out[x * 4 + 3] = std::byte{255};
    }
    return out;
}

} // namespace GdiplusBackend
