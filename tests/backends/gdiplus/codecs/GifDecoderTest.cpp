#include "backends/gdiplus/codecs/DecodedPicture.h"
#include "backends/gdiplus/codecs/GifBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

int diagonal(int x, int y) {
    return (x + 3 * y) % 16;
}

std::uint32_t colourOf(int index) {
    return 0xFF000000U | static_cast<std::uint32_t>(index << 16 | (255 - index) << 8 | index / 2);
}

GifBuilder stillGif() {
    return GifBuilder(11, 13, gifColours(16)).frame({.width = 11, .height = 13, .index = diagonal});
}

GifBuilder animatedGif() {
    return GifBuilder(4, 3, gifColours(16))
        .frame({.left = 1, .top = 1, .width = 2, .height = 2, .index = diagonal})
        .frame({.width = 4, .height = 3, .index = [](int, int) { return 9; }});
}

} // namespace

TEST(GifDecoder, OneFrameKeepsItsPaletteAndIndices) {
    const auto gif = decodedPicture(stillGif().build());
    EXPECT_EQ(gif.facts.width, 11);
    EXPECT_EQ(gif.facts.height, 13);
    EXPECT_EQ(gif.facts.layout, RowLayout::Index8);
    EXPECT_EQ(gif.facts.pixelFormat(), PixelFormat8bppIndexed);
    EXPECT_EQ(gif.facts.rawFormat, Gdiplus::ImageFormatGIF);
    EXPECT_EQ(gif.facts.palette.size(), 16U);
    ASSERT_EQ(gif.rows.height(), 13);
    for (int y = 0; y < 13; ++y)
        for (int x = 0; x < 11; ++x) {
            ASSERT_EQ(gif.rows.index(x, y), diagonal(x, y)) << x << "," << y;
            ASSERT_EQ(gif.paletteColour(x, y), colourOf(diagonal(x, y)));
        }
}

TEST(GifDecoder, AnOpaqueFrameHasNoAlphaFlag) {
    const auto flags = decodedPicture(stillGif().build()).facts.flags;
    EXPECT_EQ(flags & Gdiplus::ImageFlagsHasAlpha, 0U);
    EXPECT_NE(flags & Gdiplus::ImageFlagsHasRealDPI, 0U);
}

TEST(GifDecoder, InterlacedLinesComeOutInOrder) {
    const auto gif = decodedPicture(
        GifBuilder(5, 19, gifColours(32))
            .frame({.width = 5, .height = 19, .interlaced = true, .index = [](int, int y) { return y; }})
            .build());
    ASSERT_EQ(gif.rows.height(), 19);
    for (int y = 0; y < 19; ++y)
        EXPECT_EQ(gif.rows.index(4, y), y);
}

TEST(GifDecoder, ALocalPaletteReplacesTheGlobalOne) {
    const auto gif = decodedPicture(GifBuilder(2, 1, gifColours(16))
                                        .frame({.width = 2,
                                                .height = 1,
                                                .palette = {{200, 100, 50}, {1, 2, 3}},
                                                .index = [](int x, int) { return x; }})
                                        .build());
    EXPECT_EQ(gif.paletteColour(0, 0), 0xFFC86432U);
    EXPECT_EQ(gif.paletteColour(1, 0), 0xFF010203U);
    EXPECT_EQ(gif.facts.palette.size(), 2U);
}

TEST(GifDecoder, TheTransparentIndexHasNoAlphaInThePalette) {
    const auto gif = decodedPicture(
        GifBuilder(2, 1, gifColours(4))
            .frame(
                {.width = 2, .height = 1, .transparentIndex = 3, .index = [](int x, int) { return x + 2; }})
            .build());
    EXPECT_EQ(gif.paletteColour(0, 0), colourOf(2));
    EXPECT_EQ(gif.paletteColour(1, 0), colourOf(3) & 0x00FFFFFFU);
    EXPECT_NE(gif.facts.flags & Gdiplus::ImageFlagsHasAlpha, 0U);
}

TEST(GifDecoder, ASmallFrameGetsATransparentEntryAddedForTheRestOfTheScreen) {
    const auto gif = decodedPicture(
        GifBuilder(4, 3, gifColours(4))
            .frame({.left = 1, .top = 1, .width = 2, .height = 1, .index = [](int, int) { return 2; }})
            .build());
    ASSERT_EQ(gif.facts.layout, RowLayout::Index8);
    EXPECT_EQ(gif.facts.palette.size(), 5U);
    EXPECT_EQ(gif.paletteColour(0, 0) >> 24, 0U);
    EXPECT_EQ(gif.paletteColour(0, 1) >> 24, 0U);
    EXPECT_EQ(gif.paletteColour(1, 1), colourOf(2));
    EXPECT_EQ(gif.paletteColour(2, 1), colourOf(2));
    EXPECT_EQ(gif.paletteColour(3, 1) >> 24, 0U);
    EXPECT_EQ(gif.paletteColour(2, 2) >> 24, 0U);
}

