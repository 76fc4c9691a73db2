#include "gdiplus/encoders/colorquantizer/DistinctColors.h"

#include "backends/gdiplus/encoders/TestPicture.h"

#include <gtest/gtest.h>

namespace GdiplusBackend {

TEST(DistinctColors, CountsEachColourOnce) {
    TestPicture picture(20, 20, PixelFormat24bppRGB);
    picture.paint([](int x, int y) { return distinctColours(7)[static_cast<std::size_t>((x + y) % 7)]; });
    const auto colours = DistinctColors::of(picture.view());
    ASSERT_TRUE(colours.has_value());
    EXPECT_EQ(colours->colours().size(), 7U);
}

TEST(DistinctColors, GivesUpAfter256) {
    TestPicture picture(257, 1, PixelFormat24bppRGB);
    picture.paint([](int x, int) { return static_cast<Gdiplus::ARGB>(x) * 1031; });
    EXPECT_FALSE(DistinctColors::of(picture.view()).has_value());
}

TEST(DistinctColors, FindsEveryColourAgain) {
    TestPicture picture(256, 1, PixelFormat24bppRGB);
    picture.paint([](int x, int) { return static_cast<Gdiplus::ARGB>(x) * 1031; });
    const auto colours = DistinctColors::of(picture.view());
    ASSERT_TRUE(colours.has_value());
    for (int x = 0; x < 256; ++x)
        EXPECT_EQ(colours->indexOf(0xFF000000 | static_cast<Gdiplus::ARGB>(x) * 1031), x);
}

TEST(DistinctColors, TransparentPixelsAreOneColour) {
    TestPicture picture(5, 1, PixelFormat32bppARGB);
    picture.paint(
        [](int x, int) { return static_cast<Gdiplus::ARGB>(x) << 24 | static_cast<Gdiplus::ARGB>(x); });
    const auto colours = DistinctColors::of(picture.view());
    ASSERT_TRUE(colours.has_value());
    EXPECT_EQ(colours->colours().size(), 1U);
}

} // namespace GdiplusBackend
