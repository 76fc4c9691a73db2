#include "backends/gdiplus/codecs/BmpBuilder.h"
#include "backends/gdiplus/codecs/GifBuilder.h"
#include "backends/gdiplus/codecs/JpegBuilder.h"
#include "backends/gdiplus/codecs/PngBuilder.h"
#include "backends/gdiplus/codecs/TiffBuilder.h"
#include "backends/gdiplus/flat/PictureFiles.h"

#include <array>
#include <filesystem>

using namespace Gdiplus;
using namespace GdiplusBackend;
using TestSupport::pixelOf;

namespace {

using Load = PictureFiles;
using Samples = std::array<int, 4>;

constexpr UINT always = ImageFlagsReadOnly | ImageFlagsHasRealPixelSize;

Samples midTones(int, int) {
    return {1, 1, 1, 1};
}

PngBuilder png(int colour, int bitDepth) {
    return PngBuilder(4, 3, {colour, bitDepth}, midTones);
}

PngBuilder palettePng(int bitDepth) {
    return png(3, bitDepth).palette({{10, 20, 30}, {40, 50, 60}});
}

JpegBuilder jpeg() {
    return JpegBuilder(8, 8, [](int, int) { return Samples{100, 100, 100, 100}; });
}

GUID rawFormatOf(const Bitmap& bitmap) {
    GUID format = {};
    EXPECT_EQ(bitmap.GetRawFormat(&format), Ok);
    return format;
}

} // namespace

