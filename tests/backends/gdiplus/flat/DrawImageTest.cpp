#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory>

using namespace Gdiplus;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

namespace {

constexpr InterpolationMode allModes[] = {InterpolationModeDefault,
                                          InterpolationModeLowQuality,
                                          InterpolationModeHighQuality,
                                          InterpolationModeBilinear,
                                          InterpolationModeBicubic,
                                          InterpolationModeNearestNeighbor,
                                          InterpolationModeHighQualityBilinear,
                                          InterpolationModeHighQualityBicubic};

class DrawImage : public ::testing::Test {
protected:
    static std::unique_ptr<Bitmap> numbered(int width, int height, PixelFormat format) {
        auto bitmap = std::make_unique<Bitmap>(width, height, format);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                bitmap->SetPixel(x, y, Color(255, static_cast<BYTE>(x * 10), static_cast<BYTE>(y * 10), 77));
        return bitmap;
    }
    static ARGB numberedColor(int x, int y) {
        return Color(255, static_cast<BYTE>(x * 10), static_cast<BYTE>(y * 10), 77).GetValue();
    }

    GdiplusUser gdiplus;
};

Status drawInto(Bitmap& target, Bitmap& source, const Rect& to, const Rect& from,
                InterpolationMode mode = InterpolationModeDefault) {
    Graphics graphics(&target);
    graphics.SetInterpolationMode(mode);
    return graphics.DrawImage(&source, to, from.X, from.Y, from.Width, from.Height, UnitPixel);
}

int redOf(Bitmap& bitmap, int x, int y) {
    return static_cast<int>(pixelOf(bitmap, x, y) >> 16 & 255);
}

} // namespace

TEST_F(DrawImage, OneToOneIsAnExactCopyInEveryModeAndFormat) {
    for (const PixelFormat format :
         {PixelFormat24bppRGB, PixelFormat32bppRGB, PixelFormat32bppARGB, PixelFormat32bppPARGB})
        for (const InterpolationMode mode : allModes) {
            const auto source = numbered(7, 5, format);
            Bitmap target(7, 5, format);
            ASSERT_EQ(drawInto(target, *source, {0, 0, 7, 5}, {0, 0, 7, 5}, mode), Ok);
            for (int y = 0; y < 5; ++y)
                for (int x = 0; x < 7; ++x)
                    ASSERT_EQ(pixelOf(target, x, y), numberedColor(x, y))
                        << x << ',' << y << " mode " << mode;
        }
}

TEST_F(DrawImage, AtNegativePositionsCutsWithoutMovingTheRest) {
    const auto source = numbered(6, 6, PixelFormat32bppARGB);
    Bitmap target(4, 4, PixelFormat32bppARGB);
    ASSERT_EQ(drawInto(target, *source, {-2, -3, 6, 6}, {0, 0, 6, 6}), Ok);
    EXPECT_EQ(pixelOf(target, 0, 0), numberedColor(2, 3));
    EXPECT_EQ(pixelOf(target, 3, 2), numberedColor(5, 5));
    EXPECT_EQ(pixelOf(target, 0, 3), 0U);
}

TEST_F(DrawImage, CutScaledDrawsEqualTheSamePartOfTheWholeDraw) {
    const auto source = numbered(24, 24, PixelFormat24bppRGB);
    for (const InterpolationMode mode : allModes) {
        Bitmap whole(60, 60, PixelFormat24bppRGB);
        ASSERT_EQ(drawInto(whole, *source, {0, 0, 60, 60}, {0, 0, 24, 24}, mode), Ok);
        Bitmap cut(20, 20, PixelFormat24bppRGB);
        ASSERT_EQ(drawInto(cut, *source, {-30, -10, 60, 60}, {0, 0, 24, 24}, mode), Ok);
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 20; ++x)
                ASSERT_NEAR(redOf(cut, x, y), redOf(whole, x + 30, y + 10), 1)
                    << x << ',' << y << " mode " << mode;
    }
}

TEST_F(DrawImage, PartsOfTheSourceOutsideThePicturePaintNothing) {
    const auto source = numbered(4, 4, PixelFormat32bppARGB);
    Bitmap target(8, 8, PixelFormat32bppARGB);
    ASSERT_EQ(drawInto(target, *source, {0, 0, 8, 8}, {-2, -2, 8, 8}), Ok);
    EXPECT_EQ(pixelOf(target, 1, 1), 0U);
    EXPECT_EQ(pixelOf(target, 2, 2), numberedColor(0, 0));
    EXPECT_EQ(pixelOf(target, 5, 5), numberedColor(3, 3));
    EXPECT_EQ(pixelOf(target, 6, 6), 0U);
}

