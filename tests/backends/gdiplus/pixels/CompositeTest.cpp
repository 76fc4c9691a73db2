#include "gdiplus/pixels/Composite.h"

#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/PixelBuffer.h"
#include "gdiplus/pixels/Premultiply.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

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

/// The same, as the formula says it.
ARGB blendedPlainly(ARGB source, ARGB destination, Gdiplus::PixelFormat targetFormat) {
    if (source >> 24 == 0)
        return destination;
    const ARGB over = premultiplyArgb(source);
    const ARGB under = targetFormat == PixelFormat32bppPARGB ? destination : premultiplyArgb(destination);
    ARGB sum = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const unsigned rest = ((under >> shift & 255) * (255 - (over >> 24)) + 127) / 255;
        sum |= std::min(255U, (over >> shift & 255) + rest) << shift;
    }
    return targetFormat == PixelFormat32bppPARGB ? sum : unpremultiplyArgb(sum);
}

/// Long enough for several chunks: any alpha, then opaque, then nothing, then any alpha again.
std::vector<ARGB> manyColors() {
    constexpr std::size_t stretch = 700;
    std::mt19937 random(1);
    std::vector<ARGB> colors(4 * stretch);
    std::ranges::generate(colors, random);
    for (std::size_t index = stretch; index < 2 * stretch; ++index)
        colors[index] |= 0xFF000000;
    for (std::size_t index = 2 * stretch; index < 3 * stretch; ++index)
        colors[index] &= 0x00FFFFFF;
    return colors;
}

PixelBuffer rowOf(const std::vector<ARGB>& bytes, Gdiplus::PixelFormat format) {
    auto row = PixelBuffer::create(static_cast<int>(bytes.size()), 1, format);
    std::memcpy(row->view().row(0), bytes.data(), bytes.size() * sizeof(ARGB));
    return std::move(*row);
}

ARGB pixelBytes(const PixelBuffer& row, std::size_t x) {
    ARGB bytes = 0;
    std::memcpy(&bytes, row.view().row(0) + x * sizeof bytes, sizeof bytes);
    return bytes;
}

} // namespace

TEST(SourceOver, EqualsTheFormulaForAnyRunOfColours) {
    const std::vector<ARGB> sources = manyColors();
    std::vector<ARGB> destinations(sources.size());
    std::mt19937 random(2);
    std::ranges::generate(destinations, random);
    for (const auto format : {PixelFormat32bppARGB, PixelFormat32bppPARGB}) {
        const PixelBuffer target = rowOf(destinations, format);
        sourceOver(rowOf(sources, PixelFormat32bppARGB).view(), target.view(), 0, 0);
        for (std::size_t x = 0; x < sources.size(); ++x)
            ASSERT_EQ(pixelBytes(target, x), blendedPlainly(sources[x], destinations[x], format)) << x;
    }
}

TEST(SourceOver, AddsColoursThatAreMoreThanTheirAlphaUpToWhite) {
    const PixelBuffer target = rowOf({0xFF808080, 0xFF102030}, PixelFormat32bppPARGB);
    sourceOver(rowOf({0x00FFFFFF, 0x00010203}, PixelFormat32bppPARGB).view(), target.view(), 0, 0);
    EXPECT_EQ(pixelBytes(target, 0), 0xFFFFFFFFU);
    EXPECT_EQ(pixelBytes(target, 1), 0xFF112233U);
}

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
