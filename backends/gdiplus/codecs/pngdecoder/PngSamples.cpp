#include "gdiplus/codecs/pngdecoder/PngSamples.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace GdiplusBackend {

namespace {

bool storesAlpha(const PngHeader& header) {
    return header.colour == PngColour::GreyAlpha || header.colour == PngColour::RgbAlpha ||
           !header.transparency.empty();
}

RowLayout layoutOf(const PngHeader& header) {
    if (!header.transparency.empty())
        return RowLayout::Bgra32;
    const bool indexed = header.colour == PngColour::Palette;
    if (header.bitDepth == 1)
        return RowLayout::Bits1;
    if (indexed && header.bitDepth == 4)
        return RowLayout::Bits4;
    if (indexed && header.bitDepth == 8)
        return RowLayout::Index8;
    if (header.colour == PngColour::Rgb && header.bitDepth == 8)
        return RowLayout::Bgr24;
    return RowLayout::Bgra32;
}

std::vector<std::uint16_t> transparentSamples(const PngHeader& header) {
    std::vector<std::uint16_t> samples;
    if (header.colour != PngColour::Palette)
        for (std::size_t i = 0; i + 1 < header.transparency.size(); i += 2)
            samples.push_back(static_cast<std::uint16_t>(std::to_integer<int>(header.transparency[i]) << 8 |
                                                         std::to_integer<int>(header.transparency[i + 1])));
    return samples;
}

Gdiplus::ARGB paletteEntry(const PngHeader& header, std::size_t index) {
    const auto channel = [&](std::size_t place) {
        const std::size_t at = index * 3 + place;
        return at < header.palette.size() ? std::to_integer<BYTE>(header.palette[at]) : BYTE{0};
    };
    const BYTE opacity =
        index < header.transparency.size() ? std::to_integer<BYTE>(header.transparency[index]) : BYTE{255};
    return Gdiplus::Color::MakeARGB(opacity, channel(0), channel(1), channel(2));
}

template <typename Sample>
Sample sampleAt(const std::byte* place);

template <>
std::uint8_t sampleAt<std::uint8_t>(const std::byte* place) {
    return std::to_integer<std::uint8_t>(*place);
}

template <>
std::uint16_t sampleAt<std::uint16_t>(const std::byte* place) {
    return static_cast<std::uint16_t>(std::to_integer<int>(place[0]) << 8 | std::to_integer<int>(place[1]));
}

std::byte eightBits(std::uint8_t sample) {
    return static_cast<std::byte>(sample);
}

/// The nearest of the 256 levels.
std::byte eightBits(std::uint16_t sample) {
    return static_cast<std::byte>((std::uint32_t{sample} * 255 + 32767) / 65535);
}

} // namespace

PngSamples::PngSamples(const PngHeader& header)
    : colour(header.colour)
    , bitDepth(header.bitDepth)
    , alpha(storesAlpha(header))
    , target(layoutOf(header))
    , conversion(Conversion::None)
    , transparent(transparentSamples(header)) {
    const bool one = colour == PngColour::Palette || (colour == PngColour::Grey && bitDepth <= 8);
    if (one)
        fillTable(header);
    if (target != RowLayout::Bgra32 ||
        (colour == PngColour::RgbAlpha && bitDepth == 8)) // stored in that layout, but for the order
        return;
    conversion = one ? Conversion::Table : Conversion::Channels;
}

void PngSamples::fillTable(const PngHeader& header) {
    table.resize(std::size_t{1} << bitDepth);
    const std::size_t brightest = table.size() - 1;
    for (std::size_t sample = 0; sample < table.size(); ++sample) {
        if (colour == PngColour::Palette) {
            table[sample] = paletteEntry(header, sample);
            continue;
        }
        const auto level = static_cast<BYTE>(sample * 255 / brightest);
        const bool hidden = !transparent.empty() && transparent[0] == sample;
        table[sample] = Gdiplus::Color::MakeARGB(hidden ? BYTE{0} : BYTE{255}, level, level, level);
    }
}

std::vector<Gdiplus::ARGB> PngSamples::palette() const {
    const bool indexed =
        target == RowLayout::Bits1 || target == RowLayout::Bits4 || target == RowLayout::Index8;
    return indexed ? table : std::vector<Gdiplus::ARGB>();
}

void PngSamples::reorder(std::span<std::byte> row) const {
    if (target == RowLayout::Bgr24)
        for (std::size_t i = 0; i + 2 < row.size(); i += 3)
            std::swap(row[i], row[i + 2]);
    else if (target == RowLayout::Bgra32 && conversion == Conversion::None)
        for (std::size_t i = 0; i + 3 < row.size(); i += 4)
            std::swap(row[i], row[i + 2]);
}

void PngSamples::convert(std::span<const std::byte> row, std::uint32_t pixels,
                         std::span<std::byte> out) const {
    if (conversion == Conversion::Table)
        convertByTable(row, pixels, out);
    else if (bitDepth == 16)
        convertChannels<std::uint16_t>(row, pixels, out);
    else
        convertChannels<std::uint8_t>(row, pixels, out);
}

void PngSamples::convertByTable(std::span<const std::byte> row, std::uint32_t pixels,
                                std::span<std::byte> out) const {
    const auto bits = static_cast<unsigned int>(bitDepth);
    const unsigned int mask = (1U << bits) - 1;
    for (std::size_t x = 0; x < pixels; ++x) {
        const std::size_t place = x * bits;
        const unsigned int shift = 8 - bits - static_cast<unsigned int>(place % 8);
        const Gdiplus::ARGB colourOfPixel =
            table[std::to_integer<unsigned int>(row[place / 8]) >> shift & mask];
        for (std::size_t channel = 0; channel < 4; ++channel)
            out[x * 4 + channel] = static_cast<std::byte>(colourOfPixel >> (8 * channel));
    }
}

template <typename Sample>
void PngSamples::convertChannels(std::span<const std::byte> row, std::uint32_t pixels,
                                 std::span<std::byte> out) const {
    const bool grey = colour == PngColour::Grey || colour == PngColour::GreyAlpha;
    const bool ownAlpha = colour == PngColour::GreyAlpha || colour == PngColour::RgbAlpha;
    const std::size_t colours = grey ? 1 : 3;
    const std::size_t channels = colours + (ownAlpha ? 1 : 0);
    for (std::size_t x = 0; x < pixels; ++x) {
        const std::byte* pixel = &row[x * channels * sizeof(Sample)];
        const auto sample = [pixel](std::size_t channel) {
            return sampleAt<Sample>(pixel + channel * sizeof(Sample));
        };
        bool hidden = !transparent.empty();
        for (std::size_t channel = 0; hidden && channel < colours; ++channel)
            hidden = sample(channel) == transparent[channel];
        std::byte opacity = hidden ? std::byte{0} : std::byte{255};
        if (ownAlpha)
            opacity = eightBits(sample(colours));
        out[x * 4] = eightBits(sample(grey ? 0 : 2));
        out[x * 4 + 1] = eightBits(sample(grey ? 0 : 1));
        out[x * 4 + 2] = eightBits(sample(0));
        out[x * 4 + 3] = opacity;
    }
}

} // namespace GdiplusBackend
