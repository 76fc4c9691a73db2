#include "gdiplus/image/EncodedPicture.h"

#include "backends/gdiplus/color/IccProfiles.h"
#include "backends/gdiplus/image/FakeDecoder.h"
#include "gdiplus/pixels/ConvertPixels.h"

#include <gtest/gtest.h>

#include <array>

using namespace GdiplusBackend;
using Gdiplus::ARGB;

namespace {

constexpr std::array<int, 2> twoReductions = {2, 4};

EncodedPicture pictureWith(ProfileBytes profile, const FakePicture& shown,
                           ColorManagement management = ColorManagement::ToSrgb, UINT flags = 0) {
    PictureFacts facts;
    facts.iccProfile = std::move(profile);
    facts.flags = flags;
    return {std::make_unique<FakeDecoder>(shown, facts), management};
}

EncodedPicture plain(const FakePicture& shown) {
    return pictureWith({}, shown);
}

ARGB pixelAt(const PixelBuffer& buffer, int x, int y) {
    ARGB pixel = 0;
    readArgb(buffer.view(), x, y, 1, &pixel);
    return pixel;
}

Result<PixelBuffer> drawnInto(const EncodedPicture& picture, int width, int height,
                              Kernel kernel = Kernel::Linear,
                              Gdiplus::RotateFlipType turn = Gdiplus::RotateNoneFlipNone) {
    const PictureFacts& facts = picture.facts();
    return picture.draw(
        planDrawing({facts.width, facts.height, facts.reductions, turn, width, height, kernel}), kernel);
}

FakePicture solid(RowLayout layout, std::uint32_t pixel, std::vector<ARGB> palette = {}) {
    return {32, 32, layout, [pixel](int, int) { return pixel; }, std::move(palette)};
}

/// Black on the left border, white on the right one, linear between.
FakePicture ramp(int width, int height) {
    return {width, height, RowLayout::Bgr24, [width](int x, int) {
                return static_cast<std::uint32_t>((x * 2 + 1) * 255 / (2 * width)) * 0x010101;
            }};
}

void expectRamp(const PixelBuffer& drawn, int width, int height) {
    for (const int y : {0, height - 1})
        for (int x = 1; x + 1 < width; ++x)
            EXPECT_NEAR(pixelAt(drawn, x, y) & 255, (x + 0.5) * 255 / width, 1.5) << x << ',' << y;
}

constexpr int halfLight = 188; ///< in sRGB (IEC 61966-2-1)

} // namespace

TEST(EncodedPicture, DrawsSizesThatBlocksDoNotDivideWithoutMovingAnything) {
    for (const int width : {640, 641, 655, 1000, 1023}) {
        const EncodedPicture picture = plain(ramp(width, 61));
        const auto drawn = drawnInto(picture, 20, 5);
        ASSERT_TRUE(drawn);
        expectRamp(*drawn, 20, 5);
    }
}

TEST(EncodedPicture, DrawsBehindAReductionThatDoesNotDivideTheSize) {
    const FakePicture shown = ramp(647, 61);
    PictureFacts facts;
    facts.reductions = twoReductions;
    const EncodedPicture picture(std::make_unique<FakeDecoder>(shown, facts), ColorManagement::Ignored);
    const DrawPlan plan =
        planDrawing({647, 61, twoReductions, Gdiplus::RotateNoneFlipNone, 20, 5, Kernel::Linear});
    ASSERT_EQ(plan.reduction, 4);
    const auto drawn = picture.draw(plan, Kernel::Linear);
    ASSERT_TRUE(drawn);
    for (int x = 1; x < 19; ++x)
        EXPECT_NEAR(pixelAt(*drawn, x, 2) & 255, (x + 0.5) * 255 / 20, 2) << x;
}

TEST(EncodedPicture, IsOpaqueUnlessSomethingOfItIsTransparent) {
    EXPECT_TRUE(plain(solid(RowLayout::Bgr24, 0)).isOpaque());
    EXPECT_TRUE(plain(solid(RowLayout::Cmyk32, 0)).isOpaque());
    EXPECT_FALSE(plain(solid(RowLayout::Bgra32, 0xFF000000)).isOpaque());
    EXPECT_TRUE(plain(solid(RowLayout::Index8, 0, {0xFF000000U})).isOpaque());
    EXPECT_FALSE(plain(solid(RowLayout::Index8, 0, {0xFF000000U, 0x00FFFFFFU})).isOpaque());
}

TEST(EncodedPicture, DrawsAndTurns) {
    const FakePicture corner = {64, 32, RowLayout::Bgr24,
                                [](int x, int y) { return x < 32 && y < 16 ? 0xFFFFFFU : 0U; }};
    const auto drawn = drawnInto(plain(corner), 4, 8, Kernel::Linear, Gdiplus::Rotate90FlipNone);
    ASSERT_TRUE(drawn);
    EXPECT_EQ(drawn->view().width, 4);
    EXPECT_EQ(drawn->view().height, 8);
    EXPECT_EQ(pixelAt(*drawn, 3, 0), 0xFFFFFFFFU) << "the upper left corner is the upper right one now";
    EXPECT_EQ(pixelAt(*drawn, 0, 0), 0xFF000000U);
    EXPECT_EQ(pixelAt(*drawn, 3, 7), 0xFF000000U);
}

