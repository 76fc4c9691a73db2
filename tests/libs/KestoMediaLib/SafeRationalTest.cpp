#include "platform/KestoMediaTime.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

using KestoMediaLib::modelTimePerSecond;
using KestoMediaLib::RationalUtil;
using KestoMediaLib::SafeRational;

constexpr __int64 greatest = std::numeric_limits<__int64>::max();
constexpr __int64 lowest = std::numeric_limits<__int64>::min();

TEST(SafeRational, IsInLowestTermsWithADenominatorAboveZero) {
    const SafeRational value(6, -4);
    EXPECT_EQ(value.numerator(), -3);
    EXPECT_EQ(value.denominator(), 2);
}

TEST(SafeRational, HasOneZero) {
    EXPECT_EQ(SafeRational(0, -7), SafeRational());
    EXPECT_EQ(SafeRational(0, 7).denominator(), 1);
}

TEST(SafeRational, RefusesADenominatorOfZero) {
    EXPECT_THROW(SafeRational(1, 0), std::invalid_argument);
    EXPECT_THROW(SafeRational(1) / SafeRational(0), std::invalid_argument);
}

TEST(SafeRational, CalculatesExactly) {
    EXPECT_EQ(SafeRational(1, 3) + SafeRational(1, 6), SafeRational(1, 2));
    EXPECT_EQ(SafeRational(1, 3) - SafeRational(1, 2), SafeRational(-1, 6));
    EXPECT_EQ(SafeRational(-2, 3) * SafeRational(3, 4), SafeRational(-1, 2));
    EXPECT_EQ(SafeRational(1, 3) / SafeRational(-2, 3), SafeRational(-1, 2));
}

TEST(SafeRational, IsOrderedByValue) {
    EXPECT_LT(SafeRational(1, 3), SafeRational(1, 2));
    EXPECT_LT(SafeRational(-1, 2), SafeRational(-1, 3));
    EXPECT_LT(SafeRational(greatest - 1, greatest), SafeRational(1));
}

TEST(SafeRational, StopsAtTheGreatestOfItsSign) {
    EXPECT_EQ(SafeRational(greatest) * SafeRational(3), SafeRational(greatest));
    EXPECT_EQ(SafeRational(-greatest) + SafeRational(-greatest), SafeRational(-greatest));
    EXPECT_EQ(SafeRational(lowest), SafeRational(-greatest));
}

TEST(SafeRational, KeepsAFractionNearOneThatDoesNotFit) {
    const SafeRational third(1, 3);
    const SafeRational sum = SafeRational(greatest / 3) + third;
    EXPECT_NEAR(sum.toDouble(), static_cast<double>(greatest / 3), 1.0);
    const SafeRational product = SafeRational(greatest - 1, greatest) * SafeRational(greatest - 2, greatest);
    EXPECT_NEAR(product.toDouble(), 1.0, 1e-15);
}

TEST(SafeRational, BecomesZeroWhereTooSmallToFit) {
    EXPECT_EQ(SafeRational(1, greatest) * SafeRational(1, greatest), SafeRational(0));
    EXPECT_EQ(SafeRational(1, lowest), SafeRational(0));
}

TEST(SafeRational, IsMadeOfABoostRational) {
    EXPECT_EQ(SafeRational(boost::rational<__int64>(10, 4)), SafeRational(5, 2));
}

TEST(RationalUtil, CountsModelTimeInWholeNumbersAtUsualRates) {
    for (const auto& [rate, den] : {std::pair<__int64, __int64>{24000, 1001},
                                    {24, 1},
                                    {25, 1},
                                    {30000, 1001},
                                    {60000, 1001},
                                    {120, 1},
                                    {44100, 1},
                                    {48000, 1},
                                    {192000, 1}}) {
        const __int64 one = RationalUtil::toKestoTime(SafeRational(den, rate));
        EXPECT_EQ(RationalUtil::toSeconds(one), SafeRational(den, rate)) << rate << '/' << den;
    }
}

TEST(RationalUtil, RoundsToTheNearestModelTime) {
    EXPECT_EQ(RationalUtil::toKestoTime(1), modelTimePerSecond);
    EXPECT_EQ(RationalUtil::toKestoTime(SafeRational(1, modelTimePerSecond * 2)), 1);
    EXPECT_EQ(RationalUtil::toKestoTime(SafeRational(-1, modelTimePerSecond * 2)), -1);
    EXPECT_EQ(RationalUtil::toKestoTime(SafeRational(1, modelTimePerSecond * 3)), 0);
}

TEST(RationalUtil, StopsAtTheEndsOfModelTime) {
    EXPECT_EQ(RationalUtil::toKestoTime(greatest), greatest);
    EXPECT_EQ(RationalUtil::toKestoTime(-greatest), lowest);
}

} // namespace
