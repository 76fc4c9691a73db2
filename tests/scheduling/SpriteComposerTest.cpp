#include "scheduling/SpriteComposer.h"

#include "scheduling/IThumbnailLoaderGdiplusBitmapCallback.h"
#include "scheduling/ThumbnailLoaderJob.h"
#include "support/GdiplusUser.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <memory>
#include <ostream>
#include <thread>
#include <utility>

namespace KestoThumbnailer {

namespace {

using Gdiplus::ARGB;
using TestSupport::pixelOf;

constexpr ARGB red = 0xFFFF0000;
constexpr ARGB green = 0xFF00FF00;
constexpr ARGB blue = 0xFF0000FF;
constexpr auto unknownStyle = static_cast<SpriteStyle>(7);

class TakingCallback final : public IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap, const ThumbnailLoaderJob& job) override {
        ++calls;
        sheet.reset(*bitmap);
        *bitmap = nullptr;
        lastJob = job;
    }

    int calls = 0;
    std::unique_ptr<Gdiplus::Bitmap> sheet;
    ThumbnailLoaderJob lastJob;
};

class AskingCallback final : public IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** bitmap,
                                        const ThumbnailLoaderJob& /*job*/) override {
        delivered = *bitmap != nullptr;
        arrived = composer->AllThumbnailsArrived();
    }

    SpriteComposer* composer = nullptr;
    bool delivered = false;
    bool arrived = false;
};

/// Takes the lock of a loader that has nothing to do with the composer.
class LockingCallback final : public IThumbnailLoaderGdiplusBitmapCallback {
public:
    void OnLoadedGdiPlusBitmapThumbnail(Gdiplus::Bitmap** /*bitmap*/,
                                        const ThumbnailLoaderJob& /*job*/) override {
        const MutexLock held(othersLock);
        ++calls;
    }

    Mutex othersLock{LockRanks::loaderGrabber};
    int calls = 0;
};

class SpriteComposerTest : public ::testing::Test {
protected:
    static void add(SpriteComposer& composer, ARGB color, int width = 8, int height = 8) {
        Gdiplus::Bitmap tile(width, height, PixelFormat32bppARGB);
        Gdiplus::Graphics(&tile).Clear(Gdiplus::Color(color));
        composer.AddBitmap(tile);
    }

    TestSupport::GdiplusUser gdiplus;
    TakingCallback callback;
};

struct SheetSize {
    UINT width;
    UINT height;

    friend bool operator==(const SheetSize&, const SheetSize&) = default;
    friend std::ostream& operator<<(std::ostream& out, const SheetSize& size) {
        return out << size.width << " x " << size.height;
    }
};

SheetSize sheetSize(int width, int height, int count, SpriteStyle style) {
    TakingCallback callback;
    SpriteComposer(width, height, count, &callback, "", style).DoneAddingBitmaps();
    return callback.sheet ? SheetSize{callback.sheet->GetWidth(), callback.sheet->GetHeight()}
                          : SheetSize{0, 0};
}

} // namespace

TEST_F(SpriteComposerTest, OneTileInRowsIsTheWholeSheet) {
    EXPECT_EQ(sheetSize(160, 90, 1, SpriteStyleRows), (SheetSize{160, 90}));
    const SpriteComposer composer(160, 90, 1, nullptr, "", SpriteStyleRows);
    EXPECT_EQ(composer.RectForImage(0), CRect(0, 0, 160, 90));
}

TEST_F(SpriteComposerTest, ASheetOfRowsUpToTheLimitHasOne) {
    EXPECT_EQ(sheetSize(160, 9, 25, SpriteStyleRows), (SheetSize{4000, 9}));
}

TEST_F(SpriteComposerTest, ASheetOfMoreRowsIsCutToWholeTiles) {
    EXPECT_EQ(sheetSize(160, 9, 26, SpriteStyleRows), (SheetSize{4000, 18}));
    EXPECT_EQ(sheetSize(170, 9, 24, SpriteStyleRows), (SheetSize{3910, 18}));
}

TEST_F(SpriteComposerTest, ASheetOfAGridIsAlwaysTheFullSquare) {
    EXPECT_EQ(sheetSize(10, 6, 16, SpriteStyleGrid), (SheetSize{50, 30}));
    EXPECT_EQ(sheetSize(10, 6, 1, SpriteStyleGrid), (SheetSize{20, 12}));
}

TEST_F(SpriteComposerTest, TheStyleDecidesThePixelFormat) {
    SpriteComposer(8, 8, 1, &callback, "", SpriteStyleRows).DoneAddingBitmaps();
    ASSERT_TRUE(callback.sheet);
    EXPECT_EQ(callback.sheet->GetPixelFormat(), PixelFormat32bppARGB);
    SpriteComposer(8, 8, 1, &callback, "", SpriteStyleGrid).DoneAddingBitmaps();
    ASSERT_TRUE(callback.sheet);
    EXPECT_EQ(callback.sheet->GetPixelFormat(), PixelFormat32bppPARGB);
}

