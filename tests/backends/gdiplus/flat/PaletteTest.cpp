#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

using namespace Gdiplus;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

namespace {

/// A palette with its entries behind it.
class PaletteBuffer {
public:
    explicit PaletteBuffer(const std::vector<ARGB>& entries)
        : words(2 + entries.size()) {
        words[1] = static_cast<UINT>(entries.size());
        std::copy(entries.begin(), entries.end(), words.begin() + 2);
    }

    ColorPalette* get() { return reinterpret_cast<ColorPalette*>(words.data()); }
    INT size() const { return static_cast<INT>(words.size() * sizeof(UINT)); }
    ARGB entry(std::size_t index) const { return words[2 + index]; }
    UINT count() const { return words[1]; }

private:
    std::vector<UINT> words;
};

} // namespace

TEST(Palette, OfNewBitmapsIsTheUsualOne) {
    const GdiplusUser gdiplus;
    Bitmap bits(1, 1, PixelFormat1bppIndexed);
    PaletteBuffer two(std::vector<ARGB>(2));
    ASSERT_EQ(bits.GetPaletteSize(), two.size());
    ASSERT_EQ(bits.GetPalette(two.get(), two.size()), Ok);
    EXPECT_EQ(two.count(), 2U);
    EXPECT_EQ(two.entry(0), 0xFF000000U);
    EXPECT_EQ(two.entry(1), 0xFFFFFFFFU);

    Bitmap bytes(1, 1, PixelFormat8bppIndexed);
    PaletteBuffer all(std::vector<ARGB>(256));
    ASSERT_EQ(bytes.GetPaletteSize(), all.size());
    ASSERT_EQ(bytes.GetPalette(all.get(), all.size()), Ok);
    EXPECT_EQ(all.entry(9), 0xFFFF0000U);
    EXPECT_EQ(all.entry(16), 0U);
    EXPECT_EQ(all.entry(40), 0xFF000000U);
    EXPECT_EQ(all.entry(255), 0xFFFFFFFFU);
}

TEST(Palette, DecidesWhatIndicesLookLike) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(2, 1, PixelFormat8bppIndexed);
    BitmapData locked;
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeWrite, PixelFormat8bppIndexed, &locked), Ok);
    static_cast<BYTE*>(locked.Scan0)[1] = 1;
    bitmap.UnlockBits(&locked);
    PaletteBuffer palette({0xFF010203, 0x40FF0000});
    ASSERT_EQ(bitmap.SetPalette(palette.get()), Ok);
    EXPECT_EQ(pixelOf(bitmap, 0, 0), 0xFF010203U);
    EXPECT_EQ(pixelOf(bitmap, 1, 0), 0x40FF0000U);
}

TEST(Palette, TakesNoMoreEntriesThanTheFormatCanTellApart) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(1, 1, PixelFormat1bppIndexed);
    PaletteBuffer five(std::vector<ARGB>(5, 0xFF00FF00));
    ASSERT_EQ(bitmap.SetPalette(five.get()), Ok);
    EXPECT_EQ(bitmap.GetPaletteSize(), PaletteBuffer(std::vector<ARGB>(2)).size());
}

TEST(Palette, IsRefusedForFormatsWithoutOneAndForBuffersTooSmall) {
    const GdiplusUser gdiplus;
    PaletteBuffer palette({0xFF010203});
    Bitmap rgb(1, 1, PixelFormat24bppRGB);
    EXPECT_EQ(rgb.SetPalette(palette.get()), InvalidParameter);
    Bitmap bits(1, 1, PixelFormat1bppIndexed);
    EXPECT_EQ(bits.GetPalette(palette.get(), palette.size()), InvalidParameter);
}

TEST(Palette, SurvivesATurn) {
    const GdiplusUser gdiplus;
    Bitmap bitmap(2, 1, PixelFormat1bppIndexed);
    PaletteBuffer palette({0xFF112233, 0xFF445566});
    bitmap.SetPalette(palette.get());
    ASSERT_EQ(bitmap.RotateFlip(Rotate90FlipNone), Ok);
    EXPECT_EQ(bitmap.GetPixelFormat(), PixelFormat1bppIndexed);
    EXPECT_EQ(pixelOf(bitmap, 0, 1), 0xFF112233U);
}
