#include "gdiplus/encoders/GifEncoder.h"

#include "backends/gdiplus/encoders/Decoded.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

Decoded roundTrip(const TestPicture& picture) {
    return decodeGif(encoded(encodeGif, picture.view()));
}

/// 16x16 pixels, each of its own colour.
TestPicture picture256(Gdiplus::PixelFormat format) {
    TestPicture picture(16, 16, format);
    const auto colours = distinctColours(256);
    return picture.paint([&](int x, int y) {
        const int number = 16 * y + x;
        return colours[static_cast<std::size_t>(number)];
    });
}

} // namespace

TEST(GifEncoder, Exactly256ColoursAreKept) {
    for (const auto format : {PixelFormat24bppRGB, PixelFormat32bppARGB}) {
        const TestPicture picture = picture256(format);
        const Decoded decoded = roundTrip(picture);
        EXPECT_EQ(decoded.pixels, picture.pixels());
        EXPECT_FALSE(decoded.transparentIndex.has_value());
    }
}

TEST(GifEncoder, Transparency255ColoursAndOneTransparentAreKept) {
    TestPicture picture(16, 16, PixelFormat32bppARGB);
    picture.paint([](int x, int y) {
        const int number = 16 * y + x;
        return number == 100 ? 0U : distinctColours(256)[static_cast<std::size_t>(number)];
    });
    const Decoded decoded = roundTrip(picture);
    EXPECT_EQ(decoded.pixels, picture.pixels());
    EXPECT_TRUE(decoded.transparentIndex.has_value());
}

TEST(GifEncoder, AlphaBelow128IsTransparentAndAboveOpaque) {
    TestPicture picture(4, 1, PixelFormat32bppARGB);
    picture.paint([](int x, int) {
        constexpr Gdiplus::ARGB colours[] = {0x00FF0000, 0x7F00FF00, 0x800000FF, 0xFF123456};
        return colours[x];
    });
    EXPECT_EQ(roundTrip(picture).pixels, (Pixels{0, 0, 0xFF0000FF, 0xFF123456}));
}

TEST(GifEncoder, PicturesOfMoreColoursKeepTheirTransparentPixels) {
    TestPicture picture(64, 48, PixelFormat32bppARGB);
    picture.paint([](int x, int y) { return x > 20 && x < 40 && y < 30 ? 0x00FFFFFF : photoAt(x, y); });
    const Decoded decoded = roundTrip(picture);
    ASSERT_TRUE(decoded.transparentIndex.has_value());
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x)
            EXPECT_EQ(decoded.at(x, y) == 0, x > 20 && x < 40 && y < 30) << x << ", " << y;
}

TEST(GifEncoder, PalettesAndIndicesAreKept) {
    TestPicture picture(40, 30, PixelFormat8bppIndexed);
    const auto colours = distinctColours(256);
    picture.paintIndices(colours, [](int x, int y) { return (x + 40 * y) % 256; });
    const Decoded decoded = roundTrip(picture);
    EXPECT_EQ(decoded.palette, colours);
    EXPECT_EQ(decoded.pixels, picture.pixels());
}

TEST(GifEncoder, TransparentPaletteEntriesBecomeOneIndex) {
    TestPicture picture(4, 1, PixelFormat4bppIndexed);
    picture.paintIndices({0xFF112233, 0x00FFFFFF, 0x7F445566, 0x90778899}, [](int x, int) { return x; });
    const Decoded decoded = roundTrip(picture);
    EXPECT_EQ(decoded.transparentIndex, 1);
    EXPECT_EQ(decoded.pixels, (Pixels{0xFF112233, 0, 0, 0xFF778899}));
}

TEST(GifEncoder, PhotoIsCloseToItselfPixelByPixel) {
    TestPicture picture(160, 120, PixelFormat24bppRGB);
    picture.paint(photoAt);
    EXPECT_LT(meanDifference(roundTrip(picture).pixels, picture.pixels()), 6);
}

TEST(GifEncoder, EmptySurplusOfTheColourTableIsSmall) {
    TestPicture picture(3, 1, PixelFormat24bppRGB);
    picture.paint([](int x, int) { return distinctColours(3)[static_cast<std::size_t>(x)]; });
    EXPECT_EQ(roundTrip(picture).palette.size(), 4U);
}

} // namespace GdiplusBackend
