#include "gdiplus/codecs/tiffdecoder/TiffSamples.h"

#include "gdiplus/codecs/StraightAlpha.h"

#include <algorithm>
#include <cstring>

namespace GdiplusBackend {

namespace {

std::size_t samplesForColour(TiffColours colours) {
    switch (colours) {
    case TiffColours::Indexed:
        return 1;
    case TiffColours::Rgb:
    case TiffColours::ByLibrary:
        return 3;
    case TiffColours::Cmyk:
        return 4;
    }
    return 0;
}

std::byte withoutInk(std::byte ink, std::byte black) {
    const unsigned light =
        (255U - std::to_integer<unsigned>(ink)) * (255U - std::to_integer<unsigned>(black));
    return static_cast<std::byte>((light + 127U) / 255U);
}

std::vector<std::byte> scaleTable(const TiffShape& shape) {
    const unsigned highest = (1U << static_cast<unsigned>(shape.bitsPerSample)) - 1U;
    std::vector<std::byte> table(highest + 1U);
    for (unsigned value = 0; value <= highest; ++value)
        table[value] =
            static_cast<std::byte>(shape.valuesAreIndices ? value : (value * 255U + highest / 2U) / highest);
    return table;
}

} // namespace

TiffSamples::TiffSamples(const TiffShape& tiffShape)
    : shape(tiffShape)
    , colourSamples(samplesForColour(tiffShape.colours))
    , row(static_cast<std::size_t>(tiffShape.width) * static_cast<std::size_t>(tiffShape.channels())) {
    if (shape.bitsPerSample == 8)
        return;
    narrow.resize(static_cast<std::size_t>(shape.width) * static_cast<std::size_t>(shape.samplesPerPixel));
    if (shape.bitsPerSample < 16)
        scaled = scaleTable(shape);
}

void TiffSamples::unpackBits(std::span<const std::byte> packed) {
    const auto depth = static_cast<unsigned>(shape.bitsPerSample);
    const unsigned mask = (1U << depth) - 1U;
    unsigned window = 0;
    unsigned bits = 0;
    std::size_t place = 0;
    for (std::byte& sample : narrow) {
        while (bits < depth) {
            window = window << 8U | std::to_integer<unsigned>(packed[place++]);
            bits += 8;
        }
        bits -= depth;
        sample = scaled[window >> bits & mask];
    }
}

std::span<const std::byte> TiffSamples::toEightBits(std::span<const std::byte> packed) {
    if (shape.bitsPerSample == 8)
        return packed;
    if (shape.bitsPerSample < 16) {
        unpackBits(packed);
        return narrow;
    }
    for (std::size_t sample = 0; sample < narrow.size(); ++sample) {
        std::uint16_t value = 0;
        std::memcpy(&value, &packed[sample * 2], sizeof value);
        narrow[sample] = static_cast<std::byte>((value + 128U) / 257U);
    }
    return narrow;
}

void TiffSamples::putColour(const std::byte* samples, std::byte* pixel) const {
    switch (shape.colours) {
    case TiffColours::Indexed: {
        const auto& colour = shape.table[std::to_integer<std::size_t>(samples[0])];
        std::copy(colour.begin(), colour.end(), pixel);
        return;
    }
    case TiffColours::Rgb:
    case TiffColours::ByLibrary:
        pixel[0] = samples[2];
        pixel[1] = samples[1];
        pixel[2] = samples[0];
        return;
    case TiffColours::Cmyk:
        pixel[0] = withoutInk(samples[2], samples[3]);
        pixel[1] = withoutInk(samples[1], samples[3]);
        pixel[2] = withoutInk(samples[0], samples[3]);
        return;
    }
}

std::span<const std::byte> TiffSamples::convert(std::span<const std::byte> packed) {
    const std::byte* samples = toEightBits(packed).data();
    const auto channels = static_cast<std::size_t>(shape.channels());
    for (std::size_t pixel = 0; pixel < row.size(); pixel += channels) {
        putColour(samples, &row[pixel]);
        if (channels == 4)
            row[pixel + 3] = samples[colourSamples];
        samples += shape.samplesPerPixel;
    }
    if (shape.alpha == TiffAlpha::Premultiplied)
        unpremultiply(row);
    return row;
}

} // namespace GdiplusBackend
