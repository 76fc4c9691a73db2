#include "gdiplus/encoders/TiffEncoder.h"

#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <tiffio.h>

namespace GdiplusBackend {

namespace {

struct RoundTrip {
    explicit RoundTrip(const TestPicture& picture, const EncodeOptions& options = {})
        : RoundTrip(encoded(encodeTiff, picture.view(), options)) {}
    explicit RoundTrip(const std::vector<std::byte>& file)
        : decoded(decodeTiff(file))
        , tags(tagsOfTiff(file)) {}

    Decoded decoded;
    TiffTags tags;
};

} // namespace

TEST(TiffEncoder, TrueColourIsRgbWithLzwAndHorizontalDifferencing) {
    TestPicture picture(70, 50, PixelFormat24bppRGB);
    const RoundTrip trip(picture.paint(colourfulAt));
    EXPECT_EQ(trip.tags.photometric, PHOTOMETRIC_RGB);
    EXPECT_EQ(trip.tags.samplesPerPixel, 3);
    EXPECT_EQ(trip.tags.bitsPerSample, 8);
    EXPECT_EQ(trip.tags.compression, COMPRESSION_LZW);
    EXPECT_EQ(trip.tags.predictor, PREDICTOR_HORIZONTAL);
    EXPECT_EQ(trip.decoded.pixels, picture.pixels());
}

TEST(TiffEncoder, AlphaIsAnUnassociatedFourthSample) {
    TestPicture picture(70, 50, PixelFormat32bppARGB);
    const RoundTrip trip(picture.paint(colourfulAt));
    EXPECT_EQ(trip.tags.samplesPerPixel, 4);
    EXPECT_EQ(trip.tags.extraSamples, std::vector<int>{EXTRASAMPLE_UNASSALPHA});
    EXPECT_EQ(trip.tags.predictor, PREDICTOR_HORIZONTAL);
    EXPECT_EQ(trip.decoded.pixels, picture.pixels());
}

TEST(TiffEncoder, PalettesOf4And8BitsStayPalettes) {
    for (const auto format : {PixelFormat4bppIndexed, PixelFormat8bppIndexed}) {
        const int bits = static_cast<int>(GetPixelFormatSize(format));
        const auto colours = distinctColours(1 << bits);
        TestPicture picture(21, 9, format);
        const RoundTrip trip(
            picture.paintIndices(colours, [&](int x, int y) { return (x + y * 21) % (1 << bits); }));
        EXPECT_EQ(trip.tags.photometric, PHOTOMETRIC_PALETTE);
        EXPECT_EQ(trip.tags.bitsPerSample, bits);
        EXPECT_EQ(trip.decoded.palette, colours);
        EXPECT_EQ(trip.decoded.pixels, picture.pixels());
    }
}

TEST(TiffEncoder, BlackAndWhiteIsBilevelEitherWayRound) {
    const auto indexAt = [](int x, int y) { return (x / 3 + y) % 2; };
    TestPicture blackFirst(21, 9, PixelFormat1bppIndexed);
    const RoundTrip minIsBlack(blackFirst.paintIndices({0xFF000000, 0xFFFFFFFF}, indexAt));
    EXPECT_EQ(minIsBlack.tags.photometric, PHOTOMETRIC_MINISBLACK);
    EXPECT_EQ(minIsBlack.tags.bitsPerSample, 1);
    EXPECT_EQ(minIsBlack.decoded.pixels, blackFirst.pixels());

    TestPicture whiteFirst(21, 9, PixelFormat1bppIndexed);
    const RoundTrip minIsWhite(whiteFirst.paintIndices({0xFFFFFFFF, 0xFF000000}, indexAt));
    EXPECT_EQ(minIsWhite.tags.photometric, PHOTOMETRIC_MINISWHITE);
    EXPECT_EQ(minIsWhite.decoded.pixels, whiteFirst.pixels());
}

TEST(TiffEncoder, TwoOtherColoursAreAPaletteOf8Bits) {
    TestPicture picture(21, 9, PixelFormat1bppIndexed);
    const RoundTrip trip(
        picture.paintIndices({0xFFFF0000, 0xFF00FF00}, [](int x, int y) { return (x + y) % 2; }));
    EXPECT_EQ(trip.tags.photometric, PHOTOMETRIC_PALETTE);
    EXPECT_EQ(trip.tags.bitsPerSample, 8);
    EXPECT_EQ(trip.decoded.pixels, picture.pixels());
}

TEST(TiffEncoder, PaletteWithAlphaBecomesRgbWithAlpha) {
    TestPicture picture(21, 9, PixelFormat4bppIndexed);
    const RoundTrip trip(
        picture.paintIndices({0x40112233, 0xFF445566}, [](int x, int y) { return (x + y) % 2; }));
    EXPECT_EQ(trip.tags.samplesPerPixel, 4);
    EXPECT_EQ(trip.decoded.pixels, picture.pixels());
}

TEST(TiffEncoder, ResolutionIsDotsPerInch) {
    TestPicture picture(1, 1, PixelFormat24bppRGB);
    const RoundTrip trip(picture.paint(colourfulAt), {.dpiX = 72.5F, .dpiY = 300, .jpegQuality = {}});
    EXPECT_DOUBLE_EQ(trip.decoded.dpiX, 72.5);
    EXPECT_DOUBLE_EQ(trip.decoded.dpiY, 300);
}

} // namespace GdiplusBackend
