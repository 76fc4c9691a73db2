#include "sheet/SheetLayout.h"
#include "GdiplusSession.h"

#include <KestoThumbnailer/IThumbnailLoaderGdiplusBitmapCallback.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

using namespace KestoHost;
using KestoThumbnailer::SpriteComposer;
using KestoThumbnailer::SpriteStyleGrid;
using KestoThumbnailer::SpriteStyleRows;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class SizeTaker final : public KestoThumbnailer::IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                        const KestoThumbnailer::ThumbnailLoaderJob&) override {
        size = {static_cast<int>((*bitmap)->GetWidth()), static_cast<int>((*bitmap)->GetHeight())};
    }

    TileSize size;
};

TileSize sizeOfComposedSheet(const SheetLayout& layout) {
    SizeTaker taker;
    SpriteComposer composer(layout.tile.width, layout.tile.height, layout.composerCount, &taker, {},
                            layout.style);
    composer.DoneAddingBitmaps();
    return taker.size;
}

} // namespace

TEST(TileSize, IsTheLargestOfTheShapeThatFitsTheBox) {
    EXPECT_EQ(tileSizeFor({1920, 1080}, {160, 90}), (TileSize{160, 90}));
    EXPECT_EQ(tileSizeFor({1440, 1080}, {160, 90}), (TileSize{120, 90}));
    EXPECT_EQ(tileSizeFor({1080, 1920}, {160, 90}), (TileSize{51, 90}));
    EXPECT_EQ(tileSizeFor({1920, 800}, {160, 90}), (TileSize{160, 67}));
}

TEST(TileSize, ZeroIsNoBound) {
    EXPECT_EQ(tileSizeFor({1920, 1080}, {0, 90}), (TileSize{160, 90}));
    EXPECT_EQ(tileSizeFor({1920, 1080}, {160, 0}), (TileSize{160, 90}));
    EXPECT_EQ(tileSizeFor({1920, 1080}, {0, 0}), (TileSize{1920, 1080}));
}

TEST(TileSize, IsNeverLargerThanTheMedia) {
    EXPECT_EQ(tileSizeFor({64, 48}, {160, 90}), (TileSize{64, 48}));
}

