#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <memory>

using namespace Gdiplus;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

TEST(GdiplusStart, NothingIsMadeBeforeIt) {
    EXPECT_EQ(Bitmap(2, 2).GetLastStatus(), GdiplusNotInitialized);
    EXPECT_EQ(Bitmap(L"missing.png").GetLastStatus(), GdiplusNotInitialized);
}

TEST(GdiplusStart, LastsUntilTheLastUserShutsDown) {
    auto first = std::make_unique<GdiplusUser>();
    auto second = std::make_unique<GdiplusUser>();
    first.reset();
    EXPECT_EQ(Bitmap(2, 2).GetLastStatus(), Ok);
    second.reset();
    EXPECT_EQ(Bitmap(2, 2).GetLastStatus(), GdiplusNotInitialized);
}

TEST(GdiplusStart, RefusesUnknownVersionsAndMissingArguments) {
    ULONG_PTR token = 0;
    GdiplusStartupInput input;
    input.GdiplusVersion = 3;
    EXPECT_EQ(GdiplusStartup(&token, &input, nullptr), UnsupportedGdiplusVersion);
    EXPECT_EQ(GdiplusStartup(nullptr, &input, nullptr), InvalidParameter);
    EXPECT_EQ(GdiplusStartup(&token, nullptr, nullptr), InvalidParameter);
}

TEST(GdiplusStart, IsNotUndoneBeforehandByShuttingDownTooOften) {
    { const GdiplusUser gdiplus; }
    GdiplusShutdown(1);
    const GdiplusUser gdiplus;
    EXPECT_EQ(Bitmap(2, 2).GetLastStatus(), Ok);
}

TEST(NewBitmap, IsZeroInMemoryOfItsOwn) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(3, 2, PixelFormat32bppARGB);
    ASSERT_EQ(bitmap.GetLastStatus(), Ok);
    EXPECT_EQ(bitmap.GetWidth(), 3U);
    EXPECT_EQ(bitmap.GetHeight(), 2U);
    EXPECT_EQ(bitmap.GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(pixelOf(bitmap, 2, 1), 0U);
    EXPECT_EQ(bitmap.GetFlags(), static_cast<UINT>(ImageFlagsHasAlpha));
    EXPECT_FLOAT_EQ(bitmap.GetHorizontalResolution(), 96);
    GUID format = {};
    EXPECT_EQ(bitmap.GetRawFormat(&format), Ok);
    EXPECT_EQ(format, ImageFormatMemoryBMP);
}

TEST(NewBitmap, OfAnRgbFormatHasNoFlagsAndIsBlack) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1, PixelFormat24bppRGB);
    EXPECT_EQ(bitmap.GetFlags(), 0U);
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF000000U);
}

TEST(NewBitmap, RefusesSizesBelowOneUnknownFormatsAndSizesOverTheBudget) {
    const GdiplusUser gdiplus;
    EXPECT_EQ(Bitmap(0, 2).GetLastStatus(), InvalidParameter);
    EXPECT_EQ(Bitmap(2, -1).GetLastStatus(), InvalidParameter);
    EXPECT_EQ(Bitmap(2, 2, PixelFormatUndefined).GetLastStatus(), InvalidParameter);
    EXPECT_EQ(Bitmap(100'000, 100'000).GetLastStatus(), OutOfMemory);
}

TEST(BitmapOverMemory, WorksInPlace) {
    const GdiplusUser gdiplus;
    std::array<BYTE, 16> memory = {};
    Bitmap bitmap(2, 2, 8, PixelFormat32bppARGB, memory.data());
    ASSERT_EQ(bitmap.GetLastStatus(), Ok);
    EXPECT_EQ(bitmap.SetPixel(1, 0, Color(0xAABBCCDDU)), Ok);
    EXPECT_EQ(memory[4], 0xDD);
    EXPECT_EQ(memory[7], 0xAA);
}

TEST(BitmapOverMemory, NegativeStridesStartAtTheTopPictureRow) {
    const GdiplusUser gdiplus;
    std::array<BYTE, 16> memory = {};
    memory[0] = 1;
    Bitmap bitmap(2, 2, -8, PixelFormat32bppRGB, memory.data() + 8);
    EXPECT_EQ(pixelOf(bitmap, 0, 1), 0xFF000001U);
}

