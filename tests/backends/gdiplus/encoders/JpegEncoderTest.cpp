#include "gdiplus/encoders/JpegEncoder.h"

#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

// ITU-T T.81, tables K.1 and K.2
constexpr std::array<int, 64> lumaTable = {
    16, 11,  10,  16, 24, 40, 51, 61, 12,  12,  14,  19,  26, 58, 60, 55,  14,  13,  16,  24, 40, 57,
    69, 56,  14,  17, 22, 29, 51, 87, 80,  62,  18,  22,  37, 56, 68, 109, 103, 77,  24,  35, 55, 64,
    81, 104, 113, 92, 49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98,  112, 100, 103, 99};
constexpr std::array<int, 64> chromaTable = {17, 18, 24, 47, 99, 99, 99, 99, 18, 21, 26, 66, 99, 99, 99, 99,
                                             24, 26, 56, 99, 99, 99, 99, 99, 47, 66, 99, 99, 99, 99, 99, 99,
                                             99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                                             99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99};

/// The scaling that encoders have agreed on: 50 keeps the tables, 100 makes them 1.
std::array<int, 64> scaled(std::array<int, 64> table, int quality) {
    const int percent = quality < 50 ? 5000 / std::max(quality, 1) : 200 - 2 * quality;
    for (int& step : table)
        step = std::clamp((step * percent + 50) / 100, 1, 255);
    return table;
}

DecodedJpeg roundTrip(const TestPicture& picture, const EncodeOptions& options = {}) {
    return decodeJpeg(encoded(encodeJpeg, picture.view(), options));
}

TestPicture photo(int width, int height) {
    TestPicture picture(width, height, PixelFormat24bppRGB);
    return picture.paint(photoAt);
}

} // namespace

TEST(JpegEncoder, DefaultIsTheStandardTablesAt75) {
    const DecodedJpeg decoded = roundTrip(photo(32, 32));
    ASSERT_EQ(decoded.tables.size(), 2U);
    EXPECT_EQ(decoded.tables[0], scaled(lumaTable, 75));
    EXPECT_EQ(decoded.tables[1], scaled(chromaTable, 75));
}

TEST(JpegEncoder, QualityScalesTheStandardTables) {
    for (const int quality : {0, 1, 10, 50, 90, 100}) {
        const DecodedJpeg decoded = roundTrip(photo(32, 32), {.jpegQuality = quality});
        ASSERT_EQ(decoded.tables.size(), 2U);
        EXPECT_EQ(decoded.tables[0], scaled(lumaTable, quality)) << quality;
        EXPECT_EQ(decoded.tables[1], scaled(chromaTable, quality)) << quality;
    }
}

TEST(JpegEncoder, QualityOutsideItsRangeIsTheNearerEnd) {
    const TestPicture picture = photo(32, 32);
    EXPECT_EQ(roundTrip(picture, {.jpegQuality = -5}).tables, roundTrip(picture, {.jpegQuality = 0}).tables);
    EXPECT_EQ(roundTrip(picture, {.jpegQuality = 500}).tables,
              roundTrip(picture, {.jpegQuality = 100}).tables);
}

TEST(JpegEncoder, ChromaHasHalfTheWidthAndHeightAtAnyQuality) {
    for (const int quality : {10, 75, 100}) {
        const DecodedJpeg decoded = roundTrip(photo(32, 32), {.jpegQuality = quality});
        EXPECT_EQ(decoded.components, 3);
        EXPECT_EQ(decoded.lumaSampling, (std::array{2, 2})) << quality;
    }
}

TEST(JpegEncoder, FilesAreBaseline) {
    EXPECT_TRUE(roundTrip(photo(32, 32)).isBaseline);
    EXPECT_TRUE(roundTrip(photo(600, 513)).isBaseline);
}

TEST(JpegEncoder, PhotoIsCloseToItself) {
    for (const int side : {160, 600}) {
        const TestPicture picture = photo(side, side - 40);
        EXPECT_LT(meanDifference(roundTrip(picture).pixels, picture.pixels()), 2.5) << side;
    }
}

TEST(JpegEncoder, HigherQualityIsCloser) {
    const TestPicture picture = photo(160, 120);
    const auto difference = [&](int quality) {
        return meanDifference(roundTrip(picture, {.jpegQuality = quality}).pixels, picture.pixels());
    };
    EXPECT_LT(difference(95), difference(50));
    EXPECT_LT(difference(50), difference(5));
}

TEST(JpegEncoder, TransparentPixelsShowTheirColours) {
    TestPicture picture(16, 16, PixelFormat32bppARGB);
    picture.paint([](int x, int) { return x < 8 ? 0x00D02010U : 0x80D02010U; });
    const Pixels opaque(256, 0xFFD02010);
    EXPECT_LT(meanDifference(roundTrip(picture).pixels, opaque), 3);
}

TEST(JpegEncoder, GrayPaletteGivesOneComponent) {
    std::vector<Gdiplus::ARGB> grays(256);
    for (Gdiplus::ARGB level = 0; level < 256; ++level)
        grays[level] = 0xFF000000 | (255 - level) * 0x010101;
    TestPicture picture(33, 17, PixelFormat8bppIndexed);
    picture.paintIndices(grays, [](int x, int y) { return 4 * x + 3 * y; });
    const DecodedJpeg decoded = roundTrip(picture);
    EXPECT_EQ(decoded.components, 1);
    EXPECT_LT(meanDifference(decoded.pixels, picture.pixels()), 2);
}

TEST(JpegEncoder, ColourPaletteGivesThreeComponents) {
    TestPicture picture(33, 17, PixelFormat4bppIndexed);
    picture.paintIndices({0xFF000000, 0xFFFF0000}, [](int x, int) { return x / 17; });
    const DecodedJpeg decoded = roundTrip(picture);
    EXPECT_EQ(decoded.components, 3);
    EXPECT_LT(meanDifference(decoded.pixels, picture.pixels()), 8);
}

TEST(JpegEncoder, ResolutionIsWholeDotsPerInch) {
    const DecodedJpeg decoded = roundTrip(photo(8, 8), {.dpiX = 71.6F, .dpiY = 300, .jpegQuality = {}});
    EXPECT_EQ(decoded.dpiX, 72);
    EXPECT_EQ(decoded.dpiY, 300);
}

} // namespace GdiplusBackend
