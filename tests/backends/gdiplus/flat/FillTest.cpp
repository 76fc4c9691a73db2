#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

using namespace Gdiplus;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

TEST(Clear, ReplacesEveryPixelWithoutBlending) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(2, 2, PixelFormat32bppARGB);
    Graphics graphics(&bitmap);
    graphics.Clear(Color(0xFFFFFFFFU));
    ASSERT_EQ(graphics.Clear(Color(0x80402010U)), Ok);
    EXPECT_EQ(pixelOf(bitmap, 1, 1), 0x80402010U);
}

TEST(Clear, ToATransparentColourLeavesZeroBytes) {
    const GdiplusUser gdiplus;
    for (const ARGB color : {0x00000000U, 0x00FFFFFFU}) {
        Bitmap alpha(1, 1, PixelFormat32bppARGB);
        Graphics(&alpha).Clear(Color(color));
        EXPECT_EQ(pixelOf(alpha, 0, 0), 0U);
        Bitmap rgb(1, 1, PixelFormat24bppRGB);
        Graphics(&rgb).Clear(Color(color));
        EXPECT_EQ(pixelOf(rgb, 0, 0), 0xFF000000U);
    }
}

TEST(FillRectangle, BlendsAndIsCutToTheTarget) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(4, 4, PixelFormat32bppRGB);
    Graphics graphics(&bitmap);
    const SolidBrush half(Color(0x80FFFFFFU));
    ASSERT_EQ(graphics.FillRectangle(&half, -2, 2, 4, 100), Ok);
    EXPECT_EQ(pixelOf(bitmap, 1, 2), 0xFF808080U);
    EXPECT_EQ(pixelOf(bitmap, 1, 3), 0xFF808080U);
    EXPECT_EQ(pixelOf(bitmap, 2, 3), 0xFF000000U);
    EXPECT_EQ(pixelOf(bitmap, 1, 1), 0xFF000000U);
}

TEST(FillRectangle, OfNoSizeOrFarAwayDoesNothingAndIsFine) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(2, 2, PixelFormat32bppRGB);
    Graphics graphics(&bitmap);
    const SolidBrush white(Color(0xFFFFFFFFU));
    EXPECT_EQ(graphics.FillRectangle(&white, 0, 0, 0, 2), Ok);
    EXPECT_EQ(graphics.FillRectangle(&white, 0, 0, -1, 2), Ok);
    EXPECT_EQ(graphics.FillRectangle(&white, 2147483647, 0, 2147483647, 2), Ok);
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF000000U);
    EXPECT_EQ(graphics.FillRectangle(nullptr, 0, 0, 1, 1), InvalidParameter);
}

TEST(GraphicsContext, IsRefusedForIndexedBitmaps) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(2, 2, PixelFormat8bppIndexed);
    EXPECT_EQ(Graphics(&bitmap).GetLastStatus(), OutOfMemory);
}

TEST(InterpolationModes, ReadBackAsThePlatformResolvesThem) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1);
    Graphics graphics(&bitmap);
    EXPECT_EQ(graphics.GetInterpolationMode(), InterpolationModeBilinear);
    const InterpolationMode resolved[] = {InterpolationModeBilinear,
                                          InterpolationModeBilinear,
                                          InterpolationModeHighQualityBicubic,
                                          InterpolationModeBilinear,
                                          InterpolationModeBicubic,
                                          InterpolationModeNearestNeighbor,
                                          InterpolationModeHighQualityBilinear,
                                          InterpolationModeHighQualityBicubic};
    for (int mode = 0; mode < 8; ++mode) {
        EXPECT_EQ(graphics.SetInterpolationMode(static_cast<InterpolationMode>(mode)), Ok);
        EXPECT_EQ(graphics.GetInterpolationMode(), resolved[mode]);
    }
    EXPECT_EQ(graphics.SetInterpolationMode(static_cast<InterpolationMode>(8)), InvalidParameter);
    EXPECT_EQ(graphics.SetInterpolationMode(InterpolationModeInvalid), InvalidParameter);
}