TEST_F(Load, TellsThePixelFormatOfEachKindOfPng) {
    EXPECT_EQ(open(png(0, 1).build())->GetPixelFormat(), PixelFormat1bppIndexed);
    for (const int bits : {2, 4, 8, 16})
        EXPECT_EQ(open(png(0, bits).build())->GetPixelFormat(), PixelFormat32bppARGB) << "grey " << bits;
    EXPECT_EQ(open(palettePng(1).build())->GetPixelFormat(), PixelFormat1bppIndexed);
    EXPECT_EQ(open(palettePng(2).build())->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(open(palettePng(4).build())->GetPixelFormat(), PixelFormat4bppIndexed);
    EXPECT_EQ(open(palettePng(8).build())->GetPixelFormat(), PixelFormat8bppIndexed);
    EXPECT_EQ(open(png(2, 8).build())->GetPixelFormat(), PixelFormat24bppRGB);
    EXPECT_EQ(open(png(2, 16).build())->GetPixelFormat(), PixelFormat32bppARGB);
    for (const int bits : {8, 16}) {
        EXPECT_EQ(open(png(4, bits).build())->GetPixelFormat(), PixelFormat32bppARGB)
            << "grey, alpha " << bits;
        EXPECT_EQ(open(png(6, bits).build())->GetPixelFormat(), PixelFormat32bppARGB) << "alpha " << bits;
    }
}

TEST_F(Load, OfAPngWithATransparencyChunkGivesAlphaEvenIfNothingIsTransparent) {
    EXPECT_EQ(open(png(2, 8).transparentColour({9, 9, 9}).build())->GetPixelFormat(), PixelFormat32bppARGB);
    const auto opaque = open(palettePng(8).paletteAlpha({255, 255}).build());
    EXPECT_EQ(opaque->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(pixelOf(*opaque, 0, 0), 0xFF28323CU);
}

TEST_F(Load, TellsThePixelFormatOfEachKindOfJpeg) {
    EXPECT_EQ(open(jpeg().build())->GetPixelFormat(), PixelFormat24bppRGB);
    EXPECT_EQ(open(jpeg().grey().build())->GetPixelFormat(), PixelFormat8bppIndexed);
    EXPECT_EQ(open(jpeg().cmyk().build())->GetPixelFormat(), PixelFormat32bppCMYK);
    EXPECT_EQ(open(jpeg().ycck().build())->GetPixelFormat(), PixelFormat32bppCMYK);
}

TEST_F(Load, OfAGifGivesIndicesForOneFrameAndAlphaForSeveral) {
    GifBuilder gif(4, 3, gifColours(4));
    gif.frame({.width = 4, .height = 3});
    EXPECT_EQ(open(gif.build())->GetPixelFormat(), PixelFormat8bppIndexed);
    gif.frame({.width = 4, .height = 3});
    EXPECT_EQ(open(gif.build())->GetPixelFormat(), PixelFormat32bppARGB);
}

TEST_F(Load, TellsThePixelFormatOfBmpAndTiff) {
    const auto bmp = [](int bits, std::vector<int> pixels) {
        return BmpBuilder{.width = 1, .height = 1, .bits = bits, .pixels = std::move(pixels)}.build();
    };
    EXPECT_EQ(open(bmp(16, {1, 2, 0, 0}))->GetPixelFormat(), PixelFormat32bppRGB);
    EXPECT_EQ(open(bmp(24, {1, 2, 3, 0}))->GetPixelFormat(), PixelFormat24bppRGB);
    const auto wide = open(bmp(32, {1, 2, 3, 4}));
    EXPECT_EQ(wide->GetPixelFormat(), PixelFormat32bppRGB);
    EXPECT_EQ(pixelOf(*wide, 0, 0), 0xFF030201U);
    EXPECT_EQ(open(buildTiff({.width = 2, .height = 2}))->GetPixelFormat(), PixelFormat24bppRGB);
}

TEST_F(Load, FlagsAlphaColourSpaceAndAStatedResolution) {
    EXPECT_EQ(open(png(6, 8).build())->GetFlags() & (always | ImageFlagsHasAlpha),
              always | ImageFlagsHasAlpha);
    EXPECT_EQ(open(png(2, 8).build())->GetFlags(), always | ImageFlagsColorSpaceRGB);
    EXPECT_EQ(open(png(0, 8).build())->GetFlags() &
                  (always | ImageFlagsColorSpaceGRAY | ImageFlagsHasRealDPI),
              always | ImageFlagsColorSpaceGRAY);
    EXPECT_EQ(open(png(2, 8).resolution(3780, 3780).build())->GetFlags(),
              always | ImageFlagsColorSpaceRGB | ImageFlagsHasRealDPI);
    EXPECT_EQ(open(jpeg().density(1, 72, 72).build())->GetFlags() &
                  (always | ImageFlagsHasAlpha | ImageFlagsHasRealDPI),
              always | ImageFlagsHasRealDPI);
    GifBuilder gif(4, 3, gifColours(4));
    gif.frame({.width = 4, .height = 3});
    EXPECT_NE(open(gif.build())->GetFlags() & ImageFlagsHasRealDPI, 0U);
}

TEST_F(Load, TellsTheResolutionOr96) {
    const auto stated = open(png(2, 8).resolution(11811, 5906).build());
    EXPECT_NEAR(stated->GetHorizontalResolution(), 300, 0.1);
    EXPECT_NEAR(stated->GetVerticalResolution(), 150, 0.1);
    const auto perCentimetre = open(jpeg().density(2, 100, 50).build());
    EXPECT_NEAR(perCentimetre->GetHorizontalResolution(), 254, 0.1);
    EXPECT_NEAR(perCentimetre->GetVerticalResolution(), 127, 0.1);
    const auto silent = open(png(2, 8).build());
    EXPECT_FLOAT_EQ(silent->GetHorizontalResolution(), 96);
    EXPECT_FLOAT_EQ(silent->GetVerticalResolution(), 96);
}

TEST_F(Load, TellsTheKindOfFile) {
    GifBuilder gif(4, 3, gifColours(4));
    gif.frame({.width = 4, .height = 3});
    EXPECT_EQ(rawFormatOf(*open(png(2, 8).build())), ImageFormatPNG);
    EXPECT_EQ(rawFormatOf(*open(jpeg().build())), ImageFormatJPEG);
    EXPECT_EQ(rawFormatOf(*open(gif.build())), ImageFormatGIF);
    EXPECT_EQ(rawFormatOf(*open(buildTiff({.width = 2, .height = 2}))), ImageFormatTIFF);
    EXPECT_EQ(rawFormatOf(*open(BmpBuilder{.width = 1, .height = 1, .pixels = {1, 2, 3, 0}}.build())),
              ImageFormatBMP);
}

TEST_F(Load, GoesByTheContentNotByTheExtension) {
    Bitmap bitmap(write("really-a-png.jpg", png(2, 8).build()).c_str());
    ASSERT_EQ(bitmap.GetLastStatus(), Ok);
    EXPECT_EQ(rawFormatOf(bitmap), ImageFormatPNG);
}

TEST_F(Load, ShowsThePictureThatWasOpenedAfterItsFileIsDeletedOrReplaced) {
    const auto solid = [](int value) {
        return PngBuilder(40, 30, {2, 8},
                          [value](int, int) {
                              return Samples{value, value, value, 0};
                          })
            .build();
    };
    const std::wstring path = write("picture.png", solid(200));
    Bitmap beforeReplacing(path.c_str());
    write("other.png", solid(50));
    std::filesystem::rename(folder / "other.png", folder / "picture.png");
    Bitmap beforeDeleting(path.c_str());
    std::filesystem::remove(folder / "picture.png");
    EXPECT_EQ(pixelOf(beforeReplacing, 7, 7), 0xFFC8C8C8U);
    EXPECT_EQ(drawn(beforeDeleting, 4, 3), ArgbPixels(12, 0xFF323232U));
}

TEST_F(Load, OpensAPathOfAnyCaseAndEitherSlash) {
    std::filesystem::create_directory(folder / "Sub");
    write("Sub/Picture.PNG", png(2, 8).build());
    std::wstring path = TestSupport::wideOf(folder / "");
    EXPECT_EQ(Bitmap((path + L"sub\\picture.png").c_str()).GetLastStatus(), Ok);
}

TEST_F(Load, GivesTheInksOfACmykPicture) {
    const auto bitmap = open(jpeg().cmyk().build());
    BitmapData locked;
    ASSERT_EQ(bitmap->LockBits(nullptr, ImageLockModeRead, PixelFormat32bppCMYK, &locked), Ok);
    EXPECT_NEAR(static_cast<const BYTE*>(locked.Scan0)[0], 155, 1) << "Adobe's files hold the complement";
    bitmap->UnlockBits(&locked);
}
