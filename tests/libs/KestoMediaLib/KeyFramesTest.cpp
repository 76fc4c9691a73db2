#include "KestoMediaLib/KeyFrames.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using KestoMediaLib::eased;
using KestoMediaLib::Easing;
using KestoMediaLib::KeyFrame;
using KestoMediaLib::KeyFramedParam;
using KestoMediaLib::KeyFramedVector;
using KestoMediaLib::SafeRational;

KeyFramedParam fromTenToTwenty(Easing easing) {
    return KeyFramedParam({KeyFrame{1, 10, easing}, KeyFrame{3, 20, Easing::Linear}});
}

TEST(KeyFrames, ANumberStaysAtAllTimes) {
    const KeyFramedParam param(7);
    EXPECT_EQ(param.valueAt(-1), 7);
    EXPECT_EQ(param.valueAt(0), 7);
    EXPECT_EQ(param.valueAt(100), 7);
}

TEST(KeyFrames, KeepsTheEndValuesOutside) {
    const KeyFramedParam param = fromTenToTwenty(Easing::Linear);
    EXPECT_EQ(param.valueAt(0), 10);
    EXPECT_EQ(param.valueAt(1), 10);
    EXPECT_EQ(param.valueAt(3), 20);
    EXPECT_EQ(param.valueAt(4), 20);
}

TEST(KeyFrames, LinearGoesEvenly) {
    EXPECT_DOUBLE_EQ(fromTenToTwenty(Easing::Linear).valueAt(SafeRational(3, 2)), 12.5);
}

TEST(KeyFrames, EaseInStartsSlowly) {
    EXPECT_DOUBLE_EQ(fromTenToTwenty(Easing::EaseIn).valueAt(2), 12.5);
}

TEST(KeyFrames, EaseOutEndsSlowly) {
    EXPECT_DOUBLE_EQ(fromTenToTwenty(Easing::EaseOut).valueAt(2), 17.5);
}

TEST(KeyFrames, EaseInOutIsSlowAtBothEnds) {
    const KeyFramedParam param = fromTenToTwenty(Easing::EaseInOut);
    EXPECT_DOUBLE_EQ(param.valueAt(SafeRational(3, 2)), 11.25);
    EXPECT_DOUBLE_EQ(param.valueAt(2), 15);
    EXPECT_DOUBLE_EQ(param.valueAt(SafeRational(5, 2)), 18.75);
}

TEST(KeyFrames, HoldJumpsAtTheNextKeyFrame) {
    const KeyFramedParam param = fromTenToTwenty(Easing::Hold);
    EXPECT_EQ(param.valueAt(SafeRational(2999, 1000)), 10);
    EXPECT_EQ(param.valueAt(3), 20);
}

TEST(KeyFrames, EachEasingGoesFromZeroToOne) {
    for (const Easing easing : {Easing::Linear, Easing::EaseIn, Easing::EaseOut, Easing::EaseInOut}) {
        EXPECT_EQ(eased(easing, 0), 0);
        EXPECT_EQ(eased(easing, 1), 1);
    }
}

TEST(KeyFrames, EachStretchHasTheEasingOfItsFirstKeyFrame) {
    const KeyFramedParam param(
        {KeyFrame{0, 0, Easing::Hold}, KeyFrame{1, 10, Easing::Linear}, KeyFrame{2, 20, Easing::Hold}});
    EXPECT_EQ(param.valueAt(SafeRational(1, 2)), 0);
    EXPECT_DOUBLE_EQ(param.valueAt(SafeRational(3, 2)), 15);
    EXPECT_EQ(param.valueAt(5), 20);
}

TEST(KeyFrames, RefusesTimesThatDoNotRise) {
    EXPECT_THROW(KeyFramedParam({KeyFrame{1, 0}, KeyFrame{1, 1}}), std::invalid_argument);
    EXPECT_THROW(KeyFramedParam({KeyFrame{2, 0}, KeyFrame{1, 1}}), std::invalid_argument);
    EXPECT_THROW(KeyFramedParam(std::vector<KeyFrame>{}), std::invalid_argument);
}

TEST(KeyFrames, AVectorHasTwoComponents) {
    const KeyFramedVector vector(3, 4);
    EXPECT_EQ(vector.at(0).valueAt(0), 3);
    EXPECT_EQ(vector.at(1).valueAt(0), 4);
    EXPECT_THROW(vector.at(2), std::out_of_range);
    EXPECT_THROW(vector.at(-1), std::out_of_range);
}

} // namespace
