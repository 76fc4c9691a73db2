#include "gdiplus/image/PictureRows.h"

#include "backends/gdiplus/color/IccProfiles.h"
#include "backends/gdiplus/image/FakeDecoder.h"
#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/PixelBuffer.h"
#include "gdiplus/pixels/Premultiply.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

using namespace GdiplusBackend;
using Gdiplus::ARGB;

namespace {

std::uint32_t scattered(int x, int y) {
    const std::uint32_t mixed = (static_cast<std::uint32_t>(x) * 2654435761U) ^
                                (static_cast<std::uint32_t>(y) * 2246822519U + 0x9E3779B9U);
    return mixed ^ mixed >> 15;
}

FakePicture indexed(int width, int height, RowLayout layout, ARGB alpha) {
    const std::uint32_t colors = 1U << bitsPerPixel(layout);
    FakePicture picture = {width, height, layout,
                           [colors](int x, int y) { return (scattered(x, y) >> 8) % colors; }};
    for (std::uint32_t i = 0; i < colors; ++i)
        picture.palette.push_back((scattered(static_cast<int>(i), 77) & 0xFFFFFF) | alpha);
    return picture;
}

std::vector<FakePicture> everyLayout(int width, int height) {
    return {indexed(width, height, RowLayout::Bits1, 0xFF000000),
            indexed(width, height, RowLayout::Bits4, 0x80000000),
            indexed(width, height, RowLayout::Index8, 0xFF000000),
            indexed(width, height, RowLayout::Index8, 0x30000000),
            {width, height, RowLayout::Bgr24, scattered},
            {width, height, RowLayout::Bgrx32, scattered},
            {width, height, RowLayout::Bgra32, scattered},
            {width, height, RowLayout::Cmyk32, scattered}};
}

bool isTransparent(const FakePicture& picture) {
    return picture.layout == RowLayout::Bgra32 || std::any_of(picture.palette.begin(), picture.palette.end(),
                                                              [](ARGB color) { return color >> 24 < 255; });
}

/// The average of a block of premultiplied colours, rounded to nearest.
ARGB exactAverage(const FakePicture& picture, int left, int top, int boxX, int boxY) {
    std::array<std::uint32_t, 4> sums = {};
    std::uint32_t count = 0;
    for (int y = top; y < std::min(top + boxY, picture.height); ++y)
        for (int x = left; x < std::min(left + boxX, picture.width); ++x, ++count)
            for (unsigned channel = 0; channel < 4; ++channel)
                sums[channel] += premultiplyArgb(picture.colorAt(x, y)) >> 8 * channel & 255;
    ARGB average = 0;
    for (unsigned channel = 0; channel < 4; ++channel)
        average |= (sums[channel] + count / 2) / count << 8 * channel;
    return average;
}

/// What the sink makes of a picture, premultiplied.
std::vector<ARGB> shrunk(const FakePicture& picture, int boxX, int boxY,
                         const ColorTransform* transform = nullptr) {
    const int width = reducedLength(picture.width, boxX);
    const int height = reducedLength(picture.height, boxY);
    const auto buffer =
        PixelBuffer::create(width, height,
                            isTransparent(picture) ? PixelFormat32bppPARGB : PixelFormat32bppRGB)
            .value();
    ShrunkRows rows({picture.layout, picture.palette, picture.width, picture.height, boxX, boxY}, transform,
                    buffer.view());
    for (int y = 0; y < picture.height; ++y)
        rows.putRow(picture.row(y));
    std::vector<ARGB> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            ARGB pixel = 0;
            std::memcpy(&pixel, buffer.view().row(y) + x * 4, 4);
            pixels.push_back(isTransparent(picture) ? pixel : pixel | 0xFF000000);
        }
    return pixels;
}

std::vector<ARGB> expectedAverages(const FakePicture& picture, int boxX, int boxY) {
    std::vector<ARGB> pixels;
    for (int y = 0; y < picture.height; y += boxY)
        for (int x = 0; x < picture.width; x += boxX)
            pixels.push_back(exactAverage(picture, x, y, boxX, boxY));
    return pixels;
}

/// What the sink for the full size makes of a picture, not premultiplied.
std::vector<ARGB> fullSize(const FakePicture& picture, Gdiplus::PixelFormat format,
                           const ColorTransform* transform = nullptr) {
    const auto buffer =
        PixelBuffer::create(picture.width, picture.height, format,
                            IsIndexedPixelFormat(format) ? picture.palette : std::vector<ARGB>())
            .value();
    FullSizeRows rows(picture.layout, picture.palette, transform, buffer.view());
    for (int y = 0; y < picture.height; ++y)
        rows.putRow(picture.row(y));
    std::vector<ARGB> pixels(static_cast<std::size_t>(picture.width * picture.height));
    for (int y = 0; y < picture.height; ++y)
        readArgb(buffer.view(), 0, y, picture.width, pixels.data() + y * picture.width);
    return pixels;
}

std::vector<ARGB> colorsOf(const FakePicture& picture) {
    std::vector<ARGB> colors;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            colors.push_back(picture.colorAt(x, y));
    return colors;
}

FakePicture solid(RowLayout layout, std::uint32_t pixel) {
    return {4, 4, layout, [pixel](int, int) { return pixel; }};
}

/// Half of the light is 188 in sRGB (IEC 61966-2-1).
std::shared_ptr<const ColorTransform> linearLight() {
    return ColorTransform::create(rgbProfile(1), ColorTransform::Space::Rgb);
}

} // namespace

