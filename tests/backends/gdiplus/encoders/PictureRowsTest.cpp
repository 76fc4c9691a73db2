#include "gdiplus/encoders/PictureRows.h"

#include "backends/gdiplus/encoders/TestPicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace GdiplusBackend {

namespace {

std::vector<int> bytesOfRow(const TestPicture& picture,
                            void (PictureRows::*read)(int, std::span<std::byte>) const, std::size_t count) {
    std::vector<std::byte> row(count);
    (PictureRows(picture.view()).*read)(0, row);
    std::vector<int> bytes(count);
    std::ranges::transform(row, bytes.begin(), [](std::byte byte) { return std::to_integer<int>(byte); });
    return bytes;
}

} // namespace

TEST(PictureRows, RgbTurnsTheByteOrderRound) {
    for (const auto format : {PixelFormat24bppRGB, PixelFormat32bppARGB}) {
        TestPicture picture(2, 1, format);
        picture.paint([](int x, int) { return x == 0 ? 0x10203040 : 0x50607080; });
        EXPECT_EQ(bytesOfRow(picture, &PictureRows::rgb, 6),
                  (std::vector{0x20, 0x30, 0x40, 0x60, 0x70, 0x80}));
    }
}

TEST(PictureRows, RgbaHasTheAlphaLast) {
    TestPicture picture(2, 1, PixelFormat32bppARGB);
    picture.paint([](int x, int) { return x == 0 ? 0x10203040 : 0x50607080; });
    EXPECT_EQ(bytesOfRow(picture, &PictureRows::rgba, 8),
              (std::vector{0x20, 0x30, 0x40, 0x10, 0x60, 0x70, 0x80, 0x50}));
}

TEST(PictureRows, IndicesShowTheirPaletteColours) {
    TestPicture picture(3, 1, PixelFormat1bppIndexed);
    picture.paintIndices({0x11223344, 0x55667788}, [](int x, int) { return x % 2; });
    EXPECT_EQ(bytesOfRow(picture, &PictureRows::rgba, 12),
              (std::vector{0x22, 0x33, 0x44, 0x11, 0x66, 0x77, 0x88, 0x55, 0x22, 0x33, 0x44, 0x11}));
}

TEST(PictureRows, IndicesOfAllDepthsAreUnpacked) {
    for (const auto format : {PixelFormat1bppIndexed, PixelFormat4bppIndexed, PixelFormat8bppIndexed}) {
        const int count = 1 << GetPixelFormatSize(format);
        const auto indexAt = [count](int x, int) { return x * 37 % count; };
        TestPicture picture(19, 1, format);
        picture.paintIndices(distinctColours(count), indexAt);
        std::vector<std::uint8_t> indices(19);
        PictureRows(picture.view()).indices(0, indices);
        for (int x = 0; x < 19; ++x)
            EXPECT_EQ(indices[static_cast<std::size_t>(x)], indexAt(x, 0)) << count << " at " << x;
    }
}

TEST(PictureRows, ShortPaletteGrowsToTheHighestIndex) {
    TestPicture picture(5, 2, PixelFormat8bppIndexed);
    picture.paintIndices({0xFF112233}, [](int x, int y) { return x == 3 && y == 1 ? 4 : 0; });
    const PictureRows rows(picture.view());
    ASSERT_EQ(rows.palette().size(), 5U);
    EXPECT_EQ(rows.palette()[0], 0xFF112233);
    EXPECT_EQ(rows.palette()[4], 0xFF000000);
}

TEST(PictureRows, PaletteIsCutToWhatTheFormatCanTellApart) {
    TestPicture picture(1, 1, PixelFormat4bppIndexed);
    picture.paintIndices(distinctColours(200), [](int, int) { return 0; });
    EXPECT_EQ(PictureRows(picture.view()).palette().size(), 16U);
}

TEST(PictureRows, UnknownResolutionIs96) {
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    for (const float dpi : {0.0F, -72.0F, notANumber, std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(knownDotsPerInch(dpi), 96);
        EXPECT_EQ(wholeDotsPerInch(dpi), 96);
        EXPECT_EQ(dotsPerMetre(dpi), 3780U);
    }
}

TEST(PictureRows, ExtremeResolutionStaysInTheFieldsRange) {
    EXPECT_EQ(wholeDotsPerInch(0.01F), 1);
    EXPECT_EQ(wholeDotsPerInch(1e9F), 65535);
    EXPECT_EQ(dotsPerMetre(1e30F), 0x7FFFFFFFU);
}

} // namespace GdiplusBackend
