#include "gdiplus/image/DrawPlan.h"

#include <gtest/gtest.h>

#include <array>

using namespace GdiplusBackend;

namespace {

constexpr std::array<int, 3> jpegReductions = {2, 4, 8};
using Steps = std::vector<std::string>;

Steps planOf(std::span<const int> reductions, int targetWidth, int targetHeight,
             Gdiplus::RotateFlipType turn = Gdiplus::RotateNoneFlipNone, Kernel kernel = Kernel::Linear) {
    return describe(planDrawing({.width = 4000,
                                 .height = 3000,
                                 .reductions = reductions,
                                 .turn = turn,
                                 .targetWidth = targetWidth,
                                 .targetHeight = targetHeight,
                                 .kernel = kernel}));
}

} // namespace

TEST(BitmapDrawPlan, JpegIsDecodedAtTheReducedSizeThatStillOversamplesTheTarget) {
    EXPECT_EQ(planOf(jpegReductions, 160, 120), (Steps{"decode 1/8", "scale to 160x120"}));
    EXPECT_EQ(planOf(jpegReductions, 500, 375), (Steps{"decode 1/4", "scale to 500x375"}));
    EXPECT_EQ(planOf(jpegReductions, 800, 600), (Steps{"decode 1/2", "scale to 800x600"}));
    EXPECT_EQ(planOf(jpegReductions, 1333, 1000), (Steps{"decode 1/2", "scale to 1333x1000"}));
    EXPECT_EQ(planOf(jpegReductions, 1334, 1001), (Steps{"decode", "scale to 1334x1001"}));
}

TEST(BitmapDrawPlan, WithoutReducedDecodingBlocksAreAveragedAsTheRowsArrive) {
    EXPECT_EQ(planOf({}, 160, 120), (Steps{"decode", "average 12x12 to 334x250", "scale to 160x120"}));
}

TEST(BitmapDrawPlan, BlocksAreAveragedBehindReducedDecodingToo) {
    EXPECT_EQ(planOf(jpegReductions, 40, 30),
              (Steps{"decode 1/8", "average 6x6 to 84x63", "scale to 40x30"}));
}

TEST(BitmapDrawPlan, ATurnIsDoneLastAndSwapsTheSidesBeforeIt) {
    EXPECT_EQ(planOf(jpegReductions, 120, 160, Gdiplus::Rotate90FlipNone),
              (Steps{"decode 1/8", "scale to 160x120", "turn 90"}));
    EXPECT_EQ(planOf(jpegReductions, 160, 120, Gdiplus::Rotate180FlipX),
              (Steps{"decode 1/8", "scale to 160x120", "turn 180", "mirror"}));
}

TEST(BitmapDrawPlan, OneSideShrunkLittleKeepsTheWholeDecodingFine) {
    EXPECT_EQ(planOf(jpegReductions, 100, 2900),
              (Steps{"decode", "average 20x1 to 200x3000", "scale to 100x2900"}));
}

TEST(BitmapDrawPlan, NearestTakesThePixelsAsTheyAre) {
    EXPECT_EQ(planOf(jpegReductions, 160, 120, Gdiplus::RotateNoneFlipNone, Kernel::Nearest),
              (Steps{"decode", "scale to 160x120"}));
}

TEST(BitmapDrawPlan, EnlargingDecodesWhole) {
    EXPECT_EQ(planOf(jpegReductions, 8000, 6000), (Steps{"decode", "scale to 8000x6000"}));
}