TEST_F(DrawImage, OfNoSizeOrFarAwayIsFineAndPaintsNothing) {
    const auto source = numbered(4, 4, PixelFormat32bppARGB);
    Bitmap target(4, 4, PixelFormat32bppARGB);
    for (const Rect& to :
         {Rect(0, 0, 0, 4), Rect(100, 0, 4, 4), Rect(2147483647, 0, 4, 4), Rect(-2147483647, 0, 4, 4)})
        EXPECT_EQ(drawInto(target, *source, to, {0, 0, 4, 4}), Ok);
    EXPECT_EQ(drawInto(target, *source, {0, 0, 4, 4}, {0, 0, 4, 0}), Ok);
    EXPECT_EQ(drawInto(target, *source, {0, 0, 4, 4}, {9, 9, 4, 4}), Ok);
    EXPECT_EQ(pixelOf(target, 0, 0), 0U);
}

TEST_F(DrawImage, AGiganticTargetCostsOnlyWhatIsSeen) {
    const auto source = numbered(2, 2, PixelFormat32bppARGB);
    Bitmap target(3, 3, PixelFormat32bppARGB);
    ASSERT_EQ(drawInto(target, *source, {-500'000'000, -500'000'000, 1'000'000'000, 1'000'000'000},
                       {0, 0, 2, 2}, InterpolationModeNearestNeighbor),
              Ok);
    EXPECT_EQ(pixelOf(target, 0, 0), numberedColor(1, 1));
}

TEST_F(DrawImage, NegativeSizesMirror) {
    const auto source = numbered(4, 3, PixelFormat32bppARGB);
    Bitmap target(4, 3, PixelFormat32bppARGB);
    ASSERT_EQ(drawInto(target, *source, {4, 0, -4, 3}, {0, 0, 4, 3}), Ok);
    for (int x = 0; x < 4; ++x)
        EXPECT_EQ(pixelOf(target, x, 1), numberedColor(3 - x, 1));
    ASSERT_EQ(drawInto(target, *source, {0, 3, 4, -3}, {0, 0, 4, 3}), Ok);
    EXPECT_EQ(pixelOf(target, 1, 0), numberedColor(1, 2));
}

TEST_F(DrawImage, ShrinkingACheckerboardGivesUniformGray) {
    Bitmap source(160, 160, PixelFormat24bppRGB);
    for (int y = 0; y < 160; ++y)
        for (int x = 0; x < 160; ++x)
            source.SetPixel(x, y, (x + y) % 2 == 0 ? Color(255, 255, 255) : Color(0, 0, 0));
    for (const InterpolationMode mode : allModes) {
        if (mode == InterpolationModeNearestNeighbor)
            continue;
        Bitmap target(20, 20, PixelFormat24bppRGB);
        ASSERT_EQ(drawInto(target, source, {0, 0, 20, 20}, {0, 0, 160, 160}, mode), Ok);
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 20; ++x)
                ASSERT_NEAR(redOf(target, x, y), 127.5, 1.5) << x << ',' << y << " mode " << mode;
    }
}

TEST_F(DrawImage, EnlargingNeverFadesAtTheBorders) {
    Bitmap source(3, 3, PixelFormat32bppARGB);
    Graphics(&source).Clear(Color(0xFFFFFFFFU));
    for (const InterpolationMode mode : allModes) {
        Bitmap target(30, 30, PixelFormat32bppARGB);
        ASSERT_EQ(drawInto(target, source, {0, 0, 30, 30}, {0, 0, 3, 3}, mode), Ok);
        for (int i = 0; i < 30; ++i) {
            ASSERT_EQ(pixelOf(target, i, 0), 0xFFFFFFFFU) << mode;
            ASSERT_EQ(pixelOf(target, 29, i), 0xFFFFFFFFU) << mode;
        }
    }
}

TEST_F(DrawImage, ATransparentNeighboursColourDoesNotBleed) {
    Bitmap source(2, 1, PixelFormat32bppARGB);
    source.SetPixel(0, 0, Color(0xFFFF0000U));
    source.SetPixel(1, 0, Color(0x0000FF00U));
    Bitmap target(8, 4, PixelFormat32bppARGB);
    ASSERT_EQ(drawInto(target, source, {0, 0, 8, 4}, {0, 0, 2, 1}), Ok);
    for (int x = 0; x < 8; ++x) {
        const ARGB color = pixelOf(target, x, 1);
        if (color >> 24 != 0) {
            EXPECT_EQ(color & 0x00FFFF, 0U) << x;
        }
    }
    EXPECT_EQ(pixelOf(target, 0, 1), 0xFFFF0000U);
    EXPECT_EQ(pixelOf(target, 7, 1) >> 24, 0U);
}

