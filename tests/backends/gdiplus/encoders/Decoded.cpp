#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <gif_lib.h>
#include <spng.h>

namespace GdiplusBackend {

namespace {

constexpr double metresPerInch = 0.0254;

Gdiplus::ARGB opaque(int red, int green, int blue) {
    return Gdiplus::Color::MakeARGB(255, static_cast<BYTE>(red), static_cast<BYTE>(green),
                                    static_cast<BYTE>(blue));
}

std::uint32_t bmpSample(std::span<const std::byte> row, int x, int bits) {
    const auto index = static_cast<std::size_t>(x);
    if (bits >= 8)
        return littleEndian(row, index * static_cast<std::size_t>(bits) / 8,
                            static_cast<std::size_t>(bits) / 8);
    const int perByte = 8 / bits;
    const int shift = 8 - bits - x % perByte * bits;
    return std::to_integer<std::uint32_t>(row[static_cast<std::size_t>(x / perByte)]) >> shift &
           ((1U << bits) - 1);
}

} // namespace

std::uint32_t littleEndian(std::span<const std::byte> file, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value |= std::to_integer<std::uint32_t>(file[offset + i]) << 8 * i;
    return value;
}

Decoded decodeBmp(std::span<const std::byte> file) {
    Decoded picture;
    if (file.size() < 54)
        return ADD_FAILURE() << "short BMP", picture;
    EXPECT_EQ(littleEndian(file, 0, 2), 0x4D42U);
    EXPECT_EQ(littleEndian(file, 2, 4), file.size());
    EXPECT_EQ(littleEndian(file, 14, 4), 40U);
    EXPECT_EQ(littleEndian(file, 26, 2), 1U);
    EXPECT_EQ(littleEndian(file, 30, 4), 0U) << "BI_RGB";
    picture.width = static_cast<int>(littleEndian(file, 18, 4));
    picture.height = static_cast<int>(littleEndian(file, 22, 4));
    picture.bitsPerPixel = static_cast<int>(littleEndian(file, 28, 2));
    picture.dpiX = littleEndian(file, 38, 4) * metresPerInch;
    picture.dpiY = littleEndian(file, 42, 4) * metresPerInch;
    for (std::uint32_t i = 0; i < littleEndian(file, 46, 4); ++i)
        picture.palette.push_back(littleEndian(file, 54 + 4 * i, 4) | 0xFF000000);

    const std::size_t stride = (static_cast<std::size_t>(picture.width * picture.bitsPerPixel) + 31) / 32 * 4;
    const std::size_t start = littleEndian(file, 10, 4);
    if (file.size() != start + stride * static_cast<std::size_t>(picture.height))
        return ADD_FAILURE() << "wrong length", picture;
    for (int y = picture.height - 1; y >= 0; --y) {
        const auto row = file.subspan(start + stride * static_cast<std::size_t>(y), stride);
        for (int x = 0; x < picture.width; ++x) {
            const std::uint32_t sample = bmpSample(row, x, picture.bitsPerPixel);
            if (picture.bitsPerPixel <= 8)
                picture.pixels.push_back(picture.palette.at(sample));
            else
                picture.pixels.push_back(picture.bitsPerPixel == 32 ? sample : sample | 0xFF000000);
        }
    }
    return picture;
}

Decoded decodeGif(std::span<const std::byte> file) {
    Decoded picture;
    const auto readMore = [](GifFileType* gif, GifByteType* out, int count) {
        auto& left = *static_cast<std::span<const std::byte>*>(gif->UserData);
        const std::size_t got = std::min(left.size(), static_cast<std::size_t>(count));
        std::memcpy(out, left.data(), got);
        left = left.subspan(got);
        return static_cast<int>(got);
    };
    int error = 0;
    const auto close = [](GifFileType* gif) { DGifCloseFile(gif, nullptr); };
    const std::unique_ptr<GifFileType, decltype(close)> gif(DGifOpen(&file, readMore, &error));
    if (!gif || DGifSlurp(gif.get()) != GIF_OK || gif->ImageCount != 1)
        return ADD_FAILURE() << "no GIF of one frame", picture;
    EXPECT_TRUE(file.empty()) << "bytes behind the end";
    picture.width = gif->SWidth;
    picture.height = gif->SHeight;
    EXPECT_EQ(gif->SavedImages[0].ImageDesc.Width, picture.width);
    EXPECT_EQ(gif->SavedImages[0].ImageDesc.Height, picture.height);
    const std::span colours(gif->SColorMap->Colors, static_cast<std::size_t>(gif->SColorMap->ColorCount));
    for (const GifColorType& colour : colours)
        picture.palette.push_back(opaque(colour.Red, colour.Green, colour.Blue));
    GraphicsControlBlock control;
    if (DGifSavedExtensionToGCB(gif.get(), 0, &control) == GIF_OK && control.TransparentColor >= 0) {
        picture.transparentIndex = control.TransparentColor;
        picture.palette.at(static_cast<std::size_t>(control.TransparentColor)) = 0;
    }
    const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    for (const GifByteType index : std::span(gif->SavedImages[0].RasterBits, count))
        picture.pixels.push_back(picture.palette.at(index));
    return picture;
}

Decoded decodePng(std::span<const std::byte> file) {
    Decoded picture;
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> png(spng_ctx_new(0), &spng_ctx_free);
    spng_set_png_buffer(png.get(), file.data(), file.size());
    spng_ihdr header{};
    if (const int error = spng_get_ihdr(png.get(), &header); error != 0)
        return ADD_FAILURE() << spng_strerror(error), picture;
    picture.width = static_cast<int>(header.width);
    picture.height = static_cast<int>(header.height);
    const bool isIndexed = header.color_type == SPNG_COLOR_TYPE_INDEXED;
    const int channels = header.color_type == SPNG_COLOR_TYPE_TRUECOLOR_ALPHA ? 4 : isIndexed ? 1 : 3;
    picture.bitsPerPixel = header.bit_depth * channels;

    std::vector<std::uint8_t> rgba(std::size_t{4} * header.width * header.height);
    const int decoded =
        spng_decode_image(png.get(), rgba.data(), rgba.size(), SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
    EXPECT_EQ(decoded, 0) << spng_strerror(decoded);
    EXPECT_EQ(spng_decode_chunks(png.get()), 0);
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        picture.pixels.push_back(Gdiplus::Color::MakeARGB(rgba[i + 3], rgba[i], rgba[i + 1], rgba[i + 2]));
    spng_plte palette{};
    if (spng_get_plte(png.get(), &palette) == 0)
        for (const spng_plte_entry& entry : std::span(palette.entries).first(palette.n_entries))
            picture.palette.push_back(opaque(entry.red, entry.green, entry.blue));
    spng_phys resolution{};
    if (spng_get_phys(png.get(), &resolution) == 0 && resolution.unit_specifier == 1) {
        picture.dpiX = resolution.ppu_x * metresPerInch;
        picture.dpiY = resolution.ppu_y * metresPerInch;
    }
    return picture;
}

double meanDifference(const Pixels& first, const Pixels& second) {
    if (first.size() != second.size() || first.empty())
        return ADD_FAILURE() << "pictures of different size", 255;
    double sum = 0;
    for (std::size_t i = 0; i < first.size(); ++i)
        for (const int shift : {0, 8, 16})
            sum += std::abs(static_cast<int>(first[i] >> shift & 255) -
                            static_cast<int>(second[i] >> shift & 255));
    return sum / (3.0 * static_cast<double>(first.size()));
}

} // namespace GdiplusBackend
