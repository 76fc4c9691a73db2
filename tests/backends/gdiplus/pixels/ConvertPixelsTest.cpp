#include "gdiplus/pixels/ConvertPixels.h"

#include "gdiplus/pixels/PixelBuffer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

using namespace GdiplusBackend;
using Gdiplus::ARGB;

namespace {

/// The bytes of one pixel of `from`, converted to `to`.
template <std::size_t N>
std::array<std::uint8_t, 4> converted(std::array<std::uint8_t, N> bytes, Gdiplus::PixelFormat from,
                                      Gdiplus::PixelFormat to, std::span<const ARGB> palette = {}) {
    std::array<std::uint8_t, 4> out = {};
    const ConstPixelView source = {reinterpret_cast<const std::byte*>(bytes.data()), 4, 1, 1, from, palette};
    convertPixels(source, 0, 0, {reinterpret_cast<std::byte*>(out.data()), 4, 1, 1, to});
    return out;
}

using Bytes = std::array<std::uint8_t, 4>;

} // namespace

TEST(ConvertPixels, DropsAlphaWithoutBlendingFor24Bits) {
    EXPECT_EQ(converted(Bytes{1, 2, 3, 128}, PixelFormat32bppARGB, PixelFormat24bppRGB), (Bytes{1, 2, 3, 0}));
    EXPECT_EQ(converted(Bytes{255, 255, 255, 0}, PixelFormat32bppARGB, PixelFormat24bppRGB),
              (Bytes{255, 255, 255, 0}));
}

TEST(ConvertPixels, KeepsEveryByteFromArgbToRgb32) {
    EXPECT_EQ(converted(Bytes{1, 2, 3, 128}, PixelFormat32bppARGB, PixelFormat32bppRGB),
              (Bytes{1, 2, 3, 128}));
}

TEST(ConvertPixels, FormatsWithoutAlphaBecomeOpaque) {
    EXPECT_EQ(converted(Bytes{1, 2, 3, 9}, PixelFormat24bppRGB, PixelFormat32bppARGB), (Bytes{1, 2, 3, 255}));
    EXPECT_EQ(converted(Bytes{1, 2, 3, 9}, PixelFormat32bppRGB, PixelFormat32bppPARGB),
              (Bytes{1, 2, 3, 255}));
}

TEST(ConvertPixels, PremultipliesAndBackWithThePlatformsRounding) {
    EXPECT_EQ(converted(Bytes{0x10, 0x20, 0x40, 0x80}, PixelFormat32bppARGB, PixelFormat32bppPARGB),
              (Bytes{0x08, 0x10, 0x20, 0x80}));
    EXPECT_EQ(converted(Bytes{0x08, 0x10, 0x20, 0x80}, PixelFormat32bppPARGB, PixelFormat32bppARGB),
              (Bytes{0x0F, 0x1F, 0x3F, 0x80}));
    EXPECT_EQ(converted(Bytes{0x08, 0x10, 0x20, 0x80}, PixelFormat32bppPARGB, PixelFormat24bppRGB),
              (Bytes{0x0F, 0x1F, 0x3F, 0}));
}

TEST(ConvertPixels, TakesPaletteColoursWithTheirAlpha) {
    const std::array<ARGB, 2> palette = {0xFF102030, 0x40FF8000};
    EXPECT_EQ(converted(Bytes{1}, PixelFormat8bppIndexed, PixelFormat32bppARGB, palette),
              (Bytes{0, 0x80, 0xFF, 0x40}));
    EXPECT_EQ(converted(Bytes{0x40}, PixelFormat1bppIndexed, PixelFormat24bppRGB, palette),
              (Bytes{0x30, 0x20, 0x10, 0}));
    EXPECT_EQ(converted(Bytes{0x10}, PixelFormat4bppIndexed, PixelFormat32bppARGB, palette),
              (Bytes{0, 0x80, 0xFF, 0x40}));
}

TEST(ConvertPixels, AnIndexBeyondThePaletteIsOpaqueBlack) {
    const std::array<ARGB, 1> palette = {0xFFFFFFFF};
    EXPECT_EQ(converted(Bytes{7}, PixelFormat8bppIndexed, PixelFormat32bppARGB, palette),
              (Bytes{0, 0, 0, 255}));
}

