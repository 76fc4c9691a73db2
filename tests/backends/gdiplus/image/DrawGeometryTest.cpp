#include "gdiplus/image/DrawGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace GdiplusBackend;

TEST(DrawGeometry, AWholeDrawInsideTheTargetPaintsAllOfIt) {
    const PaintedAxis axis = cutToPicture({10, 20, 0, 40}, 40, 100);
    EXPECT_EQ(axis.first, 10);
    EXPECT_EQ(axis.last, 30);
    EXPECT_DOUBLE_EQ(axis.sourceStart, 0);
    EXPECT_DOUBLE_EQ(axis.sourceLength, 40);
}

TEST(DrawGeometry, CuttingAtTheTargetsStartKeepsTheScale) {
    const PaintedAxis axis = cutToPicture({-5, 20, 0, 40}, 40, 100);
    EXPECT_EQ(axis.first, 0);
    EXPECT_EQ(axis.last, 15);
    EXPECT_DOUBLE_EQ(axis.sourceStart, 10);
    EXPECT_DOUBLE_EQ(axis.sourceLength, 30);
}

TEST(DrawGeometry, CuttingAtTheTargetsEndKeepsTheScale) {
    const PaintedAxis axis = cutToPicture({90, 20, 0, 10}, 10, 100);
    EXPECT_EQ(axis.first, 90);
    EXPECT_EQ(axis.last, 100);
    EXPECT_DOUBLE_EQ(axis.sourceLength, 5);
}

TEST(DrawGeometry, SourceOutsideThePicturePaintsNothingThere) {
    const PaintedAxis axis = cutToPicture({0, 30, -10, 30}, 10, 100);
    EXPECT_EQ(axis.first, 10);
    EXPECT_EQ(axis.last, 20);
    EXPECT_DOUBLE_EQ(axis.sourceStart, 0);
    EXPECT_DOUBLE_EQ(axis.sourceLength, 10);
}

TEST(DrawGeometry, NegativeTargetLengthsMirror) {
    const PaintedAxis axis = cutToPicture({20, -10, 0, 10}, 10, 100);
    EXPECT_TRUE(axis.mirrored);
    EXPECT_EQ(axis.first, 10);
    EXPECT_EQ(axis.last, 20);
}

TEST(DrawGeometry, TwoNegativeLengthsDoNotMirror) {
    EXPECT_FALSE(cutToPicture({20, -10, 10, -10}, 10, 100).mirrored);
}

TEST(DrawGeometry, AMirroredDrawCutAtTheTargetShowsTheOtherEndOfThePicture) {
    // Pixels -5..4 show the picture backwards: what is visible are its first five pixels.
    const PaintedAxis axis = cutToPicture({5, -10, 0, 10}, 10, 100);
    EXPECT_EQ(axis.first, 0);
    EXPECT_EQ(axis.last, 5);
    EXPECT_DOUBLE_EQ(10 - (axis.sourceStart + axis.sourceLength), 0);
    EXPECT_DOUBLE_EQ(axis.sourceLength, 5);
}

TEST(DrawGeometry, PixelsArePaintedWhoseCentresLieInside) {
    const PaintedAxis axis = cutToPicture({0.4, 2.2, 0, 10}, 10, 100);
    EXPECT_EQ(axis.first, 0); // centre 0.5
    EXPECT_EQ(axis.last, 3);  // centre 2.5 lies before 2.6
}

TEST(DrawGeometry, EmptyFarAndNonFiniteDrawsPaintNothing) {
    EXPECT_TRUE(cutToPicture({0, 0, 0, 10}, 10, 100).isEmpty());
    EXPECT_TRUE(cutToPicture({0, 10, 0, 0}, 10, 100).isEmpty());
    EXPECT_TRUE(cutToPicture({200, 10, 0, 10}, 10, 100).isEmpty());
    EXPECT_TRUE(cutToPicture({-1e9, 10, 0, 10}, 10, 100).isEmpty());
    EXPECT_TRUE(cutToPicture({0, 10, 20, 10}, 10, 100).isEmpty());
    EXPECT_TRUE(cutToPicture({NAN, 10, 0, 10}, 10, 100).isEmpty());
    EXPECT_TRUE(cutToPicture({0, std::numeric_limits<double>::infinity(), 0, 10}, 10, 100).isEmpty());
}
