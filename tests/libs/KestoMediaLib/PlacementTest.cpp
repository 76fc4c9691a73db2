#include "KestoMediaLib/PlainMedia.h"

#include <gtest/gtest.h>

namespace {

using KestoMediaLib::croppedArea;
using KestoMediaLib::KeyFrame;
using KestoMediaLib::KeyFramedParam;
using KestoMediaLib::KeyFramedVector;
using KestoMediaLib::opacityAt;
using KestoMediaLib::Placement;
using KestoMediaLib::placementMatrix;
using KestoMediaLib::Point;

void expectCarried(const Placement& placement, const Point& from, const Point& to) {
    const Point carried = placementMatrix(placement, 0, 200, 100) * from;
    EXPECT_DOUBLE_EQ(carried.x, to.x);
    EXPECT_DOUBLE_EQ(carried.y, to.y);
}

TEST(Placement, LiesInTheMiddleAtFirst) {
    expectCarried({}, {100, 50, 0}, {0, 0, 0});
    expectCarried({}, {0, 0, 0}, {-100, -50, 0});
}

TEST(Placement, PositionIsThatOfTheAnchor) {
    Placement placement;
    placement.position = {30, -20};
    placement.anchor = {0, 1};
    expectCarried(placement, {0, 100, 0}, {30, -20, 0});
}

TEST(Placement, ScalesAboutTheAnchor) {
    Placement placement;
    placement.scale = {2, 3};
    expectCarried(placement, {110, 60, 0}, {20, 30, 0});
}

TEST(Placement, TurnsClockwiseAfterScaling) {
    Placement placement;
    placement.scale = {2, 1};
    placement.rotation = 90;
    expectCarried(placement, {110, 50, 0}, {0, 20, 0});
    expectCarried(placement, {100, 60, 0}, {-10, 0, 0});
}

TEST(Placement, QuarterTurnsAreExact) {
    Placement placement;
    for (const double degrees : {-270.0, -180.0, -90.0, 0.0, 90.0, 180.0, 270.0, 360.0, 3690.0}) {
        placement.rotation = degrees;
        const auto matrix = placementMatrix(placement, 0, 0, 0);
        EXPECT_EQ(matrix.at(0, 0), std::round(matrix.at(0, 0))) << degrees;
        EXPECT_EQ(matrix.at(0, 1), std::round(matrix.at(0, 1))) << degrees;
    }
}

TEST(Placement, MovesWithItsKeyFrames) {
    Placement placement;
    placement.position = KeyFramedVector(KeyFramedParam({KeyFrame{0, 0}, KeyFrame{2, 100}}), 5);
    const Point middle = placementMatrix(placement, 1, 0, 0) * Point(0, 0, 0);
    EXPECT_DOUBLE_EQ(middle.x, 50);
    EXPECT_DOUBLE_EQ(middle.y, 5);
}

TEST(Placement, CropsCutPartsOfTheSidesOff) {
    Placement placement;
    placement.cropLeft = 0.25;
    placement.cropTop = 0.1;
    placement.cropRight = 0.5;
    const auto area = croppedArea(placement, 0, 200, 100);
    EXPECT_DOUBLE_EQ(area.x, 50);
    EXPECT_DOUBLE_EQ(area.y, 10);
    EXPECT_DOUBLE_EQ(area.width, 50);
    EXPECT_DOUBLE_EQ(area.height, 90);
}

TEST(Placement, CropsThatMeetLeaveNothing) {
    Placement placement;
    placement.cropLeft = 0.75;
    placement.cropRight = 0.75;
    placement.cropTop = 7;
    const auto area = croppedArea(placement, 0, 200, 100);
    EXPECT_EQ(area.width, 0);
    EXPECT_EQ(area.height, 0);
}

TEST(Placement, OpacityStaysInItsRange) {
    Placement placement;
    placement.opacity = 1.5;
    EXPECT_EQ(opacityAt(placement, 0), 1);
    placement.opacity = -0.5;
    EXPECT_EQ(opacityAt(placement, 0), 0);
}

TEST(Placement, IsReadFromTheMedia) {
    KestoMediaLib::PlaceholderMedia media;
    Placement placement;
    placement.rotation = 30;
    media.setPlacement(placement);
    EXPECT_EQ(KestoMediaLib::placementOf(media).rotation.valueAt(0), 30);
}

} // namespace