TEST_F(SpriteComposerTest, TilesLieInTheOrderOfTheirArrival) {
    SpriteComposer composer(8, 8, 3, &callback, "", SpriteStyleGrid);
    add(composer, red);
    add(composer, green);
    add(composer, blue);
    composer.DoneAddingBitmaps();
    ASSERT_TRUE(callback.sheet);
    EXPECT_EQ(pixelOf(*callback.sheet, 0, 0), red);
    EXPECT_EQ(pixelOf(*callback.sheet, 7, 7), red);
    EXPECT_EQ(pixelOf(*callback.sheet, 8, 0), green);
    EXPECT_EQ(pixelOf(*callback.sheet, 0, 8), blue);
    EXPECT_EQ(pixelOf(*callback.sheet, 8, 8), 0U);
}

TEST_F(SpriteComposerTest, ATileIsScaledToItsPlace) {
    SpriteComposer composer(8, 8, 2, &callback, "", SpriteStyleRows);
    add(composer, red, 64, 16);
    add(composer, blue, 2, 2);
    composer.DoneAddingBitmaps();
    ASSERT_TRUE(callback.sheet);
    EXPECT_EQ(pixelOf(*callback.sheet, 0, 0), red);
    EXPECT_EQ(pixelOf(*callback.sheet, 7, 7), red);
    EXPECT_EQ(pixelOf(*callback.sheet, 8, 0), blue);
    EXPECT_EQ(pixelOf(*callback.sheet, 15, 7), blue);
}

TEST_F(SpriteComposerTest, TheLastTileOfAFullRowIsClipped) {
    SpriteComposer composer(1000, 4, 4, &callback, "", SpriteStyleRows);
    for (const ARGB color : {red, green, blue, red})
        add(composer, color);
    composer.DoneAddingBitmaps();
    ASSERT_TRUE(callback.sheet);
    EXPECT_EQ(callback.sheet->GetWidth(), 4000U);
    EXPECT_EQ(callback.sheet->GetHeight(), 4U);
    EXPECT_EQ(composer.RectForImage(3), CRect(0, 4, 1000, 8));
    EXPECT_EQ(pixelOf(*callback.sheet, 500, 2), red);
    EXPECT_EQ(pixelOf(*callback.sheet, 2500, 2), blue);
    EXPECT_EQ(pixelOf(*callback.sheet, 3500, 2), 0U);
    EXPECT_TRUE(composer.AllThumbnailsArrived());
}

TEST_F(SpriteComposerTest, AFinishedSheetComesWithADefaultJob) {
    SpriteComposer composer(160, 90, 1, &callback, "", SpriteStyleRows);
    composer.DoneAddingBitmaps();
    EXPECT_EQ(callback.lastJob.width, 0);
    EXPECT_EQ(callback.lastJob.height, 92);
    EXPECT_EQ(callback.lastJob.outputFilePath, "");
    EXPECT_EQ(callback.lastJob.thumbnailKey, "");
    EXPECT_EQ(callback.lastJob.userData, "");
    EXPECT_TRUE(callback.lastJob == ThumbnailLoaderJob());
}

TEST_F(SpriteComposerTest, TheDeliveredSheetIsACopy) {
    SpriteComposer composer(8, 8, 2, &callback, "", SpriteStyleRows);
    add(composer, red);
    composer.DoneAddingBitmaps();
    const std::unique_ptr<Gdiplus::Bitmap> first = std::move(callback.sheet);
    add(composer, blue);
    composer.DoneAddingBitmaps();
    EXPECT_EQ(pixelOf(*first, 8, 0), 0U);
    EXPECT_EQ(pixelOf(*callback.sheet, 0, 0), red);
    EXPECT_EQ(pixelOf(*callback.sheet, 8, 0), blue);
}

TEST_F(SpriteComposerTest, EachCallDeliversAnewWhetherAllTilesArrivedOrNot) {
    SpriteComposer composer(8, 8, 5, &callback, "", SpriteStyleRows);
    composer.DoneAddingBitmaps();
    composer.DoneAddingBitmaps();
    EXPECT_EQ(callback.calls, 2);
    EXPECT_FALSE(composer.AllThumbnailsArrived());
}

TEST_F(SpriteComposerTest, ACallbackMayLeaveTheSheetAndCallBack) {
    AskingCallback asking;
    SpriteComposer composer(8, 8, 1, &asking, "", SpriteStyleRows);
    asking.composer = &composer;
    add(composer, red);
    composer.DoneAddingBitmaps(); // the leak checker tells when the copy stays
    EXPECT_TRUE(asking.delivered);
    EXPECT_TRUE(asking.arrived);
}

