#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Gdiplus;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

namespace {

struct DeleteHandle {
    void operator()(HBITMAP handle) const { DeleteObject(handle); }
};
using Handle = std::unique_ptr<HBITMAP__, DeleteHandle>;

Handle handleOf(Bitmap& bitmap, ARGB background = 0) {
    HBITMAP handle = nullptr;
    EXPECT_EQ(bitmap.GetHBITMAP(Color(background), &handle), Ok);
    return Handle(handle);
}

const BYTE* bitsOf(const Handle& handle) {
    BITMAP told = {};
    EXPECT_EQ(GetObjectW(handle.get(), sizeof told, &told), static_cast<int>(sizeof told));
    return static_cast<const BYTE*>(told.bmBits);
}

} // namespace

TEST(BitmapHandle, IsA32BitBottomUpSection) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(3, 2, PixelFormat24bppRGB);
    bitmap.SetPixel(0, 1, Color(255, 1, 2, 3)); // the lower row
    const Handle handle = handleOf(bitmap);
    BITMAP told = {};
    ASSERT_EQ(GetObjectW(handle.get(), 32, &told), 32);
    EXPECT_EQ(told.bmWidth, 3);
    EXPECT_EQ(told.bmHeight, 2);
    EXPECT_EQ(told.bmWidthBytes, 12);
    EXPECT_EQ(told.bmBitsPixel, 32);
    const auto* bits = static_cast<const BYTE*>(told.bmBits);
    EXPECT_EQ(bits[0], 3);
    EXPECT_EQ(bits[2], 1);
    EXPECT_EQ(bits[3], 255) << "sources without alpha are opaque";
}

TEST(BitmapHandle, HoldsPremultipliedColoursWithTheirAlpha) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1, PixelFormat32bppARGB);
    bitmap.SetPixel(0, 0, Color(0x80402010U));
    const Handle handle = handleOf(bitmap);
    const BYTE* bits = bitsOf(handle);
    EXPECT_EQ(bits[0], 0x08);
    EXPECT_EQ(bits[1], 0x10);
    EXPECT_EQ(bits[2], 0x20);
    EXPECT_EQ(bits[3], 0x80);
}

TEST(BitmapHandle, IsBlendedOverABackgroundUnlessThatIsBlackOrTransparent) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1, PixelFormat32bppARGB);
    bitmap.SetPixel(0, 0, Color(0x80402010U));
    const Handle white = handleOf(bitmap, 0x01FFFFFF); // the background's own alpha does not count
    EXPECT_EQ(bitsOf(white)[0], 0x08 + (255 * 127 + 127) / 255);
    EXPECT_EQ(bitsOf(white)[3], 255);
    const Handle black = handleOf(bitmap, 0xFF000000);
    EXPECT_EQ(bitsOf(black)[3], 0x80);
}

TEST(BitmapHandle, ComesBackAsAnRgbBitmapOfItsOwn) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(2, 2, PixelFormat32bppARGB);
    bitmap.SetPixel(1, 0, Color(0xFF402010U));
    Handle handle = handleOf(bitmap);
    Bitmap back(handle.get(), nullptr);
    ASSERT_EQ(back.GetLastStatus(), Ok);
    handle.reset();
    EXPECT_EQ(back.GetPixelFormat(), PixelFormat32bppRGB);
    EXPECT_EQ(pixelOf(back, 1, 0), 0xFF402010U);
    EXPECT_EQ(pixelOf(back, 1, 1), 0xFF000000U);
}

TEST(BitmapHandle, OfATopDownSectionShowsAPositiveHeight) {
    const GdiplusUser gdiplus;
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), 2, -2, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    VOID* bits = nullptr;
    const Handle handle(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
    ASSERT_TRUE(handle);
    static_cast<BYTE*>(bits)[0] = 7;
    BITMAP told = {};
    ASSERT_EQ(GetObjectW(handle.get(), 32, &told), 32);
    EXPECT_EQ(told.bmHeight, 2);
    Bitmap bitmap(handle.get(), nullptr);
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF000007U);
}

TEST(BitmapHandle, ThatIsNoneIsTold) {
    const GdiplusUser gdiplus;
    BITMAP told = {};
    int other = 0;
    EXPECT_EQ(GetObjectW(&other, 32, &told), 0);
    EXPECT_EQ(GetObjectW(nullptr, 32, &told), 0);
    EXPECT_FALSE(DeleteObject(nullptr));
    EXPECT_EQ(Bitmap(static_cast<HBITMAP>(nullptr), nullptr).GetLastStatus(), InvalidParameter);
    BITMAPINFO info = {};
    EXPECT_FALSE(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0));
}

TEST(BitmapHandle, CannotBeUsedAfterItIsDeleted) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1);
    HBITMAP handle = handleOf(bitmap).release();
    EXPECT_TRUE(DeleteObject(handle));
    BITMAP told = {};
    EXPECT_EQ(GetObjectW(handle, 32, &told), 0);
    EXPECT_FALSE(DeleteObject(handle));
}
