#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include <tiffio.h>

namespace GdiplusBackend {

namespace {

struct Reading {
    std::span<const std::byte> file;
    std::uint64_t place = 0;
};

tmsize_t readMore(thandle_t handle, void* out, tmsize_t count) {
    auto& reading = *static_cast<Reading*>(handle);
    const auto left = reading.file.subspan(std::min<std::size_t>(reading.place, reading.file.size()));
    const auto got = left.first(std::min(left.size(), static_cast<std::size_t>(count)));
    std::memcpy(out, got.data(), got.size());
    reading.place += got.size();
    return static_cast<tmsize_t>(got.size());
}

toff_t seekTo(thandle_t handle, toff_t offset, int origin) {
    auto& reading = *static_cast<Reading*>(handle);
    const std::uint64_t base = origin == SEEK_SET   ? 0
                               : origin == SEEK_CUR ? reading.place
                                                    : reading.file.size();
    reading.place = base + offset;
    return reading.place;
}

std::unique_ptr<TIFF, decltype(&TIFFClose)> openTiff(Reading& reading) {
    return {TIFFClientOpen(
                "test", "rm", &reading, readMore, [](thandle_t, void*, tmsize_t) -> tmsize_t { return 0; },
                seekTo, [](thandle_t) { return 0; },
                [](thandle_t handle) -> toff_t { return static_cast<Reading*>(handle)->file.size(); },
                nullptr, nullptr),
            &TIFFClose};
}

template <typename Value>
int tag(TIFF* tiff, std::uint32_t number) {
    Value value{};
    TIFFGetFieldDefaulted(tiff, number, &value);
    return static_cast<int>(value);
}

std::vector<Gdiplus::ARGB> readPalette(TIFF* tiff) {
    std::uint16_t* red = nullptr;
    std::uint16_t* green = nullptr;
    std::uint16_t* blue = nullptr;
    std::vector<Gdiplus::ARGB> palette;
    if (TIFFGetField(tiff, TIFFTAG_COLORMAP, &red, &green, &blue) != 1)
        return palette;
    for (int i = 0; i < 1 << tag<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE); ++i) {
        const auto level = [i](const std::uint16_t* levels) { return static_cast<BYTE>(levels[i] >> 8); };
        palette.push_back(Gdiplus::Color::MakeARGB(255, level(red), level(green), level(blue)));
    }
    return palette;
}

Gdiplus::ARGB sampleColour(std::span<const std::uint8_t> row, int x, const TiffTags& tags,
                           const std::vector<Gdiplus::ARGB>& palette) {
    if (tags.photometric == PHOTOMETRIC_RGB) {
        const std::uint8_t* pixel = row.data() + std::ptrdiff_t{x} * tags.samplesPerPixel;
        return Gdiplus::Color::MakeARGB(tags.samplesPerPixel == 4 ? pixel[3] : 255, pixel[0], pixel[1],
                                        pixel[2]);
    }
    const int perByte = 8 / tags.bitsPerSample;
    const int shift = 8 - tags.bitsPerSample - x % perByte * tags.bitsPerSample;
    const int sample = row[static_cast<std::size_t>(x / perByte)] >> shift & ((1 << tags.bitsPerSample) - 1);
    if (tags.photometric == PHOTOMETRIC_PALETTE)
        return palette.at(static_cast<std::size_t>(sample));
    const bool isWhite = (sample == 1) == (tags.photometric == PHOTOMETRIC_MINISBLACK);
    return isWhite ? 0xFFFFFFFF : 0xFF000000;
}

TiffTags readTags(TIFF* tiff) {
    TiffTags tags;
    tags.compression = tag<std::uint16_t>(tiff, TIFFTAG_COMPRESSION);
    tags.predictor = tag<std::uint16_t>(tiff, TIFFTAG_PREDICTOR);
    tags.photometric = tag<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC);
    tags.bitsPerSample = tag<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE);
    tags.samplesPerPixel = tag<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL);
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) == 1)
        tags.extraSamples.assign(kinds, kinds + count);
    return tags;
}

} // namespace

TiffTags tagsOfTiff(std::span<const std::byte> file) {
    Reading reading{file};
    const auto tiff = openTiff(reading);
    if (!tiff)
        return ADD_FAILURE() << "no TIFF", TiffTags{};
    return readTags(tiff.get());
}

Decoded decodeTiff(std::span<const std::byte> file) {
    Decoded picture;
    Reading reading{file};
    const auto tiff = openTiff(reading);
    if (!tiff)
        return ADD_FAILURE() << "no TIFF", picture;
    EXPECT_EQ(TIFFNumberOfDirectories(tiff.get()), 1U);
    picture.width = tag<std::uint32_t>(tiff.get(), TIFFTAG_IMAGEWIDTH);
    picture.height = tag<std::uint32_t>(tiff.get(), TIFFTAG_IMAGELENGTH);
    const TiffTags tags = readTags(tiff.get());
    picture.bitsPerPixel = tags.bitsPerSample * tags.samplesPerPixel;
    EXPECT_EQ(tag<std::uint16_t>(tiff.get(), TIFFTAG_RESOLUTIONUNIT), RESUNIT_INCH);
    float resolution = 0;
    TIFFGetField(tiff.get(), TIFFTAG_XRESOLUTION, &resolution);
    picture.dpiX = resolution;
    TIFFGetField(tiff.get(), TIFFTAG_YRESOLUTION, &resolution);
    picture.dpiY = resolution;
    picture.palette = readPalette(tiff.get());
    std::vector<std::uint8_t> row(static_cast<std::size_t>(TIFFScanlineSize(tiff.get())));
    for (int y = 0; y < picture.height; ++y) {
        EXPECT_EQ(TIFFReadScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(y), 0), 1);
        for (int x = 0; x < picture.width; ++x)
            picture.pixels.push_back(sampleColour(row, x, tags, picture.palette));
    }
    return picture;
}

} // namespace GdiplusBackend