TEST_F(SpriteComposerTest, ACallbackMayUseOtherLoaders) {
    LockingCallback locking;
    SpriteComposer(8, 8, 1, &locking, "", SpriteStyleRows).DoneAddingBitmaps();
    EXPECT_EQ(locking.calls, 1);
}

TEST_F(SpriteComposerTest, AllTilesHaveArrivedAtTheirCountAndNotBeyond) {
    SpriteComposer composer(8, 8, 2, nullptr, "", SpriteStyleRows);
    EXPECT_EQ(composer.GetNumberOfThumbnails(), 2);
    add(composer, red);
    EXPECT_FALSE(composer.AllThumbnailsArrived());
    add(composer, red);
    EXPECT_TRUE(composer.AllThumbnailsArrived());
    add(composer, red);
    EXPECT_FALSE(composer.AllThumbnailsArrived());
}

TEST_F(SpriteComposerTest, TheImageSizeIsThatOfATile) {
    const SpriteComposer composer(160, 90, 12, nullptr, "", SpriteStyleGrid);
    EXPECT_EQ(composer.GetImageSize(), (KestoRenderLib::Size{160, 90}));
}

TEST_F(SpriteComposerTest, AnUnknownStyleDeliversNoSheet) {
    SpriteComposer composer(8, 8, 1, &callback, "", unknownStyle);
    add(composer, red);
    composer.DoneAddingBitmaps();
    EXPECT_EQ(callback.calls, 1);
    EXPECT_FALSE(callback.sheet);
    EXPECT_TRUE(composer.AllThumbnailsArrived());
    EXPECT_EQ(composer.RectForImage(0), CRect());
}

TEST_F(SpriteComposerTest, TilesWithoutASizeHaveNoSheet) {
    EXPECT_EQ(sheetSize(0, 90, 4, SpriteStyleRows), (SheetSize{0, 0}));
    EXPECT_EQ(sheetSize(160, 0, 4, SpriteStyleRows), (SheetSize{0, 0}));
}

TEST_F(SpriteComposerTest, ASheetIsSavedIntoItsFile) {
    const TestSupport::TempFolder temp;
    const std::string path = (temp / "sheet.png").string();
    SpriteComposer composer(8, 8, 2, nullptr, path, SpriteStyleRows);
    add(composer, red);
    add(composer, blue);
    composer.DoneAddingBitmaps();
    Gdiplus::Bitmap saved(TestSupport::wideOf(path).c_str());
    EXPECT_EQ(saved.GetWidth(), 16U);
    EXPECT_EQ(saved.GetHeight(), 8U);
    EXPECT_EQ(pixelOf(saved, 3, 3), red);
    EXPECT_EQ(pixelOf(saved, 12, 3), blue);
}

TEST_F(SpriteComposerTest, MovingTheFileSavesItUnderTheOtherName) {
    const TestSupport::TempFolder temp;
    const std::string path = (temp / "sheet.png").string();
    const auto target = temp.write("f\u00fcr.png", "older");
    SpriteComposer composer(8, 8, 1, &callback, path, SpriteStyleRows);
    add(composer, green);
    composer.MoveThumbnailFile(target.string());
    EXPECT_EQ(callback.calls, 1);
    EXPECT_FALSE(std::filesystem::exists(path));
    Gdiplus::Bitmap saved(TestSupport::wideOf(target).c_str());
    EXPECT_EQ(pixelOf(saved, 4, 4), green);
}

TEST_F(SpriteComposerTest, AFileThatWasMovedIsSavedAnewUnderItsFirstName) {
    const TestSupport::TempFolder temp;
    const std::string path = (temp / "sheet.png").string();
    SpriteComposer composer(8, 8, 1, nullptr, path, SpriteStyleRows);
    composer.MoveThumbnailFile((temp / "moved.png").string());
    composer.DoneAddingBitmaps();
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_TRUE(std::filesystem::exists(temp / "moved.png"));
}

TEST_F(SpriteComposerTest, WithoutAFileNothingIsMoved) {
    const TestSupport::TempFolder temp;
    const auto target = temp.write("target.png", "older");
    SpriteComposer composer(8, 8, 1, &callback, "", SpriteStyleRows);
    composer.MoveThumbnailFile(target.string());
    EXPECT_EQ(callback.calls, 1);
    EXPECT_EQ(TestSupport::readFile(target), "older");
}

TEST_F(SpriteComposerTest, TilesMayArriveFromSeveralThreads) {
    SpriteComposer composer(8, 8, 64, &callback, "", SpriteStyleRows);
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads)
        thread = std::thread([&composer] {
            for (int tile = 0; tile < 16; ++tile)
                add(composer, green);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(composer.AllThumbnailsArrived());
    composer.DoneAddingBitmaps();
    ASSERT_TRUE(callback.sheet);
    for (int tile = 0; tile < 64; ++tile)
        EXPECT_EQ(pixelOf(*callback.sheet, tile * 8 + 4, 4), green) << tile;
}

} // namespace KestoThumbnailer
