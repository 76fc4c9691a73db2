#include "production/FitWithinBounds.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace KestoThumbnailer {

namespace {

struct Lengths {
    int width;
    int height;

    friend bool operator==(const Lengths&, const Lengths&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Lengths& size) {
        return out << size.width << " x " << size.height;
    }
};

Lengths fitted(Lengths size, Lengths bounds) {
    FitWithinBounds(size.width, size.height, bounds.width, bounds.height);
    return size;
}

constexpr int longest = std::numeric_limits<int>::max();

} // namespace

TEST(FitWithinBounds, AWideSizeIsHeldByTheWidth) {
    EXPECT_EQ(fitted({1920, 1080}, {160, 120}), (Lengths{160, 90}));
}

TEST(FitWithinBounds, ATallSizeIsHeldByTheHeight) {
    EXPECT_EQ(fitted({1080, 1920}, {160, 120}), (Lengths{68, 120}));
}

TEST(FitWithinBounds, ASizeOfTheSameShapeFillsTheBounds) {
    EXPECT_EQ(fitted({400, 300}, {160, 120}), (Lengths{160, 120}));
}

TEST(FitWithinBounds, AHeightAloneBoundsBoth) {
    EXPECT_EQ(fitted({100, 50}, {0, 30}), (Lengths{60, 30}));
}

TEST(FitWithinBounds, AWidthAloneBoundsBoth) {
    EXPECT_EQ(fitted({100, 50}, {40, 0}), (Lengths{40, 20}));
}

TEST(FitWithinBounds, OneBoundThatIsKeptChangesNothing) {
    EXPECT_EQ(fitted({100, 50}, {0, 50}), (Lengths{100, 50}));
    EXPECT_EQ(fitted({100, 50}, {100, 0}), (Lengths{100, 50}));
}

TEST(FitWithinBounds, NoLengthFallsBelowOne) {
    EXPECT_EQ(fitted({1000, 3}, {10, 10}), (Lengths{10, 1}));
    EXPECT_EQ(fitted({1000, 3}, {10, 0}), (Lengths{10, 1}));
    EXPECT_EQ(fitted({3, 1000}, {0, 10}), (Lengths{1, 10}));
}

TEST(FitWithinBounds, NothingIsEnlarged) {
    EXPECT_EQ(fitted({50, 50}, {100, 100}), (Lengths{50, 50}));
}

TEST(FitWithinBounds, NoBoundsChangeNothing) {
    EXPECT_EQ(fitted({40000, 30000}, {0, 0}), (Lengths{40000, 30000}));
}

TEST(FitWithinBounds, NegativeBoundsChangeNothing) {
    EXPECT_EQ(fitted({100, 50}, {-1, 10}), (Lengths{100, 50}));
    EXPECT_EQ(fitted({100, 50}, {10, -1}), (Lengths{100, 50}));
    EXPECT_EQ(fitted({100, 50}, {-10, -10}), (Lengths{100, 50}));
}

TEST(FitWithinBounds, TwoBoundsRoundHalvesAwayFromZero) {
    EXPECT_EQ(fitted({200, 105}, {100, 100}), (Lengths{100, 53}));
}

TEST(FitWithinBounds, OneBoundTruncates) {
    EXPECT_EQ(fitted({200, 105}, {100, 0}), (Lengths{100, 52}));
}

TEST(FitWithinBounds, OneBoundIsReckonedInSinglePrecision) {
    // 21 / 133 * 95 is 15; in single precision the product falls short of it.
    EXPECT_EQ(fitted({21, 133}, {0, 95}), (Lengths{14, 95}));
    EXPECT_EQ(fitted({133, 21}, {95, 0}), (Lengths{95, 14}));
}

TEST(FitWithinBounds, ProductsThatWrapChooseTheOtherBound) {
    // 50000 * 43000 leaves 32 bits and becomes negative, so that the height decides against the shape.
    EXPECT_EQ(fitted({50000, 40000}, {49999, 43000}), (Lengths{53750, 43000}));
}

TEST(FitWithinBounds, ResultsBeyondTheRangeAreHeldAtItsEnd) {
    EXPECT_EQ(fitted({longest, 1}, {100, 100}), (Lengths{longest, 100}));
    EXPECT_EQ(fitted({longest, 100000001}, {0, 100000000}), (Lengths{longest, 100000000}));
}

TEST(FitWithinBounds, ASizeThatIsNoneEndsWithALengthOfAtLeastOne) {
    EXPECT_EQ(fitted({0, 200}, {100, 100}), (Lengths{1, 100}));
    EXPECT_EQ(fitted({200, 0}, {100, 100}), (Lengths{100, 1}));
    EXPECT_EQ(fitted({-5, 200}, {0, 100}), (Lengths{1, 100}));
}

} // namespace KestoThumbnailer