TEST_F(DrawImage, NearestTakesThePixelUnderTheCentre) {
    const auto source = numbered(4, 1, PixelFormat24bppRGB);
    Bitmap target(8, 1, PixelFormat24bppRGB);
    ASSERT_EQ(drawInto(target, *source, {0, 0, 8, 1}, {0, 0, 4, 1}, InterpolationModeNearestNeighbor), Ok);
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(redOf(target, x, 0), x / 2 * 10);
}

TEST_F(DrawImage, OntoItselfDrawsWhatWasThereBefore) {
    const auto bitmap = numbered(6, 1, PixelFormat32bppARGB);
    ASSERT_EQ(drawInto(*bitmap, *bitmap, {1, 0, 5, 1}, {0, 0, 5, 1}), Ok);
    for (int x = 1; x < 6; ++x)
        EXPECT_EQ(pixelOf(*bitmap, x, 0), numberedColor(x - 1, 0)) << x;
}

TEST_F(DrawImage, FromABitmapOverTheSameMemoryDrawsWhatWasThereBefore) {
    std::array<BYTE, 24> memory = {};
    Bitmap source(1, 6, 4, PixelFormat32bppRGB, memory.data());
    for (int y = 0; y < 6; ++y)
        source.SetPixel(0, y, Color(numberedColor(0, y)));
    Bitmap target(1, 5, 4, PixelFormat32bppRGB, memory.data() + 4);
    ASSERT_EQ(drawInto(target, source, {0, 0, 1, 5}, {0, 0, 1, 5}), Ok);
    for (int y = 0; y < 5; ++y)
        EXPECT_EQ(pixelOf(target, 0, y), numberedColor(0, y)) << y;
}

TEST_F(DrawImage, IndexedPicturesDrawThroughTheirPalette) {
    Bitmap source(2, 1, PixelFormat1bppIndexed);
    BitmapData locked;
    source.LockBits(nullptr, ImageLockModeWrite, PixelFormat1bppIndexed, &locked);
    static_cast<BYTE*>(locked.Scan0)[0] = 0x40;
    source.UnlockBits(&locked);
    Bitmap target(2, 1, PixelFormat24bppRGB);
    ASSERT_EQ(drawInto(target, source, {0, 0, 2, 1}, {0, 0, 2, 1}), Ok);
    EXPECT_EQ(pixelOf(target, 0, 0), 0xFF000000U);
    EXPECT_EQ(pixelOf(target, 1, 0), 0xFFFFFFFFU);
}

TEST_F(DrawImage, AtAPointAloneKeepsTheSizeAtEqualResolutions) {
    const auto source = numbered(3, 3, PixelFormat24bppRGB);
    Bitmap target(5, 5, PixelFormat24bppRGB);
    ASSERT_EQ(Graphics(&target).DrawImage(source.get(), 1, 2), Ok);
    EXPECT_EQ(pixelOf(target, 1, 2), numberedColor(0, 0));
    EXPECT_EQ(pixelOf(target, 3, 4), numberedColor(2, 2));
    EXPECT_EQ(pixelOf(target, 4, 4), 0xFF000000U);
}

TEST_F(DrawImage, WithFractionalRectanglesPaintsThePixelsWhoseCentresLieInside) {
    Bitmap source(2, 2, PixelFormat24bppRGB);
    Graphics(&source).Clear(Color(255, 255, 255));
    Bitmap target(6, 1, PixelFormat24bppRGB);
    ASSERT_EQ(Graphics(&target).DrawImage(&source, RectF(1.6F, 0, 2, 1), 0, 0, 2, 2, UnitPixel), Ok);
    for (int x = 0; x < 6; ++x)
        EXPECT_EQ(redOf(target, x, 0), x == 2 || x == 3 ? 255 : 0) << x;
}

TEST_F(DrawImage, RefusesOtherUnitsAndMissingPictures) {
    Bitmap target(2, 2, PixelFormat24bppRGB);
    Graphics graphics(&target);
    EXPECT_EQ(graphics.DrawImage(&target, Rect(0, 0, 1, 1), 0, 0, 1, 1, UnitInch), NotImplemented);
    EXPECT_EQ(graphics.DrawImage(nullptr, 0, 0), InvalidParameter);
    EXPECT_EQ(graphics.GetLastStatus(), InvalidParameter);
}

TEST_F(DrawImage, ALockedPictureIsInTheWrongState) {
    Bitmap source(2, 2, PixelFormat24bppRGB);
    BitmapData locked;
    source.LockBits(nullptr, ImageLockModeRead, PixelFormat24bppRGB, &locked);
    Bitmap target(2, 2, PixelFormat24bppRGB);
    EXPECT_EQ(drawInto(target, source, {0, 0, 2, 2}, {0, 0, 2, 2}), WrongState);
    source.UnlockBits(&locked);
}
