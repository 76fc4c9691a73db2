#include "gdiplus/encoders/ColorQuantizer.h"

#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace GdiplusBackend {

namespace {

/// The picture as its palette shows it.
Pixels quantized(const TestPicture& picture) {
    const ConstPixelView view = picture.view();
    ColorQuantizer quantizer(view);
    std::vector<std::uint8_t> indices(static_cast<std::size_t>(view.width));
    Pixels shown;
    for (int y = 0; y < view.height; ++y) {
        quantizer.nextRow(indices);
        for (const std::uint8_t index : indices)
            shown.push_back(quantizer.palette()[index]);
    }
    return shown;
}

/// Means over blocks, as the eye sees them from some distance.
Pixels blockMeans(const Pixels& pixels, int width, int block) {
    const int height = static_cast<int>(pixels.size()) / width;
    Pixels means;
    for (int top = 0; top + block <= height; top += block) {
        for (int left = 0; left + block <= width; left += block) {
            std::array<int, 3> sums{};
            for (int i = 0; i < block * block; ++i) {
                const int place = (top + i / block) * width + left + i % block;
                for (std::size_t channel = 0; channel < 3; ++channel)
                    sums[channel] +=
                        static_cast<int>(pixels[static_cast<std::size_t>(place)] >> 8 * channel & 255);
            }
            const auto mean = [&](int sum) {
                return static_cast<BYTE>((sum + block * block / 2) / (block * block));
            };
            means.push_back(Gdiplus::Color::MakeARGB(255, mean(sums[2]), mean(sums[1]), mean(sums[0])));
        }
    }
    return means;
}

TestPicture trueColour(int width, int height, const std::function<Gdiplus::ARGB(int, int)>& colourAt) {
    TestPicture picture(width, height, PixelFormat24bppRGB);
    return picture.paint(colourAt);
}

Gdiplus::ARGB grayRampAt(int x, int y) {
    return 0xFF000000 | static_cast<Gdiplus::ARGB>(x / 2) * 0x010101 | static_cast<Gdiplus::ARGB>(y % 4);
}

} // namespace

TEST(ColorQuantizer, FewColoursAreKeptInTheOrderOfTheirAppearance) {
    const TestPicture picture = trueColour(
        3, 2, [](int x, int y) { return y == 0 ? 0xFF000001 + static_cast<Gdiplus::ARGB>(x) : 0xFF000002; });
    const ColorQuantizer quantizer(picture.view());
    const auto palette = quantizer.palette();
    EXPECT_EQ(Pixels(palette.begin(), palette.end()), (Pixels{0xFF000001, 0xFF000002, 0xFF000003}));
    EXPECT_EQ(quantized(picture), picture.pixels());
}

TEST(ColorQuantizer, Colours256AreExactAnd257AreNot) {
    const auto colourAt = [](int x, int) { return 0xFF000000 | static_cast<Gdiplus::ARGB>(x) * 0x0101; };
    const TestPicture exact = trueColour(256, 1, colourAt);
    EXPECT_EQ(quantized(exact), exact.pixels());
    const TestPicture richer =
        trueColour(257, 1, [&](int x, int y) { return x == 256 ? 0xFFFF0000 : colourAt(x, y); });
    EXPECT_NE(quantized(richer), richer.pixels());
    EXPECT_EQ(ColorQuantizer(richer.view()).palette().size(), 256U);
}

TEST(ColorQuantizer, TransparentPixelsTakeOneOf256Entries) {
    TestPicture picture(160, 120, PixelFormat32bppARGB);
    picture.paint([](int x, int y) { return x < 10 ? 0x7FFF00FF : photoAt(x, y); });
    const ColorQuantizer quantizer(picture.view());
    EXPECT_LE(quantizer.palette().size(), 256U);
    ASSERT_TRUE(quantizer.transparentIndex().has_value());
    EXPECT_EQ(quantizer.palette()[*quantizer.transparentIndex()], 0U);
    EXPECT_EQ(std::ranges::count(quantizer.palette(), 0U), 1);
}

TEST(ColorQuantizer, OpaquePicturesHaveNoTransparentEntry) {
    EXPECT_FALSE(ColorQuantizer(trueColour(160, 120, photoAt).view()).transparentIndex().has_value());
    EXPECT_FALSE(ColorQuantizer(trueColour(2, 2, photoAt).view()).transparentIndex().has_value());
}

TEST(ColorQuantizer, WhollyTransparentPictureHasOneEntry) {
    TestPicture picture(8, 8, PixelFormat32bppARGB);
    picture.paint([](int x, int) { return static_cast<Gdiplus::ARGB>(x); });
    EXPECT_EQ(quantized(picture), Pixels(64, 0));
}

TEST(ColorQuantizer, PhotoIsCloseInEachPixelAndCloserFromADistance) {
    const TestPicture picture = trueColour(160, 120, photoAt);
    const Pixels shown = quantized(picture);
    EXPECT_LT(meanDifference(shown, picture.pixels()), 6);
    EXPECT_LT(meanDifference(blockMeans(shown, 160, 8), blockMeans(picture.pixels(), 160, 8)), 0.7);
}

TEST(ColorQuantizer, PictureOfNarrowRangeStillUsesTheWholePalette) {
    const TestPicture picture = trueColour(200, 200, [](int x, int y) {
        return Gdiplus::Color::MakeARGB(255, static_cast<BYTE>(100 + x / 8), static_cast<BYTE>(100 + y / 8),
                                        static_cast<BYTE>(100 + (x + y) / 16));
    });
    const Pixels shown = quantized(picture);
    EXPECT_GT(std::set(shown.begin(), shown.end()).size(), 60U);
    EXPECT_LT(meanDifference(shown, picture.pixels()), 2);
}

TEST(ColorQuantizer, GrayRampStaysGray) {
    const Pixels shown = quantized(trueColour(512, 16, grayRampAt));
    for (const Gdiplus::ARGB colour : shown) {
        EXPECT_NEAR(static_cast<int>(colour >> 16 & 255), static_cast<int>(colour >> 8 & 255), 2);
        EXPECT_NEAR(static_cast<int>(colour >> 8 & 255), static_cast<int>(colour & 255), 6);
    }
}

TEST(ColorQuantizer, SmallButDistinctColourSurvivesAmongMany) {
    const TestPicture picture = trueColour(160, 120, [](int x, int y) {
        const bool isMark = x >= 80 && x < 90 && y >= 60 && y < 70;
        return isMark ? 0xFFFF00FF : photoAt(x, y) & 0xFF3FFF3F;
    });
    const Gdiplus::ARGB shown = quantized(picture)[65 * 160 + 85];
    EXPECT_LT(meanDifference({shown}, {0xFFFF00FF}), 12);
}

TEST(ColorQuantizer, ErrorsDoNotRunAcrossTransparentPixels) {
    TestPicture picture(200, 40, PixelFormat32bppARGB);
    picture.paint([](int x, int y) { return x == 100 ? 0 : x < 100 ? photoAt(x, y) : 0xFFFFFFFF; });
    const Pixels shown = quantized(picture);
    for (int y = 0; y < 40; ++y)
        EXPECT_EQ(shown[static_cast<std::size_t>(y * 200 + 150)], 0xFFFFFFFF);
}

} // namespace GdiplusBackend
