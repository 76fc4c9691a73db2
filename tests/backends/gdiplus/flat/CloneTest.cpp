#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

using namespace Gdiplus;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

namespace {

class Clone : public ::testing::Test {
protected:
    Clone() { bitmap.SetPixel(2, 1, Color(0x80402010U)); }

    GdiplusUser gdiplus;
    Bitmap bitmap{4, 3, PixelFormat32bppARGB};
};

} // namespace

TEST_F(Clone, CopiesARectangleAndSharesNothing) {
    const std::unique_ptr<Bitmap> clone(bitmap.Clone(2, 1, 2, 2, PixelFormat32bppARGB));
    ASSERT_TRUE(clone);
    EXPECT_EQ(clone->GetWidth(), 2U);
    EXPECT_EQ(pixelOf(*clone, 0, 0), 0x80402010U);
    clone->SetPixel(0, 0, Color(0xFFFFFFFFU));
    EXPECT_EQ(pixelOf(bitmap, 2, 1), 0x80402010U);
}

TEST_F(Clone, ConvertsLikeALock) {
    const std::unique_ptr<Bitmap> rgb(bitmap.Clone(0, 0, 4, 3, PixelFormat24bppRGB));
    EXPECT_EQ(pixelOf(*rgb, 2, 1), 0xFF402010U);
    const std::unique_ptr<Bitmap> premultiplied(bitmap.Clone(0, 0, 4, 3, PixelFormat32bppPARGB));
    EXPECT_EQ(pixelOf(*premultiplied, 2, 1), 0x803F1F0FU);
}

TEST_F(Clone, KeepsThePaletteOfAnIndexedBitmap) {
    Bitmap indexed(2, 2, PixelFormat1bppIndexed);
    const ColorPalette white = {0, 1, {0xFFFFFFFE}};
    ASSERT_EQ(indexed.SetPalette(&white), Ok);
    const std::unique_ptr<Bitmap> clone(indexed.Clone(0, 0, 2, 2, PixelFormat1bppIndexed));
    EXPECT_EQ(pixelOf(*clone, 0, 0), 0xFFFFFFFEU);
}

TEST_F(Clone, RefusesRectanglesOutsideAndFormatsThatNothingConvertsTo) {
    EXPECT_FALSE(bitmap.Clone(1, 0, 4, 3, PixelFormat32bppARGB));
    EXPECT_EQ(bitmap.GetLastStatus(), OutOfMemory);
    EXPECT_FALSE(bitmap.Clone(0, 0, 0, 3, PixelFormat32bppARGB));
    EXPECT_EQ(bitmap.GetLastStatus(), OutOfMemory);
    EXPECT_FALSE(bitmap.Clone(0, 0, 4, 3, PixelFormat8bppIndexed));
    EXPECT_EQ(bitmap.GetLastStatus(), OutOfMemory);
}