TEST(GifDecoder, ASmallFrameWithAFullPaletteIsArgb) {
    const auto gif =
        decodedPicture(GifBuilder(3, 1, gifColours(256))
                           .frame({.left = 1, .width = 1, .height = 1, .index = [](int, int) { return 255; }})
                           .build());
    EXPECT_EQ(gif.facts.pixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(gif.rows.argb(0, 0), 0U);
    EXPECT_EQ(gif.rows.argb(1, 0), colourOf(255));
    EXPECT_EQ(gif.rows.argb(2, 0), 0U);
}

TEST(GifDecoder, AFrameThatReachesBeyondTheScreenIsCut) {
    const auto gif =
        decodedPicture(GifBuilder(3, 2, gifColours(16))
                           .frame({.left = 1, .top = 1, .width = 9, .height = 9, .index = diagonal})
                           .build());
    ASSERT_EQ(gif.rows.height(), 2);
    EXPECT_EQ(gif.rows.bytesInRow(1), 3U);
    EXPECT_EQ(gif.rows.index(2, 1), diagonal(1, 0));
}

TEST(GifDecoder, AScreenWithoutSizeReachesAsFarAsTheFrame) {
    const auto gif = decodedPicture(
        GifBuilder(0, 0, gifColours(16)).frame({.width = 3, .height = 2, .index = diagonal}).build());
    EXPECT_EQ(gif.facts.width, 3);
    EXPECT_EQ(gif.facts.height, 2);
    EXPECT_EQ(gif.rows.index(2, 1), diagonal(2, 1));
}

TEST(GifDecoder, OfSeveralFramesTheFirstComesOutAsArgb) {
    const auto gif = decodedPicture(animatedGif().build());
    EXPECT_EQ(gif.facts.layout, RowLayout::Bgra32);
    EXPECT_EQ(gif.facts.pixelFormat(), PixelFormat32bppARGB);
    EXPECT_TRUE(gif.facts.palette.empty());
    EXPECT_EQ(gif.rows.argb(0, 0), 0U);
    EXPECT_EQ(gif.rows.argb(1, 1), colourOf(diagonal(0, 0)));
    EXPECT_EQ(gif.rows.argb(2, 2), colourOf(diagonal(1, 1)));
    EXPECT_EQ(gif.rows.argb(3, 2), 0U);
}

TEST(GifDecoder, AnIndexWithoutColourNamesTheFirst) {
    Bytes file = GifBuilder(1, 1, gifColours(4)).frame({.index = [](int, int) { return 3; }}).build();
    file[10] = std::byte{0xF0}; // says two colours
    file.erase(file.begin() + 13 + 6, file.begin() + 13 + 12);
    const auto gif = decodedPicture(file);
    EXPECT_EQ(gif.facts.palette.size(), 2U);
    EXPECT_EQ(gif.rows.index(0, 0), 0);
}

TEST(GifDecoder, EveryCutOfAStillIsAborted) {
    const Bytes file = stillGif().build();
    for (std::size_t length = 6; length < file.size(); ++length)
        ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << length;
}

TEST(GifDecoder, EveryCutOfAnAnimationIsAborted) {
    const Bytes file = animatedGif().build();
    for (std::size_t length = 6; length < file.size(); ++length)
        ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << length;
}

TEST(GifDecoder, BytesAfterTheTrailerAreIgnored) {
    Bytes file = stillGif().build();
    file.insert(file.end(), 100, std::byte{0x55});
    EXPECT_EQ(statusOf(file), Gdiplus::Ok);
}

TEST(GifDecoder, TooFewPixelsInACompleteFileAreDamage) {
    Bytes file = GifBuilder(2, 2, gifColours(2)).frame({.width = 2, .height = 2}).build();
    const std::size_t frameHeight = 13 + 6 + 7;
    file[frameHeight] = file[8] = std::byte{200};
    EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
}

TEST(GifDecoder, ZerosAfterTheSignatureAreDamage) {
    Bytes file(400);
    const std::string_view signature = "GIF89a";
    std::memcpy(file.data(), signature.data(), signature.size());
    EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
}

TEST(GifDecoder, AScreenBeyondTheBudgetIsRefusedByItsHeader) {
    Bytes file = stillGif().build();
    std::fill_n(file.begin() + 6, 4, std::byte{0xFF});
    const auto decoder = openBytes(file);
    ASSERT_FALSE(decoder);
    EXPECT_EQ(decoder.error().status, Gdiplus::OutOfMemory);
}

TEST(GifDecoder, AFrameWithoutAPaletteIsDamage) {
    Bytes file = GifBuilder(1, 1, gifColours(2)).frame({}).build();
    file[10] = std::byte{0x70};
    file.erase(file.begin() + 13, file.begin() + 13 + 6);
    EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
}

TEST(GifDecoder, ThreadsMayDecodeOnePictureAtOnce) {
    EXPECT_EQ(threadsThatAgree(animatedGif().build()), 4);
}

} // namespace GdiplusBackend
