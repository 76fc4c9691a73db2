#include "scheduling/imagefile/ImageHelper.h"

#include "platform/Gdi.h"
#include "support/GdiplusUser.h"
#include "support/JpegFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace KestoThumbnailer {

namespace {

using Gdiplus::ARGB;
using TestSupport::pixelOf;
using TestSupport::wideOf;

constexpr ARGB red = 0xFFFF0000;
constexpr ARGB green = 0xFF00FF00;
constexpr ARGB blue = 0xFF0000FF;
constexpr ARGB white = 0xFFFFFFFF;

constexpr GUID pngEncoder = {0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

/// A 32-bit bottom-up bitmap handle of 2 by 2 pixels: red and green over blue and white.
class BottomUpHandle {
public:
    BottomUpHandle() {
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
        info.bmiHeader.biWidth = 2;
        info.bmiHeader.biHeight = 2;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        handle = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (bits) {
            const std::array<ARGB, 4> rowsFromTheBottom = {blue, white, red, green};
            std::memcpy(bits, rowsFromTheBottom.data(), sizeof rowsFromTheBottom);
        }
    }
    ~BottomUpHandle() { DeleteObject(handle); }
    BottomUpHandle(const BottomUpHandle&) = delete;
    BottomUpHandle& operator=(const BottomUpHandle&) = delete;

    HBITMAP get() const { return handle; }

private:
    HBITMAP handle = nullptr;
};

class ImageHelperTest : public ::testing::Test {
protected:
    std::string pathOf(std::string_view name) const { return (folder / name).string(); }

    /// Red and green over blue and white.
    std::unique_ptr<Gdiplus::Bitmap> fourColours(PixelFormat format = PixelFormat32bppARGB) const {
        auto bitmap = std::make_unique<Gdiplus::Bitmap>(2, 2, format);
        bitmap->SetPixel(0, 0, Gdiplus::Color(red));
        bitmap->SetPixel(1, 0, Gdiplus::Color(green));
        bitmap->SetPixel(0, 1, Gdiplus::Color(blue));
        bitmap->SetPixel(1, 1, Gdiplus::Color(white));
        return bitmap;
    }

    static void expectFourColours(Gdiplus::Bitmap& bitmap) {
        ASSERT_EQ(bitmap.GetWidth(), 2U);
        ASSERT_EQ(bitmap.GetHeight(), 2U);
        EXPECT_EQ(pixelOf(bitmap, 0, 0), red);
        EXPECT_EQ(pixelOf(bitmap, 1, 0), green);
        EXPECT_EQ(pixelOf(bitmap, 0, 1), blue);
        EXPECT_EQ(pixelOf(bitmap, 1, 1), white);
    }

    /// In `32bppCMYK`, the one format here that the older drawing interface does not know.
    std::unique_ptr<Gdiplus::Bitmap> cmykWhite() const {
        const TestSupport::JpegFile file{.width = 8,
                                         .height = 8,
                                         .colors = TestSupport::JpegColors::Cmyk,
                                         .pixelAt = [](int, int) { return 0xFFFFFFFFU; }};
        const std::wstring path = wideOf(folder.write("cmyk.jpg", file.bytes()));
        return std::make_unique<Gdiplus::Bitmap>(path.c_str());
    }

    TestSupport::TempFolder folder;
    TestSupport::GdiplusUser gdiplus;
};

} // namespace

TEST_F(ImageHelperTest, AnEncoderIsFoundByItsMimeType) {
    GUID clsid = {};
    EXPECT_EQ(ImageHelper::GetEncoderClsid(L"image/png", &clsid), 4);
    EXPECT_EQ(clsid, pngEncoder);
}

TEST_F(ImageHelperTest, AMimeTypeMustMatchCharacterForCharacter) {
    GUID clsid = {};
    EXPECT_EQ(ImageHelper::GetEncoderClsid(L"image/PNG", &clsid), -1);
    EXPECT_EQ(ImageHelper::GetEncoderClsid(L"image/pn", &clsid), -1);
    EXPECT_EQ(ImageHelper::GetEncoderClsid(L"", &clsid), -1);
    EXPECT_EQ(clsid, GUID{});
}

TEST_F(ImageHelperTest, TheExtensionChoosesTheKindOfFile) {
    struct Kind {
        const char* name;
        std::string_view signature;
    };
    const auto bitmap = fourColours();
    for (const Kind& kind : {Kind{"a.jpg", "\xFF\xD8\xFF"}, Kind{"a.JPEG", "\xFF\xD8\xFF"},
                             Kind{"a.gif", "GIF8"}, Kind{"a.png", "\x89PNG"}, Kind{"a.bmp", "BM"}}) {
        ASSERT_TRUE(ImageHelper::QuickSavePic(bitmap.get(), pathOf(kind.name))) << kind.name;
        EXPECT_TRUE(TestSupport::readFile(folder / kind.name).starts_with(kind.signature)) << kind.name;
    }
}

TEST_F(ImageHelperTest, TheExtensionIsComparedIgnoringCase) {
    const auto bitmap = fourColours();
    ASSERT_TRUE(ImageHelper::QuickSavePic(bitmap.get(), pathOf("tile.PnG")));
    Gdiplus::Bitmap reloaded(wideOf(folder / "tile.PnG").c_str());
    expectFourColours(reloaded);
}

TEST_F(ImageHelperTest, ATiffIsNotWrittenThoughThereIsAnEncoder) {
    GUID clsid = {};
    ASSERT_GE(ImageHelper::GetEncoderClsid(L"image/tiff", &clsid), 0);
    const auto bitmap = fourColours();
    EXPECT_FALSE(ImageHelper::QuickSavePic(bitmap.get(), pathOf("tile.tiff")));
    EXPECT_FALSE(std::filesystem::exists(folder / "tile.tiff"));
}

TEST_F(ImageHelperTest, ANameWithoutDotIsNotWritten) {
    const auto bitmap = fourColours();
    EXPECT_FALSE(ImageHelper::QuickSavePic(bitmap.get(), pathOf("png")));
    EXPECT_FALSE(std::filesystem::exists(folder / "png"));
}

TEST_F(ImageHelperTest, ANameThatIsAnExtensionAloneMatchesNothing) {
    const auto bitmap = fourColours();
    EXPECT_FALSE(ImageHelper::QuickSavePic(bitmap.get(), "png"));
}

TEST_F(ImageHelperTest, APathIsUtf8) {
    const auto bitmap = fourColours();
    const std::string name = "\xC3\xA4rger \xE2\x82\xAC.png";
    ASSERT_TRUE(ImageHelper::QuickSavePic(bitmap.get(), pathOf(name)));
    EXPECT_TRUE(std::filesystem::exists(folder / name));
}

TEST_F(ImageHelperTest, SavingFailsForANullBitmapAndForAMissingFolder) {
    const auto bitmap = fourColours();
    EXPECT_FALSE(ImageHelper::QuickSavePic(static_cast<Gdiplus::Bitmap*>(nullptr), pathOf("a.png")));
    EXPECT_FALSE(ImageHelper::QuickSavePic(bitmap.get(), pathOf("missing/a.png")));
    EXPECT_FALSE(std::filesystem::exists(folder / "a.png"));
}

TEST_F(ImageHelperTest, ABottomUpHandleIsSavedUpright) {
    const BottomUpHandle handle;
    ASSERT_TRUE(ImageHelper::QuickSavePic(handle.get(), pathOf("handle.png")));
    Gdiplus::Bitmap reloaded(wideOf(folder / "handle.png").c_str());
    expectFourColours(reloaded);
}

TEST_F(ImageHelperTest, AHandleThatCannotBeConvertedIsNotSaved) {
    EXPECT_FALSE(ImageHelper::QuickSavePic(static_cast<HBITMAP>(nullptr), pathOf("handle.png")));
    EXPECT_FALSE(std::filesystem::exists(folder / "handle.png"));
}

TEST_F(ImageHelperTest, AHandleTellsItsSizeAndRows) {
    const BottomUpHandle handle;
    BITMAP info = {};
    EXPECT_EQ(ImageHelper::HBitmapToGDIBITMAP(handle.get(), &info), 32);
    EXPECT_EQ(info.bmWidth, 2);
    EXPECT_EQ(info.bmHeight, 2);
    EXPECT_EQ(info.bmWidthBytes, 8);
    EXPECT_EQ(ImageHelper::HBitmapToGDIBITMAP(nullptr, &info), 0);
}

TEST_F(ImageHelperTest, RowsOfAHandleAreCopiedAsTheyLieUnlessFlipped) {
    const BottomUpHandle handle;
    for (const bool flip : {false, true}) {
        Gdiplus::Bitmap* out = nullptr;
        ASSERT_EQ(ImageHelper::HBitmapToGDIPlusBitmap(handle.get(), &out, PixelFormat32bppARGB, flip),
                  Gdiplus::Ok);
        const std::unique_ptr<Gdiplus::Bitmap> bitmap(out);
        EXPECT_EQ(pixelOf(*bitmap, 0, 0), flip ? red : blue);
        EXPECT_EQ(pixelOf(*bitmap, 1, 1), flip ? white : green);
    }
}

TEST_F(ImageHelperTest, RowsOfAnotherLengthAreRefused) {
    const BottomUpHandle handle;
    Gdiplus::Bitmap* out = nullptr;
    EXPECT_EQ(ImageHelper::HBitmapToGDIPlusBitmap(handle.get(), &out, PixelFormat16bppRGB565, true),
              Gdiplus::InvalidParameter);
    EXPECT_EQ(out, nullptr);
}

TEST_F(ImageHelperTest, WhatIsNoHandleIsAGenericError) {
    Gdiplus::Bitmap* out = nullptr;
    EXPECT_EQ(ImageHelper::HBitmapToGDIPlusBitmap(nullptr, &out, PixelFormat32bppARGB, true),
              Gdiplus::GenericError);
    EXPECT_EQ(out, nullptr);
}

TEST_F(ImageHelperTest, ANullBitmapHasNoHandle) {
    HBITMAP out = nullptr;
    EXPECT_EQ(ImageHelper::GDIPlusBitmapToHBitmap(nullptr, &out), Gdiplus::InvalidParameter);
    EXPECT_EQ(out, nullptr);
}

TEST_F(ImageHelperTest, ABitmapComesBackFromItsHandle) {
    HBITMAP handle = nullptr;
    ASSERT_EQ(ImageHelper::GDIPlusBitmapToHBitmap(fourColours().get(), &handle), Gdiplus::Ok);
    Gdiplus::Bitmap* out = nullptr;
    ASSERT_EQ(ImageHelper::HBitmapToGDIPlusBitmap(handle, &out, PixelFormat32bppARGB, true), Gdiplus::Ok);
    const std::unique_ptr<Gdiplus::Bitmap> bitmap(out);
    expectFourColours(*bitmap);
    EXPECT_TRUE(DeleteObject(handle));
}

TEST_F(ImageHelperTest, ABitmapThatGdiDoesNotKnowGetsItsHandleByWayOf24Bits) {
    const auto cmyk = cmykWhite();
    ASSERT_EQ(cmyk->GetPixelFormat(), PixelFormat32bppCMYK);
    HBITMAP handle = nullptr;
    ASSERT_EQ(ImageHelper::SafeGetHBITMAP(cmyk.get(), &handle), Gdiplus::Ok);
    Gdiplus::Bitmap copy(handle, nullptr);
    EXPECT_EQ(copy.GetWidth(), 8U);
    EXPECT_EQ(pixelOf(copy, 4, 4), white);
    EXPECT_TRUE(DeleteObject(handle));
}

TEST_F(ImageHelperTest, ACompatibleBitmapIsNotReplaced) {
    const auto bitmap = fourColours();
    Gdiplus::Bitmap* made = bitmap.get();
    ImageHelper::MakeBitmapCompatibleWithGDI(made);
    EXPECT_EQ(made, bitmap.get());
    EXPECT_EQ(made->GetPixelFormat(), PixelFormat32bppARGB);
}

TEST_F(ImageHelperTest, ACmykBitmapIsReplacedBy24Bits) {
    Gdiplus::Bitmap* made = cmykWhite().release();
    ImageHelper::MakeBitmapCompatibleWithGDI(made);
    const std::unique_ptr<Gdiplus::Bitmap> owned(made);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetPixelFormat(), PixelFormat24bppRGB);
    EXPECT_EQ(pixelOf(*made, 4, 4), white);
}

TEST_F(ImageHelperTest, ABitmapOfUnknownFormatThatCannotBeCopiedBecomesNull) {
    auto* made = new Gdiplus::Bitmap(wideOf(folder / "missing.png").c_str());
    ASSERT_NE(made->GetLastStatus(), Gdiplus::Ok);
    ImageHelper::MakeBitmapCompatibleWithGDI(made);
    EXPECT_EQ(made, nullptr);
}

TEST_F(ImageHelperTest, NullStaysNullWhenMadeCompatible) {
    Gdiplus::Bitmap* none = nullptr;
    ImageHelper::MakeBitmapCompatibleWithGDI(none);
    EXPECT_EQ(none, nullptr);
}

} // namespace KestoThumbnailer
