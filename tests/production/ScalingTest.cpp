#include "production/GdiplusBitmapThumbnailingHelper.h"

#include "support/GdiplusUser.h"
#include "support/JpegFile.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>

namespace KestoThumbnailer {

namespace {

using Helper = GdiplusBitmapThumbnailingHelper;
using Gdiplus::ARGB;
using TestSupport::pixelOf;

constexpr ARGB red = 0xFFFF0000;
constexpr ARGB blue = 0xFF0000FF;
constexpr ARGB black = 0xFF000000;

std::unique_ptr<Gdiplus::Bitmap> thumbnailOf(Gdiplus::Bitmap& source, int width, int height) {
    return std::unique_ptr<Gdiplus::Bitmap>(Helper::GenerateThumbnailBitmap(&source, width, height));
}

/// The left half red, the right half blue.
void paintHalves(Gdiplus::Bitmap& bitmap) {
    const int half = static_cast<int>(bitmap.GetWidth()) / 2;
    const int height = static_cast<int>(bitmap.GetHeight());
    const Gdiplus::SolidBrush left{Gdiplus::Color(red)};
    const Gdiplus::SolidBrush right{Gdiplus::Color(blue)};
    Gdiplus::Graphics graphics(&bitmap);
    graphics.FillRectangle(&left, 0, 0, half, height);
    graphics.FillRectangle(&right, half, 0, half, height);
}

class Scaling : public ::testing::Test {
protected:
    TestSupport::GdiplusUser gdiplus;
};

class FrameScaling : public Scaling {
protected:
    /// A frame of one premultiplied colour.
    static boost::shared_ptr<KestoRenderLib::MetaBitmap> frameOf(int width, int height, ARGB premultiplied) {
        auto frame =
            KestoRenderLib::MetaBitmap::Create({width, height}, KestoRenderLib::PixelFormat::Premultiplied32);
        for (int y = 0; y < height; ++y) {
            unsigned char* pixel = frame->GetPixels() + static_cast<std::ptrdiff_t>(y) * frame->GetStride();
            for (int x = 0; x < width; ++x, pixel += 4)
                std::memcpy(pixel, &premultiplied, 4);
        }
        return frame;
    }
};

} // namespace

TEST_F(Scaling, ASourceIsShrunkIntoTheBounds) {
    Gdiplus::Bitmap source(400, 100, PixelFormat24bppRGB);
    paintHalves(source);
    const auto thumbnail = thumbnailOf(source, 40, 40);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->GetWidth(), 40U);
    EXPECT_EQ(thumbnail->GetHeight(), 10U);
    EXPECT_EQ(pixelOf(*thumbnail, 0, 0), red);
    EXPECT_EQ(pixelOf(*thumbnail, 15, 9), red);
    EXPECT_EQ(pixelOf(*thumbnail, 24, 0), blue);
    EXPECT_EQ(pixelOf(*thumbnail, 39, 9), blue);
}

TEST_F(Scaling, ASourceThatFitsIsCopiedPixelForPixel) {
    Gdiplus::Bitmap source(4, 2, PixelFormat32bppARGB);
    source.SetPixel(3, 1, Gdiplus::Color(0x80FF8040U));
    const auto thumbnail = thumbnailOf(source, 100, 100);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_NE(thumbnail.get(), &source);
    EXPECT_EQ(thumbnail->GetWidth(), 4U);
    EXPECT_EQ(thumbnail->GetHeight(), 2U);
    EXPECT_EQ(pixelOf(*thumbnail, 0, 0), 0U);
    EXPECT_EQ(pixelOf(*thumbnail, 3, 1) >> 24, 0x80U);
    EXPECT_EQ(pixelOf(source, 3, 1), 0x80FF8040U);
}

TEST_F(Scaling, NoBoundsGiveACopyOfFullSize) {
    Gdiplus::Bitmap source(640, 480, PixelFormat24bppRGB);
    paintHalves(source);
    const auto copy = thumbnailOf(source, 0, 0);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy.get(), &source);
    EXPECT_EQ(copy->GetWidth(), 640U);
    EXPECT_EQ(copy->GetHeight(), 480U);
    EXPECT_EQ(pixelOf(*copy, 319, 479), red);
    EXPECT_EQ(pixelOf(*copy, 320, 0), blue);
}

TEST_F(Scaling, NegativeBoundsGiveACopyOfFullSize) {
    Gdiplus::Bitmap source(64, 48, PixelFormat24bppRGB);
    const auto copy = thumbnailOf(source, -10, 10);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetWidth(), 64U);
    EXPECT_EQ(copy->GetHeight(), 48U);
}

TEST_F(Scaling, AnIndexedSourceBecomes32BitsWithAlpha) {
    Gdiplus::Bitmap source(8, 8, PixelFormat8bppIndexed);
    const Gdiplus::ColorPalette palette{.Flags = 0, .Count = 1, .Entries = {red}};
    ASSERT_EQ(source.SetPalette(&palette), Gdiplus::Ok);
    const auto thumbnail = thumbnailOf(source, 4, 4);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(pixelOf(*thumbnail, 2, 2), red);
}

