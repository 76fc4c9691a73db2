#include "scheduling/SpriteComposer.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

static void PrintTo(const CRect& rect, std::ostream* out) {
    *out << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom;
}

namespace KestoThumbnailer {

namespace {

constexpr int longest = std::numeric_limits<int>::max();

CRect tileInRows(int index, int width, int height) {
    return SpriteComposer::RectForImage(index, 100, width, height, SpriteStyleRows);
}

CRect tileInGrid(int index, int count, int width, int height) {
    return SpriteComposer::RectForImage(index, count, width, height, SpriteStyleGrid);
}

} // namespace

TEST(SpriteGeometry, AGridHasOneColumnMoreThanTheRootOfItsCount) {
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(1), 2);
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(2), 2);
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(3), 2);
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(15), 4);
}

TEST(SpriteGeometry, AGridHasTheExtraColumnAlsoForPerfectSquares) {
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(4), 3);
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(16), 5);
}

TEST(SpriteGeometry, AGridForNothingHasOneColumn) {
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(0), 1);
    EXPECT_EQ(SpriteComposer::GetSpriteSheetColumns(-7), 1);
}

TEST(SpriteGeometry, RowsRunFromLeftToRight) {
    EXPECT_EQ(tileInRows(0, 160, 90), CRect(0, 0, 160, 90));
    EXPECT_EQ(tileInRows(1, 160, 90), CRect(160, 0, 320, 90));
    EXPECT_EQ(tileInRows(23, 160, 90), CRect(3680, 0, 3840, 90));
}

TEST(SpriteGeometry, RowsWrapOneTileBeforeTheLimit) {
    EXPECT_EQ(tileInRows(24, 160, 90), CRect(0, 90, 160, 180));
}

TEST(SpriteGeometry, ARowThatEndsBetweenTilesIndentsTheNext) {
    EXPECT_EQ(tileInRows(22, 170, 90), CRect(3740, 0, 3910, 90));
    EXPECT_EQ(tileInRows(23, 170, 90), CRect(80, 90, 250, 180));
}

TEST(SpriteGeometry, RowsWrapAtTheSameTileWhateverTheCount) {
    EXPECT_EQ(SpriteComposer::RectForImage(24, 25, 160, 90, SpriteStyleRows), CRect(0, 90, 160, 180));
}

TEST(SpriteGeometry, TilesAsWideAsTheLimitHaveNoPlaceInRows) {
    EXPECT_EQ(tileInRows(0, 4000, 90), CRect());
    EXPECT_EQ(tileInRows(3, 4000, 90), CRect());
}

TEST(SpriteGeometry, TilesWiderThanTheLimitStartAtTheLeft) {
    EXPECT_EQ(tileInRows(0, 5000, 90), CRect(0, 0, 5000, 90));
}

TEST(SpriteGeometry, AGridFillsRowAfterRow) {
    EXPECT_EQ(tileInGrid(0, 16, 100, 50), CRect(0, 0, 100, 50));
    EXPECT_EQ(tileInGrid(4, 16, 100, 50), CRect(400, 0, 500, 50));
    EXPECT_EQ(tileInGrid(5, 16, 100, 50), CRect(0, 50, 100, 100));
    EXPECT_EQ(tileInGrid(15, 16, 100, 50), CRect(0, 150, 100, 200));
}

TEST(SpriteGeometry, AnUnknownStyleHasNoTiles) {
    EXPECT_EQ(SpriteComposer::RectForImage(3, 16, 100, 50, static_cast<SpriteStyle>(2)), CRect());
    EXPECT_EQ(SpriteComposer::RectForImage(3, 16, 100, 50, static_cast<SpriteStyle>(-1)), CRect());
}

TEST(SpriteGeometry, SizesBeyondTheRangeWrap) {
    // 3 * (2^31 - 1) is 2^31 - 3 in 32 bits, that is 537273 spans of 3997 and 3464.
    EXPECT_EQ(tileInRows(longest, 3, 1), CRect(3464, 537273, 3467, 537274));
}

} // namespace KestoThumbnailer