TEST(ConvertPixels, SixteenBitsSpreadOverTheWholeRange) {
    EXPECT_EQ(converted(Bytes{0xFF, 0x7F}, PixelFormat16bppRGB555, PixelFormat32bppARGB),
              (Bytes{255, 255, 255, 255}));
    EXPECT_EQ(converted(Bytes{0xE0, 0x07}, PixelFormat16bppRGB565, PixelFormat32bppARGB),
              (Bytes{0, 255, 0, 255}));
    EXPECT_EQ(converted(Bytes{0, 0, 255, 255}, PixelFormat32bppARGB, PixelFormat16bppRGB555),
              (Bytes{0x00, 0x7C, 0, 0}));
}

TEST(ConvertPixels, InksWithoutProfileMultiply) {
    EXPECT_EQ(converted(Bytes{255, 0, 0, 0}, PixelFormat32bppCMYK, PixelFormat32bppARGB),
              (Bytes{255, 255, 0, 255}));
    EXPECT_EQ(converted(Bytes{0, 0, 0, 255}, PixelFormat32bppCMYK, PixelFormat32bppARGB),
              (Bytes{0, 0, 0, 255}));
}

TEST(ConvertPixels, NothingBecomesInksOrAnotherIndexedFormat) {
    EXPECT_FALSE(canConvert(PixelFormat24bppRGB, PixelFormat32bppCMYK));
    EXPECT_FALSE(canConvert(PixelFormat8bppIndexed, PixelFormat4bppIndexed));
    EXPECT_FALSE(canConvert(PixelFormat24bppRGB, PixelFormat8bppIndexed));
    EXPECT_TRUE(canConvert(PixelFormat8bppIndexed, PixelFormat8bppIndexed));
}

TEST(ConvertPixels, CopiesIndicesThatDoNotStartAtAByte) {
    auto source = PixelBuffer::create(20, 1, PixelFormat1bppIndexed, {0, 1});
    auto target = PixelBuffer::create(10, 1, PixelFormat1bppIndexed, {0, 1});
    for (const int x : {3, 4, 7, 12})
        writeIndex(source->view(), x, 0, 1);
    convertPixels(source->view(), 3, 0, target->view());
    for (int x = 0; x < 10; ++x)
        EXPECT_EQ(readIndex(target->view(), x, 0), x == 0 || x == 1 || x == 4 || x == 9 ? 1U : 0U) << x;
}

TEST(ConvertPixels, RowsWiderThanTheWorkingChunkStayInOrder) {
    auto source = PixelBuffer::create(1000, 1, PixelFormat24bppRGB);
    auto target = PixelBuffer::create(1000, 1, PixelFormat32bppARGB);
    for (int x = 0; x < 1000; ++x) {
        const ARGB color = 0xFF000000 | static_cast<ARGB>(x);
        writeArgb(source->view(), x, 0, 1, &color);
    }
    convertPixels(source->view(), 0, 0, target->view());
    for (int x = 0; x < 1000; ++x) {
        ARGB color = 0;
        readArgb(target->view(), x, 0, 1, &color);
        ASSERT_EQ(color, 0xFF000000 | static_cast<ARGB>(x));
    }
}

TEST(ConvertPixels, WidensRowsOfAnyLengthToEvery32BitFormat) {
    for (const Gdiplus::PixelFormat format :
         {PixelFormat32bppRGB, PixelFormat32bppARGB, PixelFormat32bppPARGB})
        for (int width = 1; width < 6; ++width) {
            auto source = PixelBuffer::create(width + 1, 1, PixelFormat24bppRGB);
            for (int x = 0; x <= width; ++x) {
                const ARGB color = 0xFF000000 | static_cast<ARGB>(x) * 0x112233;
                writeArgb(source->view(), x, 0, 1, &color);
            }
            auto target = PixelBuffer::create(width, 1, format);
            convertPixels(source->view(), 1, 0, target->view());
            for (int x = 0; x < width; ++x) {
                ARGB color = 0;
                std::memcpy(&color, target->view().row(0) + x * 4, 4);
                EXPECT_EQ(color, 0xFF000000 | static_cast<ARGB>(x + 1) * 0x112233) << x << " of " << width;
            }
        }
}