TEST_F(Scaling, AnyOtherSourceKeepsItsFormat) {
    for (const PixelFormat format :
         {PixelFormat24bppRGB, PixelFormat32bppRGB, PixelFormat32bppARGB, PixelFormat32bppPARGB}) {
        Gdiplus::Bitmap source(16, 8, format);
        paintHalves(source);
        const auto thumbnail = thumbnailOf(source, 8, 8);
        ASSERT_NE(thumbnail, nullptr) << std::hex << format;
        EXPECT_EQ(thumbnail->GetPixelFormat(), format);
        EXPECT_EQ(pixelOf(*thumbnail, 0, 0), red) << std::hex << format;
        EXPECT_EQ(pixelOf(*thumbnail, 7, 3), blue) << std::hex << format;
    }
}

TEST_F(Scaling, TransparencyIsKept) {
    Gdiplus::Bitmap source(40, 40, PixelFormat32bppARGB);
    const auto thumbnail = thumbnailOf(source, 10, 10);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(pixelOf(*thumbnail, 5, 5), 0U);
}

TEST_F(Scaling, ANullSourceHasNoThumbnail) {
    EXPECT_EQ(Helper::GenerateThumbnailBitmap(nullptr, 10, 10), nullptr);
}

TEST_F(Scaling, ASourceThatFailedToOpenHasNoThumbnail) {
    Gdiplus::Bitmap source(L"/missing/picture.png");
    EXPECT_EQ(Helper::GenerateThumbnailBitmap(&source, 10, 10), nullptr);
}

TEST_F(Scaling, ASourceThatFailsToDecodeLeavesTheThumbnailBlank) {
    const TestSupport::TempFolder folder;
    const TestSupport::PngFile png{.width = 40, .height = 40, .pixelAt = [](int, int) { return red; }};
    auto bytes = png.bytes();
    bytes.resize(48); // the header, and of the pixels next to nothing
    Gdiplus::Bitmap source(TestSupport::wideOf(folder.write("cut.png", bytes)).c_str());
    ASSERT_EQ(source.GetWidth(), 40U);
    const auto thumbnail = thumbnailOf(source, 10, 10);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(pixelOf(*thumbnail, 9, 9), 0U);
}

TEST_F(Scaling, ASourceInAFormatThatNothingCanBeDrawnIntoHasNoThumbnail) {
    const TestSupport::TempFolder folder;
    const TestSupport::JpegFile jpeg{.width = 16,
                                     .height = 16,
                                     .colors = TestSupport::JpegColors::Cmyk,
                                     .pixelAt = [](int, int) { return 0xFFFFFFFFU; }};
    Gdiplus::Bitmap source(TestSupport::wideOf(folder.write("cmyk.jpg", jpeg.bytes())).c_str());
    ASSERT_EQ(source.GetPixelFormat(), PixelFormat32bppCMYK);
    EXPECT_EQ(Helper::GenerateThumbnailBitmap(&source, 8, 8), nullptr);
}

TEST_F(FrameScaling, AFrameIsShrunkIntoTheBounds) {
    const auto frame = frameOf(200, 100, black);
    paintHalves(*frame->AsGdiplusBitmap());
    const std::unique_ptr<Gdiplus::Bitmap> thumbnail(Helper::ScaleToGetThumbnail(frame, 50, 50));
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->GetWidth(), 50U);
    EXPECT_EQ(thumbnail->GetHeight(), 25U);
    EXPECT_EQ(thumbnail->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(pixelOf(*thumbnail, 5, 12), red);
    EXPECT_EQ(pixelOf(*thumbnail, 45, 12), blue);
}

TEST_F(FrameScaling, ATransparentFrameEndsOnBlack) {
    const std::unique_ptr<Gdiplus::Bitmap> thumbnail(Helper::ScaleToGetThumbnail(frameOf(20, 20, 0), 10, 10));
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(pixelOf(*thumbnail, 5, 5), black);
}

TEST_F(FrameScaling, AHalfTransparentFrameIsBlendedOverBlack) {
    const std::unique_ptr<Gdiplus::Bitmap> thumbnail(
        Helper::ScaleToGetThumbnail(frameOf(20, 20, 0x80008000), 10, 10));
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(pixelOf(*thumbnail, 5, 5), 0xFF008000U);
}

TEST_F(FrameScaling, AnEmptyFrameHasNoThumbnail) {
    EXPECT_EQ(Helper::ScaleToGetThumbnail({}, 10, 10), nullptr);
}

TEST_F(FrameScaling, NoBoundsGiveTheFrameInFullSize) {
    const std::unique_ptr<Gdiplus::Bitmap> copy(Helper::ScaleToGetThumbnail(frameOf(30, 20, red), 0, 0));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetWidth(), 30U);
    EXPECT_EQ(copy->GetHeight(), 20U);
    EXPECT_EQ(pixelOf(*copy, 29, 19), red);
}

} // namespace KestoThumbnailer
