#include "gdiplus/pixels/RotateFlip.h"

#include "gdiplus/pixels/ConvertPixels.h"

#include <gtest/gtest.h>

#include <string>

using namespace GdiplusBackend;
using Gdiplus::RotateFlipType;

namespace {

/// A 3 x 2 picture of six different pixels, named a to f in reading order.
PixelBuffer letters(Gdiplus::PixelFormat format) {
    std::vector<Gdiplus::ARGB> palette;
    for (unsigned i = 0; i < 16; ++i)
        palette.push_back(0xFF000000 | i * 0x101010);
    auto picture = PixelBuffer::create(3, 2, format,
                                       IsIndexedPixelFormat(format) ? palette : std::vector<Gdiplus::ARGB>());
    for (unsigned i = 0; i < 6; ++i) {
        const int x = static_cast<int>(i % 3);
        const int y = static_cast<int>(i / 3);
        if (IsIndexedPixelFormat(format)) {
            writeIndex(picture->view(), x, y, i + 1);
        } else {
            const Gdiplus::ARGB color = 0xFF000000 | (i + 1) * 0x101010;
            writeArgb(picture->view(), x, y, 1, &color);
        }
    }
    return std::move(*picture);
}

std::string spell(const PixelView& picture) {
    std::string text;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            Gdiplus::ARGB color = 0;
            readArgb(picture, x, y, 1, &color);
            text += static_cast<char>('a' + (color & 255) / 16 - 1);
        }
        text += '/';
    }
    return text;
}

const char* const expected[] = {"abc/def/", "da/eb/fc/", "fed/cba/", "cf/be/ad/",
                                "cba/fed/", "ad/be/cf/", "def/abc/", "fc/eb/da/"};

} // namespace

TEST(RotateFlip, TurnsClockwiseFirstAndMirrorsThenInEveryFormat) {
    for (const Gdiplus::PixelFormat format :
         {PixelFormat4bppIndexed, PixelFormat8bppIndexed, PixelFormat24bppRGB, PixelFormat32bppRGB,
          PixelFormat32bppARGB, PixelFormat32bppPARGB})
        for (int type = 0; type < 8; ++type) {
            const PixelBuffer source = letters(format);
            const auto turned = rotateFlip(source.view(), static_cast<RotateFlipType>(type));
            ASSERT_TRUE(turned);
            EXPECT_EQ(spell(turned->view()), expected[type])
                << "type " << type << " format " << std::hex << format;
            EXPECT_EQ(turned->view().format, format);
        }
}

TEST(RotateFlip, TurnsPicturesOfOneBitAPixel) {
    auto picture = PixelBuffer::create(11, 3, PixelFormat1bppIndexed, {0xFF000000, 0xFFFFFFFF});
    ASSERT_TRUE(picture);
    writeIndex(picture->view(), 10, 0, 1);
    const auto turned = rotateFlip(picture->view(), Gdiplus::Rotate90FlipNone);
    ASSERT_TRUE(turned);
    ASSERT_EQ(turned->view().width, 3);
    ASSERT_EQ(turned->view().height, 11);
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(readIndex(turned->view(), x, y), x == 2 && y == 10 ? 1U : 0U);
}

TEST(RotateFlip, ReadsBottomUpMemory) {
    const PixelBuffer source = letters(PixelFormat32bppARGB);
    PixelView flipped = source.view();
    flipped.top = source.view().row(1);
    flipped.stride = -flipped.stride;
    const auto turned = rotateFlip(flipped, Gdiplus::Rotate90FlipNone);
    ASSERT_TRUE(turned);
    EXPECT_EQ(spell(turned->view()), "ad/be/cf/");
}

TEST(RotateFlip, TurnsPicturesLargerThanATile) {
    auto picture = PixelBuffer::create(70, 45, PixelFormat32bppARGB);
    ASSERT_TRUE(picture);
    for (int y = 0; y < 45; ++y)
        for (int x = 0; x < 70; ++x) {
            const Gdiplus::ARGB color =
                0xFF000000 | static_cast<Gdiplus::ARGB>(y) << 8 | static_cast<Gdiplus::ARGB>(x);
            writeArgb(picture->view(), x, y, 1, &color);
        }
    const auto turned = rotateFlip(picture->view(), Gdiplus::Rotate270FlipNone);
    ASSERT_TRUE(turned);
    for (int y = 0; y < 70; ++y)
        for (int x = 0; x < 45; ++x) {
            Gdiplus::ARGB color = 0;
            readArgb(turned->view(), x, y, 1, &color);
            ASSERT_EQ(color,
                      0xFF000000 | static_cast<Gdiplus::ARGB>(x) << 8 | static_cast<Gdiplus::ARGB>(69 - y));
        }
}

TEST(RotateFlip, CombiningTwoTurnsEqualsDoingOneAfterTheOther) {
    for (int first = 0; first < 8; ++first)
        for (int second = 0; second < 8; ++second) {
            const auto once =
                rotateFlip(letters(PixelFormat24bppRGB).view(), static_cast<RotateFlipType>(first));
            const auto twice = rotateFlip(once->view(), static_cast<RotateFlipType>(second));
            const RotateFlipType both =
                combine(static_cast<RotateFlipType>(first), static_cast<RotateFlipType>(second));
            EXPECT_EQ(spell(twice->view()), expected[both]) << first << " then " << second;
        }
}