TEST(BitmapOverMemory, NeedsAStrideOfAMultipleOfFourThatHoldsARow) {
    const GdiplusUser gdiplus;
    std::array<BYTE, 64> memory = {};
    EXPECT_EQ(Bitmap(2, 2, 10, PixelFormat32bppARGB, memory.data()).GetLastStatus(), InvalidParameter);
    EXPECT_EQ(Bitmap(3, 2, 8, PixelFormat32bppARGB, memory.data()).GetLastStatus(), InvalidParameter);
    constexpr INT lowest = std::numeric_limits<INT>::min();
    EXPECT_EQ(Bitmap(3, 1, lowest, PixelFormat32bppARGB, memory.data()).GetLastStatus(), Ok)
        << "a single row never gets to the next one";
}

TEST(BitmapOverMemory, TurningLeavesTheCallersMemoryAlone) {
    const GdiplusUser gdiplus;
    std::array<BYTE, 16> memory = {};
    memory[0] = 9;
    Bitmap bitmap(2, 2, 8, PixelFormat32bppARGB, memory.data());
    ASSERT_EQ(bitmap.RotateFlip(Rotate180FlipNone), Ok);
    EXPECT_EQ(pixelOf(bitmap, 1, 1) & 255, 9U);
    EXPECT_EQ(memory[0], 9);
    bitmap.SetPixel(0, 0, Color(0xFFFFFFFFU));
    EXPECT_EQ(memory[0], 9);
}

TEST(BitmapOverDib, PositiveHeightMeansRowsFromTheBottomAndDrawingWritesThrough) {
    const GdiplusUser gdiplus;
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 2, 2, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::array<BYTE, 16> memory = {};
    Bitmap bitmap(&info, memory.data());
    ASSERT_EQ(bitmap.GetLastStatus(), Ok);
    EXPECT_EQ(bitmap.GetPixelFormat(), PixelFormat32bppRGB);
    Graphics graphics(&bitmap);
    const SolidBrush blue(Color(255, 0, 0, 255));
    ASSERT_EQ(graphics.FillRectangle(&blue, 0, 0, 1, 1), Ok);
    EXPECT_EQ(memory[8], 255) << "the top picture row is the last in memory";
    EXPECT_EQ(memory[0], 0);
}

TEST(BitmapOverDib, NegativeHeightMeansRowsFromTheTop) {
    const GdiplusUser gdiplus;
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 2, -2, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    std::array<BYTE, 16> memory = {};
    memory[8] = 200; // rows of 24 bits are padded to 8 bytes here
    Bitmap bitmap(&info, memory.data());
    EXPECT_EQ(pixelOf(bitmap, 0, 1), 0xFF0000C8U);
}

TEST(BitmapOverDib, TheFourthByteIsIgnoredButShownByALockOfItsOwnFormat) {
    const GdiplusUser gdiplus;
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 1, 1, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::array<BYTE, 4> memory = {1, 2, 3, 0x40};
    Bitmap bitmap(&info, memory.data());
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF030201U);
    BitmapData locked;
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    EXPECT_EQ(static_cast<const BYTE*>(locked.Scan0)[3], 255);
    bitmap.UnlockBits(&locked);
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppRGB, &locked), Ok);
    EXPECT_EQ(static_cast<const BYTE*>(locked.Scan0)[3], 0x40);
    bitmap.UnlockBits(&locked);
}

TEST(BitmapOverDib, RefusesHeadersItDoesNotKnow) {
    const GdiplusUser gdiplus;
    std::array<BYTE, 16> memory = {};
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 2, 2, 1, 32, 1, 0, 0, 0, 0, 0};
    EXPECT_EQ(Bitmap(&info, memory.data()).GetLastStatus(), InvalidParameter);
    info.bmiHeader.biCompression = BI_RGB;
    info.bmiHeader.biHeight = 0;
    EXPECT_EQ(Bitmap(&info, memory.data()).GetLastStatus(), InvalidParameter);
    EXPECT_EQ(Bitmap(static_cast<const BITMAPINFO*>(nullptr), memory.data()).GetLastStatus(),
              InvalidParameter);
}

