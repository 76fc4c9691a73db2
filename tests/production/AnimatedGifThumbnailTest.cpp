#include "production/GdiplusBitmapThumbnailingHelper.h"

#include "support/GdiplusUser.h"
#include "support/GifFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <memory>

namespace KestoThumbnailer {

namespace {

using TestSupport::GifColours;
using TestSupport::GifFile;
using TestSupport::GifFrame;
using TestSupport::pixelOf;
using Picture = std::unique_ptr<Gdiplus::Bitmap>;

constexpr Gdiplus::ARGB black = 0xFF000000;
constexpr Gdiplus::ARGB red = 0xFFFF0000;
constexpr Gdiplus::ARGB green = 0xFF00FF00;
constexpr Gdiplus::ARGB blue = 0xFF0000FF;

const GifColours colours = {black & 0xFFFFFF, red & 0xFFFFFF, green & 0xFFFFFF, blue & 0xFFFFFF};

GifFrame fullOf(int index, int width, int height) {
    return {.width = width, .height = height, .index = [index](int, int) { return index; }};
}

/// Red, then green, then blue, for 0.1 s each.
GifFile threeFrames(int width, int height) {
    return GifFile(width, height, colours)
        .frame(fullOf(1, width, height))
        .frame(fullOf(2, width, height))
        .frame(fullOf(3, width, height));
}

class AnimatedGifThumbnail : public ::testing::Test {
protected:
    Picture thumbnailOf(const GifFile& file, double time, int width = 0, int height = 0) {
        return Picture(GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(
            TestSupport::wideOf(folder.write("a.gif", file.bytes())), time, width, height));
    }
    void expectSize(const GifFile& file, int boundsWidth, int boundsHeight, UINT width, UINT height) {
        const Picture shown = thumbnailOf(file, 0.05, boundsWidth, boundsHeight);
        ASSERT_TRUE(shown);
        EXPECT_EQ(shown->GetWidth(), width);
        EXPECT_EQ(shown->GetHeight(), height);
    }

    TestSupport::GdiplusUser gdiplus;
    TestSupport::TempFolder folder;
};

} // namespace

TEST_F(AnimatedGifThumbnail, AtTheStartItIsTheSecondFrame) {
    EXPECT_EQ(pixelOf(*thumbnailOf(threeFrames(4, 3), 0.0), 1, 1), green);
    EXPECT_EQ(pixelOf(*thumbnailOf(threeFrames(4, 3), -0.0), 1, 1), green);
}

TEST_F(AnimatedGifThumbnail, RightAfterTheStartItIsTheFirstFrame) {
    EXPECT_EQ(pixelOf(*thumbnailOf(threeFrames(4, 3), 0.001), 1, 1), red);
}

TEST_F(AnimatedGifThumbnail, LaterItIsTheFrameOfThatTime) {
    EXPECT_EQ(pixelOf(*thumbnailOf(threeFrames(4, 3), 0.15), 1, 1), green);
    EXPECT_EQ(pixelOf(*thumbnailOf(threeFrames(4, 3), 0.2), 1, 1), blue);
    EXPECT_EQ(pixelOf(*thumbnailOf(threeFrames(4, 3), 99), 1, 1), blue);
}

TEST_F(AnimatedGifThumbnail, AFileOfOneFrameShowsItAtTheStart) {
    EXPECT_EQ(pixelOf(*thumbnailOf(GifFile(4, 3, colours).frame(fullOf(3, 4, 3)), 0.0), 1, 1), blue);
}

TEST_F(AnimatedGifThumbnail, IsNeverEnlarged) {
    expectSize(threeFrames(320, 200), 640, 400, 320, 200);
}

TEST_F(AnimatedGifThumbnail, BoundsOfZeroKeepTheSize) {
    expectSize(threeFrames(320, 200), 0, 0, 320, 200);
}

TEST_F(AnimatedGifThumbnail, IsFittedIntoItsBounds) {
    expectSize(threeFrames(320, 200), 160, 160, 160, 100);
    expectSize(threeFrames(320, 200), 0, 50, 80, 50);
}

TEST_F(AnimatedGifThumbnail, IsArgb) {
    EXPECT_EQ(thumbnailOf(threeFrames(4, 3), 0.5)->GetPixelFormat(), PixelFormat32bppARGB);
}

TEST_F(AnimatedGifThumbnail, TransparentPartsShowTheBackgroundColour) {
    GifFrame seeThrough = {.width = 4, .height = 1, .index = [](int x, int) { return x % 2; }};
    seeThrough.transparentIndex = 0;
    const Picture shown = thumbnailOf(GifFile(4, 2, colours, 3).frame(seeThrough), 0.05);
    ASSERT_TRUE(shown);
    EXPECT_EQ(pixelOf(*shown, 0, 0), blue);
    EXPECT_EQ(pixelOf(*shown, 1, 0), red);
    EXPECT_EQ(pixelOf(*shown, 1, 1), blue);
}

TEST_F(AnimatedGifThumbnail, WithoutABackgroundColourTransparentPartsStayTransparent) {
    GifFrame local = {.left = 1};
    local.palette = colours;
    const Picture shown = thumbnailOf(GifFile(2, 1, {}).frame(local), 0.05);
    ASSERT_TRUE(shown);
    EXPECT_EQ(pixelOf(*shown, 0, 0), 0U);
    EXPECT_EQ(pixelOf(*shown, 1, 0), black);
}

TEST_F(AnimatedGifThumbnail, WhatIsNoGifIsNull) {
    const auto thumbnail = [](const std::filesystem::path& path) {
        return GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(TestSupport::wideOf(path), 0.5, 0,
                                                                           0);
    };
    EXPECT_EQ(thumbnail(folder / "missing.gif"), nullptr);
    EXPECT_EQ(thumbnail(folder.write("text.gif", "GIF89a and no more")), nullptr);
    EXPECT_EQ(thumbnail(folder.write("empty.gif", "")), nullptr);
    EXPECT_EQ(GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(L"", 0, 0, 0), nullptr);
}

TEST_F(AnimatedGifThumbnail, WhateverItsNameAGifIsShown) {
    const auto path = folder.write("picture.png", threeFrames(4, 3).bytes());
    EXPECT_NE(Picture(GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(TestSupport::wideOf(path),
                                                                                  0.5, 0, 0)),
              nullptr);
}

TEST_F(AnimatedGifThumbnail, TheFirstFrameIsWhatTheStillPictureShows) {
    const auto noise = [](int x, int y) { return (x * 7 + y * y * 3 + x * y) % 4; };
    const auto path = TestSupport::wideOf(
        folder.write("a.gif", GifFile(40, 30, colours)
                                  .codes(TestSupport::GifCodes::Packed)
                                  .frame({.width = 40, .height = 30, .index = noise, .interlaced = true})
                                  .bytes()));
    const Picture moving(GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(path, 0.05, 0, 0));
    const Picture still(GdiplusBitmapThumbnailingHelper::GetThumbnailForImage(path, 0, 0));
    ASSERT_TRUE(moving && still);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(pixelOf(*moving, x, y), pixelOf(*still, x, y)) << x << "," << y;
}

} // namespace KestoThumbnailer
