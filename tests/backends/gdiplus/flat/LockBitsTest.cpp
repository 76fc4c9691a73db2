#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

using namespace Gdiplus;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

namespace {

class LockBits : public ::testing::Test {
protected:
    GdiplusUser gdiplus;
    Bitmap bitmap{4, 3, PixelFormat32bppARGB};
    BitmapData locked;
};

BYTE* bytesOf(const BitmapData& data) {
    return static_cast<BYTE*>(data.Scan0);
}

} // namespace

TEST_F(LockBits, InItsOwnFormatOpensTheMemoryItselfEvenForReading) {
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    EXPECT_EQ(locked.Width, 4U);
    EXPECT_EQ(locked.Height, 3U);
    EXPECT_EQ(locked.Stride, 16);
    bytesOf(locked)[locked.Stride + 4] = 0x55;
    bytesOf(locked)[locked.Stride + 7] = 0xFF;
    ASSERT_EQ(bitmap.UnlockBits(&locked), Ok);
    EXPECT_EQ(pixelOf(bitmap, 1, 1), 0xFF000055U);
}

TEST_F(LockBits, OfARectangleStartsAtItsFirstPixel) {
    bitmap.SetPixel(2, 1, Color(0xFF000077U));
    const Rect area(2, 1, 2, 2);
    ASSERT_EQ(bitmap.LockBits(&area, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    EXPECT_EQ(bytesOf(locked)[0], 0x77);
    EXPECT_EQ(locked.Width, 2U);
    bitmap.UnlockBits(&locked);
}

TEST_F(LockBits, ConvertingForReadingDropsChanges) {
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat24bppRGB, &locked), Ok);
    bytesOf(locked)[0] = 0xFF;
    ASSERT_EQ(bitmap.UnlockBits(&locked), Ok);
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0U);
}

TEST_F(LockBits, ConvertingForWritingBringsChangesBack) {
    const Rect area(1, 1, 2, 1);
    ASSERT_EQ(bitmap.LockBits(&area, ImageLockModeRead | ImageLockModeWrite, PixelFormat32bppPARGB, &locked),
              Ok);
    bytesOf(locked)[0] = 0x40;
    bytesOf(locked)[3] = 0x80;
    ASSERT_EQ(bitmap.UnlockBits(&locked), Ok);
    EXPECT_EQ(pixelOf(bitmap, 1, 1), 0x8000007FU);
    EXPECT_EQ(pixelOf(bitmap, 0, 1), 0U);
}

TEST_F(LockBits, ConvertedCopiesOfBottomUpMemoryRunFromTheTop) {
    std::vector<BYTE> memory(16);
    memory[0] = 9; // the lower row
    Bitmap bottomUp(1, 2, -8, PixelFormat32bppRGB, memory.data() + 8);
    ASSERT_EQ(bottomUp.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppRGB, &locked), Ok);
    EXPECT_LT(locked.Stride, 0);
    EXPECT_EQ(bytesOf(locked), memory.data() + 8);
    bottomUp.UnlockBits(&locked);
    ASSERT_EQ(bottomUp.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    EXPECT_GT(locked.Stride, 0);
    EXPECT_EQ(bytesOf(locked)[locked.Stride], 9);
    bottomUp.UnlockBits(&locked);
}

TEST_F(LockBits, ASecondLockAndPixelAccessWhileLockedAreInTheWrongState) {
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    BitmapData second;
    EXPECT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &second), WrongState);
    Color color;
    EXPECT_EQ(bitmap.GetPixel(0, 0, &color), WrongState);
    EXPECT_EQ(bitmap.SetPixel(0, 0, color), WrongState);
    EXPECT_EQ(bitmap.RotateFlip(Rotate90FlipNone), WrongState);
    Graphics graphics(&bitmap);
    EXPECT_EQ(graphics.Clear(Color(0xFFFFFFFFU)), WrongState);
    bitmap.UnlockBits(&locked);
}

TEST_F(LockBits, CloningWhileLockedWorks) {
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    const std::unique_ptr<Bitmap> clone(bitmap.Clone(0, 0, 2, 2, PixelFormat24bppRGB));
    EXPECT_TRUE(clone);
    bitmap.UnlockBits(&locked);
}

TEST_F(LockBits, UnlockingTwiceIsAWin32Error) {
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    EXPECT_EQ(bitmap.UnlockBits(&locked), Ok);
    EXPECT_EQ(bitmap.UnlockBits(&locked), Win32Error);
}

TEST_F(LockBits, RefusesRectanglesThatAreEmptyNegativeOrOutside) {
    for (const Rect& area : {Rect(0, 0, 0, 1), Rect(0, 0, 1, 0), Rect(-1, 0, 2, 2), Rect(0, 0, 5, 1),
                             Rect(3, 2, 1, 2), Rect(2147483647, 0, 1, 1)})
        EXPECT_EQ(bitmap.LockBits(&area, ImageLockModeRead, PixelFormat32bppARGB, &locked), InvalidParameter);
}

TEST_F(LockBits, RefusesFormatsThatNothingConvertsTo) {
    EXPECT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat8bppIndexed, &locked), InvalidParameter);
    EXPECT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppCMYK, &locked), InvalidParameter);
    EXPECT_EQ(bitmap.LockBits(nullptr, 8, PixelFormat32bppARGB, &locked), InvalidParameter);
}

TEST_F(LockBits, IndexedBitmapsOpenForReadingOnlyInOtherFormats) {
    Bitmap indexed(4, 4, PixelFormat8bppIndexed);
    EXPECT_EQ(indexed.LockBits(nullptr, ImageLockModeWrite, PixelFormat32bppARGB, &locked), InvalidParameter);
    EXPECT_EQ(indexed.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Ok);
    indexed.UnlockBits(&locked);
}

TEST_F(LockBits, BitsThatDoNotStartAtAByteAreWrittenBackToTheirPlaces) {
    Bitmap bits(16, 1, PixelFormat1bppIndexed);
    const Rect area(3, 0, 6, 1);
    ASSERT_EQ(bits.LockBits(&area, ImageLockModeRead | ImageLockModeWrite, PixelFormat1bppIndexed, &locked),
              Ok);
    bytesOf(locked)[0] = 0x84; // the first and the last of the six
    ASSERT_EQ(bits.UnlockBits(&locked), Ok);
    for (int x = 0; x < 16; ++x)
        EXPECT_EQ(pixelOf(bits, x, 0), x == 3 || x == 8 ? 0xFFFFFFFFU : 0xFF000000U) << x;
}
