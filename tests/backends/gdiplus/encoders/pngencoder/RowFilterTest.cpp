#include "gdiplus/encoders/pngencoder/RowFilter.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

using Bytes = std::vector<int>;

/// The filter's number and the filtered bytes of `next`, a row below those that `filter` had before.
Bytes filtered(RowFilter& filter, const Bytes& next) {
    std::ranges::transform(next, filter.row().begin(), [](int byte) { return static_cast<std::byte>(byte); });
    std::vector<std::byte> out(next.size() + 1);
    filter.filterTo(out);
    Bytes bytes;
    for (const std::byte byte : out)
        bytes.push_back(std::to_integer<int>(byte));
    return bytes;
}

} // namespace

TEST(RowFilter, SmallValuesAreLeftAlone) {
    RowFilter filter(6, 3);
    EXPECT_EQ(filtered(filter, {1, 0, 0, 0, 0, 1}), (Bytes{0, 1, 0, 0, 0, 0, 1}));
}

TEST(RowFilter, RampAlongTheRowIsSubtractedFromTheLeft) {
    RowFilter filter(9, 3);
    EXPECT_EQ(filtered(filter, {50, 60, 70, 51, 61, 71, 52, 62, 72}),
              (Bytes{1, 50, 60, 70, 1, 1, 1, 1, 1, 1}));
}

TEST(RowFilter, EqualRowsAreSubtractedFromAbove) {
    RowFilter filter(6, 3);
    filtered(filter, {10, 200, 30, 90, 15, 66});
    EXPECT_EQ(filtered(filter, {10, 200, 30, 90, 15, 67}), (Bytes{2, 0, 0, 0, 0, 0, 1}));
}

TEST(RowFilter, MeanOfLeftAndAboveIsRoundedDown) {
    RowFilter filter(4, 1);
    filtered(filter, {100, 20, 100, 20});
    // From the left: 50, 10 ...; from above and by Paeth: larger than the mean's zeros.
    EXPECT_EQ(filtered(filter, {50, 35, 67, 43}), (Bytes{3, 0, 0, 0, 0}));
}

TEST(RowFilter, PaethTakesTheNeighbourNearestToTheGradient) {
    RowFilter filter(4, 1);
    filtered(filter, {10, 10, 200, 200});
    // Left, left, above, then left and above and corner alike.
    EXPECT_EQ(filtered(filter, {60, 60, 200, 200}), (Bytes{4, 50, 0, 0, 0}));
}

} // namespace GdiplusBackend
