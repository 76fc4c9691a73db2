#include "gdiplus/encoders/BmpEncoder.h"

#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

namespace GdiplusBackend {

namespace {

Decoded roundTrip(const TestPicture& picture, const EncodeOptions& options = {}) {
    return decodeBmp(encoded(encodeBmp, picture.view(), options));
}

} // namespace

TEST(BmpEncoder, WritesTheBytesOfATinyPictureAsPublished) {
    TestPicture picture(1, 2, PixelFormat24bppRGB);
    picture.paint([](int, int y) { return y == 0 ? 0xFF112233 : 0xFF445566; });
    const std::vector<std::byte> file = encoded(encodeBmp, picture.view());
    ASSERT_EQ(file.size(), 62U);
    EXPECT_EQ(littleEndian(file, 10, 4), 54U);
    EXPECT_EQ(littleEndian(file, 34, 4), 8U);
    EXPECT_EQ(littleEndian(file, 54, 4), 0x00445566U); // the bottom row first, padded with zeros
    EXPECT_EQ(littleEndian(file, 58, 4), 0x00112233U);
}

TEST(BmpEncoder, TrueColourStaysAt24Bits) {
    TestPicture picture(11, 6, PixelFormat24bppRGB);
    const Decoded decoded = roundTrip(picture.paint(colourfulAt));
    EXPECT_EQ(decoded.bitsPerPixel, 24);
    EXPECT_EQ(decoded.pixels, picture.pixels());
}

TEST(BmpEncoder, AlphaStaysInTheFourthByteOf32Bits) {
    TestPicture picture(11, 6, PixelFormat32bppARGB);
    const Decoded decoded = roundTrip(picture.paint(colourfulAt));
    EXPECT_EQ(decoded.bitsPerPixel, 32);
    EXPECT_EQ(decoded.pixels, picture.pixels());
}

TEST(BmpEncoder, PalettesStayPalettes) {
    for (const auto format : {PixelFormat1bppIndexed, PixelFormat4bppIndexed, PixelFormat8bppIndexed}) {
        const int bits = static_cast<int>(GetPixelFormatSize(format));
        const auto colours = distinctColours(1 << bits);
        TestPicture picture(21, 9, format);
        picture.paintIndices(colours, [&](int x, int y) { return (x + y * 21) % (1 << bits); });
        const Decoded decoded = roundTrip(picture);
        EXPECT_EQ(decoded.bitsPerPixel, bits);
        EXPECT_EQ(decoded.palette, colours);
        EXPECT_EQ(decoded.pixels, picture.pixels());
    }
}

TEST(BmpEncoder, PaletteEntriesHaveNoAlpha) {
    TestPicture picture(1, 1, PixelFormat1bppIndexed);
    picture.paintIndices({0x80112233, 0xFF445566}, [](int, int) { return 0; });
    EXPECT_EQ(littleEndian(encoded(encodeBmp, picture.view()), 54, 4), 0x00112233U);
}

TEST(BmpEncoder, ResolutionIsKeptInWholeDotsPerMetre) {
    TestPicture picture(1, 1, PixelFormat24bppRGB);
    picture.paint(colourfulAt);
    const std::vector<std::byte> file =
        encoded(encodeBmp, picture.view(), {.dpiX = 96, .dpiY = 300, .jpegQuality = {}});
    EXPECT_EQ(littleEndian(file, 38, 4), 3780U);
    EXPECT_EQ(littleEndian(file, 42, 4), 11811U);
}

} // namespace GdiplusBackend