TEST(ShrunkRows, AverageBlocksOfEveryLayoutExactly) {
    for (const FakePicture& picture : everyLayout(24, 12))
        EXPECT_EQ(shrunk(picture, 3, 4), expectedAverages(picture, 3, 4)) << static_cast<int>(picture.layout);
}

TEST(ShrunkRows, AverageWhatIsLeftInTheLastBlocks) {
    for (const FakePicture& picture : everyLayout(23, 11)) {
        EXPECT_EQ(shrunk(picture, 3, 4), expectedAverages(picture, 3, 4)) << static_cast<int>(picture.layout);
        EXPECT_EQ(shrunk(picture, 1, 5), expectedAverages(picture, 1, 5)) << static_cast<int>(picture.layout);
        EXPECT_EQ(shrunk(picture, 50, 1), expectedAverages(picture, 50, 1))
            << static_cast<int>(picture.layout);
    }
}

TEST(ShrunkRows, WithoutBlocksArePremultipliedAndElseUnchanged) {
    for (const FakePicture& picture : everyLayout(13, 3))
        EXPECT_EQ(shrunk(picture, 1, 1), expectedAverages(picture, 1, 1)) << static_cast<int>(picture.layout);
}

TEST(ShrunkRows, DoNotLetTheColourOfTransparentPixelsCount) {
    const FakePicture picture = {2, 2, RowLayout::Bgra32,
                                 [](int x, int) { return x == 0 ? 0xFFFF0000U : 0x0000FF00U; }};
    EXPECT_EQ(shrunk(picture, 2, 2), (std::vector<ARGB>{0x80800000U}));
}

TEST(ShrunkRows, AverageTheColoursOfInksNotTheInks) {
    // Full cyan, and full black: neither has any red, so the average has none.
    const FakePicture picture = {2, 1, RowLayout::Cmyk32,
                                 [](int x, int) { return x == 0 ? 0xFF000000U : 0x000000FFU; }};
    EXPECT_EQ(shrunk(picture, 2, 1), (std::vector<ARGB>{0xFF008080U}));
}

TEST(ShrunkRows, ManageTheColoursOfEveryLayoutOfColours) {
    const auto transform = linearLight();
    ASSERT_TRUE(transform);
    for (const RowLayout layout : {RowLayout::Bgr24, RowLayout::Bgrx32, RowLayout::Bgra32})
        for (const int box : {1, 2})
            for (const ARGB pixel : shrunk(solid(layout, 0xFF808080), box, box, transform.get()))
                for (const int shift : {0, 8, 16})
                    EXPECT_NEAR(pixel >> shift & 255, 188, 1) << static_cast<int>(layout) << " by " << box;
}

TEST(ShrunkRows, ManageStraightColoursWhereTheyArePremultiplied) {
    const auto transform = linearLight();
    ASSERT_TRUE(transform);
    for (const ARGB pixel : shrunk(solid(RowLayout::Bgra32, 0x80808080), 2, 2, transform.get())) {
        EXPECT_EQ(pixel >> 24, 0x80U);
        EXPECT_NEAR(pixel & 255, 188 * 128 / 255, 2);
    }
}

TEST(ShrunkRows, ManageInks) {
    const auto transform = ColorTransform::create(blackOnlyCmykProfile(), ColorTransform::Space::Cmyk);
    ASSERT_TRUE(transform);
    for (const int box : {1, 2})
        for (const ARGB pixel : shrunk(solid(RowLayout::Cmyk32, 0xFF00FF80), box, box, transform.get()))
            EXPECT_NEAR(pixel & 255, 119, 2);
}

TEST(ShrunkRows, LeaveIndexedPicturesToTheirPalette) {
    const auto transform = linearLight();
    FakePicture picture = solid(RowLayout::Index8, 1);
    picture.palette = {0xFF000000U, 0xFF808080U};
    EXPECT_EQ(shrunk(picture, 2, 2, transform.get()), std::vector<ARGB>(4, 0xFF808080U));
}

TEST(FullSizeRows, KeepEveryLayoutInItsOwnFormat) {
    for (const FakePicture& picture : everyLayout(13, 5))
        EXPECT_EQ(fullSize(picture, pixelFormatOf(picture.layout)), colorsOf(picture))
            << static_cast<int>(picture.layout);
}

TEST(FullSizeRows, ConvertEveryLayout) {
    for (const FakePicture& picture : everyLayout(13, 5))
        EXPECT_EQ(fullSize(picture, PixelFormat32bppARGB), colorsOf(picture))
            << static_cast<int>(picture.layout);
}

TEST(FullSizeRows, ManageColoursAndLeaveAlpha) {
    const auto transform = linearLight();
    ASSERT_TRUE(transform);
    for (const RowLayout layout : {RowLayout::Bgr24, RowLayout::Bgrx32, RowLayout::Bgra32}) {
        const FakePicture picture = solid(layout, 0x40808080);
        for (const ARGB pixel : fullSize(picture, pixelFormatOf(layout), transform.get())) {
            EXPECT_NEAR(pixel & 255, 188, 1) << static_cast<int>(layout);
            EXPECT_EQ(pixel >> 24, layout == RowLayout::Bgra32 ? 0x40U : 0xFFU);
        }
    }
}

TEST(FullSizeRows, TurnManagedInksIntoColours) {
    const auto transform = ColorTransform::create(blackOnlyCmykProfile(), ColorTransform::Space::Cmyk);
    ASSERT_TRUE(transform);
    for (const ARGB pixel :
         fullSize(solid(RowLayout::Cmyk32, 0xFF00FF80), PixelFormat24bppRGB, transform.get()))
        EXPECT_NEAR(pixel & 255, 119, 2);
}
