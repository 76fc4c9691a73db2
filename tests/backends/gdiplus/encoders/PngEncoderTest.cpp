#include "gdiplus/encoders/PngEncoder.h"

#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace GdiplusBackend {

namespace {

Decoded roundTrip(const TestPicture& picture, const EncodeOptions& options = {}) {
    return decodePng(encoded(encodePng, picture.view(), options));
}

int countOf(std::string_view chunk, const std::vector<std::byte>& file) {
    int count = 0;
    for (std::size_t i = 0; i + 4 <= file.size(); ++i)
        count += std::memcmp(file.data() + i, chunk.data(), 4) == 0 ? 1 : 0;
    return count;
}

} // namespace

TEST(PngEncoder, TrueColourIsKept) {
    TestPicture picture(31, 23, PixelFormat24bppRGB);
    const Decoded decoded = roundTrip(picture.paint(colourfulAt));
    EXPECT_EQ(decoded.bitsPerPixel, 24);
    EXPECT_EQ(decoded.pixels, picture.pixels());
}

TEST(PngEncoder, AlphaAndTheColoursUnderItAreKept) {
    TestPicture picture(31, 23, PixelFormat32bppARGB);
    const Decoded decoded = roundTrip(picture.paint(colourfulAt));
    EXPECT_EQ(decoded.bitsPerPixel, 32);
    EXPECT_EQ(decoded.pixels, picture.pixels());
}

TEST(PngEncoder, PhotoOfManyRowsIsKept) {
    TestPicture picture(160, 120, PixelFormat24bppRGB);
    picture.paint(photoAt);
    EXPECT_EQ(roundTrip(picture).pixels, picture.pixels());
}

TEST(PngEncoder, PalettesStayPalettes) {
    for (const auto format : {PixelFormat1bppIndexed, PixelFormat4bppIndexed, PixelFormat8bppIndexed}) {
        const int bits = static_cast<int>(GetPixelFormatSize(format));
        const auto colours = distinctColours(1 << bits);
        TestPicture picture(21, 9, format);
        const Decoded decoded = roundTrip(
            picture.paintIndices(colours, [&](int x, int y) { return (x + y * 21) % (1 << bits); }));
        EXPECT_EQ(decoded.bitsPerPixel, bits);
        EXPECT_EQ(decoded.palette, colours);
        EXPECT_EQ(decoded.pixels, picture.pixels());
    }
}

TEST(PngEncoder, AlphaOfAPaletteIsKept) {
    TestPicture picture(16, 4, PixelFormat8bppIndexed);
    picture.paintIndices({0x00112233, 0x80445566, 0xFF778899}, [](int x, int y) { return (x + y) % 3; });
    EXPECT_EQ(roundTrip(picture).pixels, picture.pixels());
}

TEST(PngEncoder, OpaquePaletteHasNoTransparencyChunk) {
    TestPicture picture(4, 4, PixelFormat8bppIndexed);
    picture.paintIndices(distinctColours(4), [](int x, int) { return x; });
    const std::vector<std::byte> file = encoded(encodePng, picture.view());
    EXPECT_EQ(countOf("PLTE", file), 1);
    EXPECT_EQ(countOf("tRNS", file), 0);
}

TEST(PngEncoder, ResolutionIsKeptInWholeDotsPerMetre) {
    TestPicture picture(1, 1, PixelFormat24bppRGB);
    const Decoded decoded =
        roundTrip(picture.paint(colourfulAt), {.dpiX = 96, .dpiY = 300, .jpegQuality = {}});
    EXPECT_NEAR(decoded.dpiX, 96, 0.02);
    EXPECT_NEAR(decoded.dpiY, 300, 0.02);
}

TEST(PngEncoder, MuchDataIsSplitIntoSeveralChunks) {
    TestPicture picture(640, 640, PixelFormat24bppRGB);
    std::uint32_t state = 1;
    picture.paint([&](int, int) { return (state = state * 1664525 + 1013904223) >> 8; });
    const std::vector<std::byte> file = encoded(encodePng, picture.view());
    EXPECT_GE(countOf("IDAT", file), 2);
    EXPECT_EQ(decodePng(file).pixels, picture.pixels());
}

TEST(PngEncoder, SmoothShadesAreFiltered) {
    TestPicture picture(256, 256, PixelFormat24bppRGB);
    picture.paint([](int x, int y) { return static_cast<Gdiplus::ARGB>(x << 16 | y << 8 | (x + y) / 2); });
    EXPECT_LT(encoded(encodePng, picture.view()).size(), 6000U); // over 40,000 without filters
}

} // namespace GdiplusBackend