TEST(TileSize, HasAtLeastOnePixelEachWay) {
    EXPECT_EQ(tileSizeFor({10'000, 10}, {100, 90}), (TileSize{100, 1}));
    EXPECT_EQ(tileSizeFor({10, 10'000}, {160, 90}), (TileSize{1, 90}));
}

TEST(SheetLayout, TellsTheSizeOfTheSheetThatTheComposerMakes) {
    const GdiplusSession session;
    for (const auto style : {SpriteStyleRows, SpriteStyleGrid})
        for (const TileSize tile : {TileSize{160, 9}, TileSize{170, 9}, TileSize{1999, 2}, TileSize{3000, 2}})
            for (const int count : {1, 2, 3, 16, 23, 24, 25, 49, 100}) {
                const SheetLayout layout = layOut(style, tile, count);
                EXPECT_EQ(sizeOfComposedSheet(layout), (TileSize{layout.width, layout.height}))
                    << wordOf(style) << ' ' << tile.width << ' ' << count;
            }
}

TEST(SheetLayout, PlacesAreThoseOfTheComposer) {
    const SheetLayout rows = layOut(SpriteStyleRows, {170, 90}, 30);
    EXPECT_EQ(rows.tiles[23], CRect(80, 90, 250, 180));
    EXPECT_EQ(rows.tiles[23], SpriteComposer::RectForImage(23, rows.composerCount, 170, 90, SpriteStyleRows));
    EXPECT_EQ(layOut(SpriteStyleGrid, {160, 90}, 16).tiles[15], CRect(0, 270, 160, 360));
}

TEST(SheetLayout, AFullRowIsMadeForOneMoreTileSoThatItsLastIsNotCutOff) {
    const SheetLayout layout = layOut(SpriteStyleRows, {160, 90}, 25);
    EXPECT_EQ(layout.tiles[24], CRect(0, 90, 160, 180));
    EXPECT_EQ(layout.composerCount, 26);
    EXPECT_EQ(layout.height, 180);
    EXPECT_THAT(layout.clipped, IsEmpty());
}

TEST(SheetLayout, RowsWhoseWidthDivides4000ClipNothing) {
    for (const int width : {1, 50, 160, 200, 500, 1000, 2000})
        for (const int count : {1, 2, 3, 24, 25, 48, 49, 97, 1000, 5000})
            EXPECT_THAT(layOut(SpriteStyleRows, {width, 9}, count).clipped, IsEmpty())
                << width << ' ' << count;
}

TEST(SheetLayout, TilesThatReachOverTheRightEdgeAreFound) {
    const SheetLayout layout = layOut(SpriteStyleRows, {150, 90}, 200);
    EXPECT_EQ(layout.width, 3900);
    for (const int index : layout.clipped)
        EXPECT_GT(layout.tiles[static_cast<std::size_t>(index)].right, layout.width);
    EXPECT_EQ(std::count_if(layout.tiles.begin(), layout.tiles.end(),
                            [&layout](const CRect& tile) { return tile.right > layout.width; }),
              static_cast<std::ptrdiff_t>(layout.clipped.size()));
    EXPECT_THAT(layout.clipped, testing::Not(IsEmpty()));
}

TEST(SheetLayout, WithoutAStyleRowsAreTakenWhereTheyClipNothing) {
    EXPECT_EQ(layOutWhole({160, 90}, 100).style, SpriteStyleRows);
    EXPECT_EQ(layOutWhole({150, 90}, 20).style, SpriteStyleRows);
}

TEST(SheetLayout, WithoutAStyleTheGridIsTakenWhereRowsClip) {
    const SheetLayout layout = layOutWhole({150, 90}, 200);
    EXPECT_EQ(layout.style, SpriteStyleGrid);
    EXPECT_THAT(layout.clipped, IsEmpty());
}

TEST(SheetLayout, NoCountOfNoWidthIsEverClippedWithoutAStyle) {
    for (int width = 1; width < 4200; width += 7)
        for (const int count : {1, 2, 25, 26, 60, 333})
            EXPECT_THAT(layOutWhole({width, 3}, count).clipped, IsEmpty()) << width << ' ' << count;
}

TEST(SheetLayout, RowsHaveNoPlaceForTilesOf4000PixelsAndWider) {
    EXPECT_THAT(layOut(SpriteStyleRows, {4000, 9}, 2).clipped, ElementsAre(0, 1));
    EXPECT_THAT(layOut(SpriteStyleRows, {5000, 9}, 1).clipped, ElementsAre(0));
    EXPECT_EQ(layOutWhole({4000, 9}, 1).style, SpriteStyleGrid);
}

TEST(ClippingWarning, TellsWhichTilesAndTheWaysOut) {
    SheetLayout layout = layOut(SpriteStyleRows, {150, 90}, 200);
    layout.clipped = {25, 51};
    const std::string warning = clippingWarning(layout);
    EXPECT_THAT(warning, HasSubstr("2 of 200 tiles are cut off"));
    EXPECT_THAT(warning, HasSubstr(": 26, 52."));
    EXPECT_THAT(warning, HasSubstr("--style grid"));
    EXPECT_THAT(warning, HasSubstr("125 pixels wide."));
}

TEST(ClippingWarning, IsEmptyWhereNothingIsClipped) {
    EXPECT_THAT(clippingWarning(layOut(SpriteStyleGrid, {150, 90}, 200)), IsEmpty());
}

TEST(ClippingWarning, NamesAWidthThatDivides4000) {
    EXPECT_EQ(unclippedWidthBelow(160), 160);
    EXPECT_EQ(unclippedWidthBelow(159), 125);
    EXPECT_EQ(unclippedWidthBelow(3999), 2000);
    EXPECT_EQ(unclippedWidthBelow(1), 1);
}

TEST(SheetStyle, HasAWordForTheCommandLine) {
    EXPECT_EQ(parseStyle("rows"), SpriteStyleRows);
    EXPECT_EQ(parseStyle("grid"), SpriteStyleGrid);
    EXPECT_FALSE(parseStyle("Rows"));
    EXPECT_THAT(checkStyle("square"), HasSubstr("expected rows or grid, found \"square\""));
}