TEST(BitmapOverDib, FindsColourMasksInLongHeadersToo) {
    const GdiplusUser gdiplus;
    struct {
        BITMAPINFOHEADER header;
        std::array<DWORD, 17> rest; // masks first, then what BITMAPV4HEADER has more
    } info = {{108, 1, 1, 1, 16, BI_BITFIELDS, 0, 0, 0, 0, 0}, {0xF800, 0x07E0, 0x001F}};
    std::array<BYTE, 4> memory = {0xE0, 0x07};
    Bitmap bitmap(reinterpret_cast<const BITMAPINFO*>(&info), memory.data());
    ASSERT_EQ(bitmap.GetLastStatus(), Ok);
    EXPECT_EQ(bitmap.GetPixelFormat(), PixelFormat16bppRGB565);
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF00FF00U);
}

TEST(BitmapOverDib, FindsThePaletteBehindLongHeaders) {
    const GdiplusUser gdiplus;
    struct {
        BITMAPINFOHEADER header;
        std::array<DWORD, 17> rest;
        std::array<DWORD, 2> palette;
    } info = {{108, 1, 1, 1, 1, BI_RGB, 0, 0, 0, 0, 0}, {}, {0x00112233, 0x00445566}};
    std::array<BYTE, 4> memory = {0x80};
    Bitmap bitmap(reinterpret_cast<const BITMAPINFO*>(&info), memory.data());
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF445566U);
}

TEST(BitmapOverDib, RefusesHeaderSizesAndWidthsThatMakeNoSense) {
    const GdiplusUser gdiplus;
    std::array<BYTE, 16> memory = {};
    for (const DWORD size : {0U, 12U, 39U, 41U, 128U, 0xFFFFFFFFU}) {
        BITMAPINFO info = {};
        info.bmiHeader = {size, 2, 2, 1, 8, BI_RGB, 0, 0, 0, 0, 0};
        EXPECT_EQ(Bitmap(&info, memory.data()).GetLastStatus(), InvalidParameter) << size;
    }
    BITMAPINFO wide = {};
    wide.bmiHeader = {sizeof(BITMAPINFOHEADER), 0x7FFFFFFF, 1, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    EXPECT_EQ(Bitmap(&wide, memory.data()).GetLastStatus(), InvalidParameter);
}

TEST(BitmapStatus, IsThatOfTheLastFailedCallAndReadingClearsIt) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(2, 2);
    EXPECT_EQ(bitmap.SetPixel(5, 5, Color()), InvalidParameter);
    EXPECT_EQ(bitmap.SetPixel(0, 0, Color()), Ok);
    EXPECT_EQ(bitmap.GetLastStatus(), InvalidParameter);
    EXPECT_EQ(bitmap.GetLastStatus(), Ok);
}

TEST(BitmapPixels, OfRgbFormatsDropAlphaWithoutBlending) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1, PixelFormat32bppRGB);
    bitmap.SetPixel(0, 0, Color(0x40112233U));
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF112233U);
}

TEST(BitmapPixels, OfPremultipliedFormatsAreNotPremultipliedForTheCaller) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1, PixelFormat32bppPARGB);
    bitmap.SetPixel(0, 0, Color(0x80402010U));
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0x803F1F0FU);
}

TEST(FlatFunctions, RefuseNullObjects) {
    using namespace DllExports;
    UINT width = 0;
    EXPECT_EQ(GdipGetImageWidth(nullptr, &width), InvalidParameter);
    EXPECT_EQ(GdipDisposeImage(nullptr), InvalidParameter);
    EXPECT_EQ(GdipDeleteGraphics(nullptr), InvalidParameter);
    EXPECT_EQ(GdipImageForceValidation(nullptr), InvalidParameter);
    EXPECT_EQ(GdipGraphicsClear(nullptr, 0), InvalidParameter);
    EXPECT_EQ(GdipCreateBitmapFromFile(nullptr, nullptr), InvalidParameter);
}
