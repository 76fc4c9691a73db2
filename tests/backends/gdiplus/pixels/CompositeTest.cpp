#include "gdiplus/pixels/Composite.h"

#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/PixelBuffer.h"

#include <gtest/gtest.h>

using namespace GdiplusBackend;
using Gdiplus::ARGB;

namespace {

PixelBuffer onePixel(ARGB color, Gdiplus::PixelFormat format) {
    auto picture = PixelBuffer::create(1, 1, format);
    writeArgb(picture->view(), 0, 0, 1, &color);
    return std::move(*picture);
}

ARGB drawn(ARGB source, ARGB destination, Gdiplus::PixelFormat targetFormat) {
    const PixelBuffer target = onePixel(destination, targetFormat);
    sourceOver(onePixel(source, PixelFormat32bppARGB).view(), target.view(), 0, 0);
    ARGB result = 0;
    readArgb(target.view(), 0, 0, 1, &result);
    return result;
}

} // namespace

TEST(SourceOver, EqualsTheRecordedPlatformOnHalfTransparentColours) {
    EXPECT_EQ(drawn(0xA0FFFFFF, 0xA0000000, PixelFormat32bppARGB), 0xDCB9B9B9U);
}

TEST(SourceOver, HalfWhiteOnBlackIsMidGray) {
    EXPECT_EQ(drawn(0x80FFFFFF, 0xFF000000, PixelFormat32bppRGB), 0xFF808080U);
    EXPECT_EQ(drawn(0x80FFFFFF, 0xFF000000, PixelFormat24bppRGB), 0xFF808080U);
}

TEST(SourceOver, OpaqueSourcesReplaceExactly) {
    for (const auto format :
         {PixelFormat24bppRGB, PixelFormat32bppRGB, PixelFormat32bppARGB, PixelFormat32bppPARGB})
        EXPECT_EQ(drawn(0xFF123456, 0xFF654321, format), 0xFF123456U);
}

TEST(SourceOver, TransparentSourcesLeaveTheTargetExactly) {
    EXPECT_EQ(drawn(0x00FFFFFF, 0x13020406, PixelFormat32bppARGB), 0x13020406U);
    EXPECT_EQ(drawn(0x00FFFFFF, 0xFF020406, PixelFormat24bppRGB), 0xFF020406U);
}

TEST(SourceOver, TheFourthByteOfAnRgbSourceDoesNotCount) {
    const PixelBuffer source = onePixel(0x00AABBCC, PixelFormat32bppRGB);
    const PixelBuffer target = onePixel(0xFF000000, PixelFormat32bppARGB);
    sourceOver(source.view(), target.view(), 0, 0);
    ARGB result = 0;
    readArgb(target.view(), 0, 0, 1, &result);
    EXPECT_EQ(result, 0xFFAABBCCU);
}

TEST(SourceOver, DrawsAtItsPlaceAndNowhereElse) {
    auto target = PixelBuffer::create(5, 4, PixelFormat32bppARGB);
    auto source = PixelBuffer::create(2, 2, PixelFormat24bppRGB);
    const ARGB white[2] = {0xFFFFFFFF, 0xFFFFFFFF};
    writeArgb(source->view(), 0, 0, 2, white);
    writeArgb(source->view(), 0, 1, 2, white);
    sourceOver(source->view(), target->view(), 3, 1);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x) {
            ARGB color = 0;
            readArgb(target->view(), x, y, 1, &color);
            EXPECT_EQ(color, x >= 3 && (y == 1 || y == 2) ? 0xFFFFFFFFU : 0U) << x << ',' << y;
        }
}

TEST(FillOver, BlendsOneColourOverARectangle) {
    auto target = PixelBuffer::create(3, 1, PixelFormat32bppRGB);
    fillOver(0x80FFFFFF, target->view(), 1, 0, 1, 1);
    ARGB row[3] = {};
    readArgb(target->view(), 0, 0, 3, row);
    EXPECT_EQ(row[0], 0xFF000000U);
    EXPECT_EQ(row[1], 0xFF808080U);
    EXPECT_EQ(row[2], 0xFF000000U);
}