TEST(EncodedPicture, ManagesColoursAtFullSizeAndDrawnReduced) {
    for (const RowLayout layout : {RowLayout::Bgr24, RowLayout::Bgrx32, RowLayout::Bgra32}) {
        const EncodedPicture picture = pictureWith(rgbProfile(1), solid(layout, 0xFF808080));
        EXPECT_NEAR(pixelAt(picture.decode(picture.pixelFormat()).value(), 5, 5) & 255, halfLight, 1);
        for (const int size : {4, 32})
            EXPECT_NEAR(pixelAt(drawnInto(picture, size, size).value(), 2, 2) & 255, halfLight, 1) << size;
    }
}

TEST(EncodedPicture, IgnoresTheProfileUnlessColoursAreManaged) {
    const EncodedPicture picture =
        pictureWith(rgbProfile(1), solid(RowLayout::Bgr24, 0x808080), ColorManagement::Ignored);
    EXPECT_EQ(pixelAt(picture.decode(PixelFormat24bppRGB).value(), 0, 0), 0xFF808080U);
    EXPECT_EQ(pixelAt(drawnInto(picture, 4, 4).value(), 0, 0), 0xFF808080U);
}

TEST(EncodedPicture, IgnoresBrokenProfilesAndThoseOfOtherColours) {
    for (const ProfileBytes& profile :
         {ProfileBytes(300, std::byte{7}), grayProfile(1), blackOnlyCmykProfile()}) {
        const EncodedPicture picture = pictureWith(profile, solid(RowLayout::Bgr24, 0x808080));
        EXPECT_EQ(pixelAt(picture.decode(PixelFormat24bppRGB).value(), 0, 0), 0xFF808080U);
        EXPECT_EQ(pixelAt(drawnInto(picture, 4, 4).value(), 0, 0), 0xFF808080U);
    }
}

TEST(EncodedPicture, ManagesTheColoursOfPremultipliedPixels) {
    const EncodedPicture picture = pictureWith(rgbProfile(1), solid(RowLayout::Bgra32, 0x80808080));
    const ARGB decoded = pixelAt(picture.decode(PixelFormat32bppPARGB).value(), 1, 1);
    const ARGB drawn = pixelAt(drawnInto(picture, 4, 4).value(), 1, 1);
    for (const ARGB pixel : {decoded, drawn}) {
        EXPECT_EQ(pixel >> 24, 0x80U);
        EXPECT_NEAR(pixel & 255, halfLight, 2);
    }
}

TEST(EncodedPicture, ManagesPalettes) {
    const EncodedPicture picture =
        pictureWith(rgbProfile(1), solid(RowLayout::Index8, 1, {0xFF000000U, 0xFF800000U}));
    ASSERT_EQ(picture.palette().size(), 2U);
    EXPECT_NEAR(picture.palette()[1] >> 16 & 255, halfLight, 1);
    EXPECT_EQ(pixelAt(picture.decode(PixelFormat8bppIndexed).value(), 0, 0), picture.palette()[1]);
    EXPECT_EQ(pixelAt(drawnInto(picture, 4, 4).value(), 0, 0), picture.palette()[1]);
}

TEST(EncodedPicture, ManagesGrayPalettesAndGrayWithAlpha) {
    const EncodedPicture indexed =
        pictureWith(grayProfile(1), solid(RowLayout::Index8, 1, {0xFF000000U, 0xFF808080U}),
                    ColorManagement::ToSrgb, Gdiplus::ImageFlagsColorSpaceGRAY);
    EXPECT_NEAR(pixelAt(drawnInto(indexed, 4, 4).value(), 0, 0) & 255, halfLight, 1);
    const EncodedPicture withAlpha = pictureWith(grayProfile(1), solid(RowLayout::Bgra32, 0xFF808080),
                                                 ColorManagement::ToSrgb, Gdiplus::ImageFlagsColorSpaceGRAY);
    EXPECT_NEAR(pixelAt(withAlpha.decode(PixelFormat32bppARGB).value(), 0, 0) & 255, halfLight, 1);
}

TEST(EncodedPicture, OfManagedInksIsAPictureOfColours) {
    const FakePicture half = solid(RowLayout::Cmyk32, 0x00000080);
    const EncodedPicture managed = pictureWith(blackOnlyCmykProfile(), half);
    EXPECT_EQ(managed.pixelFormat(), PixelFormat24bppRGB);
    EXPECT_NEAR(pixelAt(managed.decode(PixelFormat24bppRGB).value(), 0, 0) & 255, 119, 2);
    EXPECT_NEAR(pixelAt(drawnInto(managed, 4, 4).value(), 0, 0) & 255, 119, 2);
    const EncodedPicture unmanaged = pictureWith(blackOnlyCmykProfile(), half, ColorManagement::Ignored);
    EXPECT_EQ(unmanaged.pixelFormat(), PixelFormat32bppCMYK);
    EXPECT_EQ(pixelAt(unmanaged.decode(PixelFormat32bppCMYK).value(), 0, 0), 0xFF7F7F7FU);
    EXPECT_EQ(pixelAt(drawnInto(unmanaged, 4, 4).value(), 0, 0), 0xFF7F7F7FU);
}
