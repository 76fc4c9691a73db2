#include "platform/KestoRenderLib.h"
#include "support/GdiplusUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

namespace {

using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;
using TestSupport::GdiplusUser;
using TestSupport::pixelOf;

constexpr auto format = KestoRenderLib::PixelFormat::Premultiplied32;

TEST(MetaBitmap, HasTheSizeAndStrideOfItsMemory) {
    std::array<unsigned char, 40> pixels{};
    const MetaBitmap bitmap({3, 2}, 20, format, pixels.data(), false);
    EXPECT_EQ(bitmap.GetWidth(), 3);
    EXPECT_EQ(bitmap.GetHeight(), 2);
    EXPECT_EQ(bitmap.GetStride(), 20);
    EXPECT_EQ(bitmap.GetPixels(), pixels.data());
}

TEST(MetaBitmap, LeavesMemoryAloneThatItDoesNotOwn) {
    std::array<unsigned char, 4> pixels{1, 2, 3, 4};
    { const MetaBitmap bitmap({1, 1}, 4, format, pixels.data(), false); }
    EXPECT_EQ(pixels, (std::array<unsigned char, 4>{1, 2, 3, 4}));
}

TEST(MetaBitmap, GivesBackMemoryThatItOwns) {
    // The leak checker tells when it does not.
    const MetaBitmap bitmap({2, 2}, 8, format, new unsigned char[16], true);
    EXPECT_EQ(bitmap.GetWidth(), 2);
}

TEST(MetaBitmap, IsCreatedTransparent) {
    const auto bitmap = MetaBitmap::Create({5, 4}, format);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->GetWidth(), 5);
    EXPECT_EQ(bitmap->GetHeight(), 4);
    EXPECT_EQ(bitmap->GetStride(), 20);
    EXPECT_TRUE(
        std::all_of(bitmap->GetPixels(), bitmap->GetPixels() + 80, [](int byte) { return byte == 0; }));
}

TEST(MetaBitmap, IsNotCreatedWithoutASize) {
    EXPECT_FALSE(MetaBitmap::Create({0, 4}, format));
    EXPECT_FALSE(MetaBitmap::Create({4, -1}, format));
}

TEST(MetaBitmap, IsNotCreatedWithARowThatHasNoStride) {
    EXPECT_FALSE(MetaBitmap::Create({std::numeric_limits<int>::max() / 4 + 1, 1}, format));
}

TEST(MetaBitmap, TellsItsSize) {
    const MetaBitmap bitmap({3, 2}, 20, format, nullptr, false);
    EXPECT_EQ(bitmap.Size(), (Size{3, 2}));
}

TEST(MetaBitmap, IsCopiedIntoMemoryOfItsOwn) {
    // Two rows of one pixel, each followed by four bytes that are no picture.
    std::array<unsigned char, 16> pixels{1, 2, 3, 4, 99, 99, 99, 99, 5, 6, 7, 8, 99, 99, 99, 99};
    const auto copy = MetaBitmap({1, 2}, 8, format, pixels.data(), false).CreateCopy();
    ASSERT_TRUE(copy);
    pixels.fill(0);
    EXPECT_EQ(copy->Size(), (Size{1, 2}));
    EXPECT_EQ(copy->GetStride(), 4);
    EXPECT_THAT(std::vector<int>(copy->GetPixels(), copy->GetPixels() + 8),
                ::testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(MetaBitmap, IsCopiedInPictureOrderFromMemoryThatLiesBottomUp) {
    std::array<unsigned char, 8> pixels{5, 6, 7, 8, 1, 2, 3, 4};
    const auto copy = MetaBitmap({1, 2}, -4, format, pixels.data() + 4, false).CreateCopy();
    ASSERT_TRUE(copy);
    EXPECT_THAT(std::vector<int>(copy->GetPixels(), copy->GetPixels() + 8),
                ::testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(MetaBitmap, WithoutASizeHasNoCopy) {
    EXPECT_FALSE(MetaBitmap({0, 0}, 0, format, nullptr, false).CreateCopy());
}

TEST(MetaBitmap, IsTurnedUpsideDownInPlace) {
    std::array<unsigned char, 24> pixels{1,  1,  1,  1,  99, 99, 99, 99, 2,  2,  2,  2,
                                         99, 99, 99, 99, 3,  3,  3,  3,  98, 98, 98, 98};
    MetaBitmap bitmap({1, 3}, 8, format, pixels.data(), false);
    bitmap.FlipY();
    EXPECT_EQ(pixels, (std::array<unsigned char, 24>{3,  3,  3,  3,  99, 99, 99, 99, 2,  2,  2,  2,
                                                     99, 99, 99, 99, 1,  1,  1,  1,  98, 98, 98, 98}));
}

TEST(MetaBitmap, WithoutASizeStaysAsItIsWhenTurned) {
    MetaBitmap bitmap({0, 0}, 0, format, nullptr, false);
    bitmap.FlipY();
    EXPECT_EQ(bitmap.Size(), (Size{0, 0}));
}

TEST(MetaBitmap, ShowsItsPixelsInTheGdiplusBitmap) {
    const GdiplusUser gdiplus;
    std::array<unsigned char, 24> pixels{};
    // The first pixel of the second row, half opaque red: premultiplied B, G, R, A.
    pixels[12 + 2] = 128;
    pixels[12 + 3] = 128;
    const MetaBitmap bitmap({2, 2}, 12, format, pixels.data(), false);
    const auto view = bitmap.AsGdiplusBitmap();
    ASSERT_EQ(view->GetLastStatus(), Gdiplus::Ok);
    EXPECT_EQ(view->GetWidth(), 2U);
    EXPECT_EQ(view->GetHeight(), 2U);
    EXPECT_EQ(view->GetPixelFormat(), PixelFormat32bppPARGB);
    EXPECT_EQ(pixelOf(*view, 0, 1), 0x80FF0000U);
    EXPECT_EQ(pixelOf(*view, 0, 0), 0U);
}

TEST(MetaBitmap, SharesItsMemoryWithTheGdiplusBitmap) {
    const GdiplusUser gdiplus;
    const auto bitmap = MetaBitmap::Create({2, 2}, format);
    const auto view = bitmap->AsGdiplusBitmap();
    ASSERT_EQ(view->SetPixel(1, 1, Gdiplus::Color(255, 10, 20, 30)), Gdiplus::Ok);
    EXPECT_EQ(bitmap->GetPixels()[12], 30);
    EXPECT_EQ(bitmap->GetPixels()[13], 20);
    EXPECT_EQ(bitmap->GetPixels()[14], 10);
    EXPECT_EQ(bitmap->GetPixels()[15], 255);
}

TEST(MetaBitmap, WithoutASizeHasAGdiplusBitmapThatTellsSo) {
    const GdiplusUser gdiplus;
    const MetaBitmap bitmap({0, 0}, 0, format, nullptr, false);
    EXPECT_EQ(bitmap.AsGdiplusBitmap()->GetLastStatus(), Gdiplus::InvalidParameter);
}

} // namespace
