#include "gdiplus/encoders/colorquantizer/ColorHistogram.h"

#include "backends/gdiplus/encoders/TestPicture.h"

#include <gtest/gtest.h>

namespace GdiplusBackend {

namespace {

double pixelsIn(const ColorHistogram& histogram) {
    double pixels = 0;
    for (const ColorBin& bin : histogram.bins)
        pixels += bin.count;
    return pixels;
}

} // namespace

TEST(ColorHistogram, FewColoursHaveABinEach) {
    TestPicture picture(300, 10, PixelFormat24bppRGB);
    picture.paint([](int x, int) { return static_cast<Gdiplus::ARGB>(x); });
    const ColorHistogram histogram = countColors(picture.view());
    ASSERT_EQ(histogram.bins.size(), 300U);
    EXPECT_EQ(histogram.bins[7].count, 10);
    EXPECT_EQ(histogram.bins[7].mean(2), 7);
}

TEST(ColorHistogram, ManyColoursShareBinsAndNoPixelIsLost) {
    TestPicture picture(256, 256, PixelFormat24bppRGB);
    picture.paint([](int x, int y) { return static_cast<Gdiplus::ARGB>(x << 16 | y << 8 | (x ^ y)); });
    const ColorHistogram histogram = countColors(picture.view());
    EXPECT_LE(histogram.bins.size(), 4096U);
    EXPECT_GE(histogram.bins.size(), 512U);
    EXPECT_EQ(pixelsIn(histogram), 256 * 256);
}

TEST(ColorHistogram, TransparentPixelsAreOnlyNoted) {
    TestPicture picture(4, 1, PixelFormat32bppARGB);
    picture.paint([](int x, int) { return x == 0 ? 0x7F112233U : 0xFF112233U; });
    const ColorHistogram histogram = countColors(picture.view());
    EXPECT_TRUE(histogram.hasClearPixels);
    EXPECT_EQ(pixelsIn(histogram), 3);
}

} // namespace GdiplusBackend
