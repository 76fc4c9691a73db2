#include "backends/gdiplus/codecs/BmpBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace GdiplusBackend {

namespace {

/// All pixels, row by row from the top, as colours.
std::vector<std::uint32_t> coloursOf(const BmpBuilder& builder) {
    const auto decoder = openBytes(builder.build());
    if (!decoder)
        return {static_cast<std::uint32_t>(decoder.error().status)};
    const auto rows = decodeRows(**decoder);
    if (!rows)
        return {static_cast<std::uint32_t>(rows.error().status)};
    const PictureFacts& facts = (*decoder)->facts();
    std::vector<std::uint32_t> colours;
    for (int y = 0; y < rows->height(); ++y)
        for (int x = 0; x < facts.width; ++x)
            colours.push_back(facts.palette.empty()
                                  ? rows->argb(x, y)
                                  : facts.palette.at(static_cast<std::size_t>(rows->index(x, y))));
    return colours;
}

PictureFacts factsOf(const BmpBuilder& builder) {
    const auto decoder = openBytes(builder.build());
    return decoder ? (*decoder)->facts() : PictureFacts{};
}

/// 2 x 2 pixels: red, green over blue, white.
BmpBuilder fourColours() {
    return {.width = 2, .height = 2, .pixels = {255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0, 0}};
}

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t blue = 0xFF0000FF;
constexpr std::uint32_t white = 0xFFFFFFFF;
constexpr std::uint32_t black = 0xFF000000;

BmpBuilder runLength8(std::vector<int> codes) {
    return {.width = 4,
            .height = 2,
            .bits = 8,
            .coding = 1,
            .coloursUsed = 4,
            .palette = {0x000000, 0xFF0000, 0x00FF00, 0x0000FF},
            .pixels = std::move(codes)};
}

BmpBuilder runLength4(std::vector<int> codes) {
    BmpBuilder builder = runLength8(std::move(codes));
    builder.bits = 4;
    builder.coding = 2;
    return builder;
}

void expectEveryCutRefused(const BmpBuilder& builder) {
    const Bytes file = builder.build();
    ASSERT_EQ(statusOf(file), Gdiplus::Ok);
    for (std::size_t length = 2; length < file.size(); ++length)
        ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << "cut at " << length;
}

} // namespace

TEST(BmpDecoder, TrueColourRowsComeFromTheBottomUp) {
    EXPECT_THAT(coloursOf(fourColours()), testing::ElementsAre(red, green, blue, white));
    const PictureFacts facts = factsOf(fourColours());
    EXPECT_EQ(facts.layout, RowLayout::Bgr24);
    EXPECT_EQ(facts.pixelFormat(), PixelFormat24bppRGB);
    EXPECT_EQ(facts.rawFormat, Gdiplus::ImageFormatBMP);
    EXPECT_EQ(facts.flags, Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize |
                               Gdiplus::ImageFlagsColorSpaceRGB);
}

TEST(BmpDecoder, ANegativeHeightIsTopDown) {
    BmpBuilder builder = fourColours();
    builder.height = -2;
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(blue, white, red, green));
}

TEST(BmpDecoder, PicturesOfManyBlocksKeepTheirRowOrder) {
    BmpBuilder builder{.width = 1000, .height = 300, .bits = 32};
    for (int row = 0; row < 300; ++row)
        for (int x = 0; x < 1000; ++x)
            for (const int value : {row % 256, row / 256, x % 256, 0})
                builder.pixels.push_back(value);
    const auto decoder = openBytes(builder.build());
    ASSERT_TRUE(decoder);
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows);
    ASSERT_EQ(rows->height(), 300);
    for (int y = 0; y < 300; ++y)
        ASSERT_EQ(rows->sample(7, y, 0) + 256 * rows->sample(7, y, 1), 299 - y);
}

TEST(BmpDecoder, OneBitStaysOneBit) {
    const BmpBuilder builder{.width = 9,
                             .height = 1,
                             .bits = 1,
                             .palette = {0x0000FF, 0xFF0000},
                             .pixels = {0b10100000, 0b10000000, 0, 0}};
    EXPECT_EQ(factsOf(builder).layout, RowLayout::Bits1);
    EXPECT_EQ(factsOf(builder).pixelFormat(), PixelFormat1bppIndexed);
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(red, blue, red, blue, blue, blue, blue, blue, red));
}

TEST(BmpDecoder, TwoBitsBecomeFour) {
    const BmpBuilder builder{.width = 5,
                             .height = 1,
                             .bits = 2,
                             .palette = {0x000000, 0xFF0000, 0x00FF00, 0x0000FF},
                             .pixels = {0b00011011, 0b01000000, 0, 0}};
    EXPECT_EQ(factsOf(builder).layout, RowLayout::Bits4);
    EXPECT_EQ(factsOf(builder).palette.size(), 16U);
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(black, red, green, blue, red));
}

TEST(BmpDecoder, FourBitsStayFour) {
    const BmpBuilder builder{.width = 3,
                             .height = 1,
                             .bits = 4,
                             .coloursUsed = 3,
                             .palette = {0xFF0000, 0x00FF00, 0x0000FF},
                             .pixels = {0x21, 0x00, 0, 0}};
    EXPECT_EQ(factsOf(builder).pixelFormat(), PixelFormat4bppIndexed);
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(blue, green, red));
}

TEST(BmpDecoder, EightBitsStayEight) {
    const BmpBuilder builder{.width = 3,
                             .height = 1,
                             .bits = 8,
                             .coloursUsed = 2,
                             .palette = {0xFF0000, 0x00FF00},
                             .pixels = {1, 0, 200, 0}};
    EXPECT_EQ(factsOf(builder).pixelFormat(), PixelFormat8bppIndexed);
    EXPECT_EQ(factsOf(builder).palette.size(), 256U);
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(green, red, black));
}

TEST(BmpDecoder, APaletteShorterThanStatedEndsWhereThePixelsStart) {
    const BmpBuilder builder{
        .width = 3, .height = 1, .bits = 8, .palette = {0xFF0000, 0x00FF00}, .pixels = {1, 0, 2, 0}};
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(green, red, black));
}

TEST(BmpDecoder, PixelsWithoutAStatedPlaceFollowThePalette) {
    const BmpBuilder builder{.width = 2,
                             .height = 1,
                             .bits = 8,
                             .coloursUsed = 2,
                             .palette = {0xFF0000, 0x00FF00},
                             .pixelsAt = 0,
                             .pixels = {1, 0, 0, 0}};
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(green, red));
}

TEST(BmpDecoder, TheShortHeaderOfOs2HasEntriesOfThreeBytes) {
    const BmpBuilder builder{.width = 2,
                             .height = 1,
                             .bits = 1,
                             .headerSize = 12,
                             .palette = {0xFF0000, 0x00FF00},
                             .pixels = {0b01000000, 0, 0, 0}};
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(red, green));
}

TEST(BmpDecoder, SixteenBitsAreFiveFiveFiveUnlessMasksSayOtherwise) {
    const BmpBuilder plain{.width = 2, .height = 1, .bits = 16, .pixels = {0x00, 0x7C, 0x10, 0x82}};
    EXPECT_EQ(factsOf(plain).layout, RowLayout::Bgrx32);
    EXPECT_EQ(factsOf(plain).pixelFormat(), PixelFormat32bppRGB);
    EXPECT_THAT(coloursOf(plain), testing::ElementsAre(red, 0xFF008484));
    const BmpBuilder masked{.width = 2,
                            .height = 1,
                            .bits = 16,
                            .coding = 3,
                            .masks = {0xF800, 0x07E0, 0x001F},
                            .pixels = {0x00, 0xF8, 0xE0, 0x07}};
    EXPECT_THAT(coloursOf(masked), testing::ElementsAre(red, green));
}

TEST(BmpDecoder, AlphaOfThirtyTwoBitsIsNotLookedAt) {
    const BmpBuilder builder{.width = 2,
                             .height = 1,
                             .bits = 32,
                             .coding = 3,
                             .headerSize = 124,
                             .masks = {0xFF0000, 0x00FF00, 0x0000FF, 0xFF000000},
                             .pixels = {0, 0, 255, 0, 0, 255, 0, 128}};
    EXPECT_EQ(factsOf(builder).pixelFormat(), PixelFormat32bppRGB);
    EXPECT_FALSE(factsOf(builder).flags & Gdiplus::ImageFlagsHasAlpha);
    EXPECT_THAT(coloursOf(builder), testing::ElementsAre(red, green));
}

TEST(BmpDecoder, MasksMayLieAnywhereAndHaveAnyWidth) {
    const BmpBuilder swapped{.width = 1,
                             .height = 1,
                             .bits = 32,
                             .coding = 3,
                             .headerSize = 56,
                             .masks = {0x000000FF, 0x0000FF00, 0x00FF0000, 0},
                             .pixels = {255, 128, 7, 9}};
    EXPECT_THAT(coloursOf(swapped), testing::ElementsAre(0xFFFF8007));
    const BmpBuilder tenBits{.width = 1,
                             .height = 1,
                             .bits = 32,
                             .coding = 6,
                             .masks = {0x3FF00000, 0x000FFC00, 0x000003FF, 0xC0000000},
                             .pixels = {0xFF, 0x03, 0x08, 0x20}};
    EXPECT_THAT(coloursOf(tenBits), testing::ElementsAre(0xFF8080FF));
    const BmpBuilder none{.width = 1,
                          .height = 1,
                          .bits = 16,
                          .coding = 3,
                          .masks = {0, 0, 0x0001},
                          .pixels = {0xFF, 0xFF, 0, 0}};
    EXPECT_THAT(coloursOf(none), testing::ElementsAre(blue));
}

TEST(BmpDecoder, RunsAndPlainStretchesOfEightBits) {
    EXPECT_THAT(coloursOf(runLength8({4, 1, 0, 0, 0, 3, 1, 2, 3, 0, 1, 2, 0, 1})),
                testing::ElementsAre(red, green, blue, green, red, red, red, red));
}

TEST(BmpDecoder, RunsAndPlainStretchesOfFourBits) {
    EXPECT_THAT(coloursOf(runLength4({4, 0x12, 0, 0, 0, 3, 0x12, 0x30, 1, 0x20, 0, 1})),
                testing::ElementsAre(red, green, blue, green, red, green, red, green));
}

TEST(BmpDecoder, WhatRunsSkipIsEntryZero) {
    EXPECT_THAT(coloursOf(runLength8({1, 1, 0, 2, 1, 1, 1, 2, 0, 1})),
                testing::ElementsAre(black, black, green, black, red, black, black, black));
}

TEST(BmpDecoder, RunsThatLeaveThePictureAreCut) {
    EXPECT_THAT(coloursOf(runLength8({200, 1, 0, 0, 0, 2, 250, 250, 200, 2, 0, 2, 0, 255, 9, 3, 0, 1})),
                testing::ElementsAre(black, black, black, black, red, red, red, red));
}

TEST(BmpDecoder, PixelsPerMetreAreTheResolution) {
    BmpBuilder builder = fourColours();
    EXPECT_FLOAT_EQ(factsOf(builder).dpiX, 96);
    EXPECT_FALSE(factsOf(builder).flags & Gdiplus::ImageFlagsHasRealDPI);
    builder.perMetre = 11811;
    EXPECT_NEAR(factsOf(builder).dpiY, 300, 0.01);
    EXPECT_TRUE(factsOf(builder).flags & Gdiplus::ImageFlagsHasRealDPI);
}

TEST(BmpDecoder, EveryCutIsRefused) {
    expectEveryCutRefused(fourColours());
    expectEveryCutRefused({.width = 3,
                           .height = 2,
                           .bits = 8,
                           .coloursUsed = 2,
                           .palette = {1, 2},
                           .pixels = {1, 0, 1, 0, 0, 1, 0, 0}});
    expectEveryCutRefused({.width = 2,
                           .height = 1,
                           .bits = 16,
                           .coding = 3,
                           .masks = {0xF800, 0x07E0, 0x001F},
                           .pixels = {0, 1, 2, 3}});
    expectEveryCutRefused(runLength8({4, 1, 0, 0, 0, 3, 1, 2, 3, 0, 0, 2, 1, 0, 0, 1}));
    expectEveryCutRefused(runLength4({4, 0x12, 0, 0, 0, 3, 0x12, 0x30, 1, 0x20, 0, 1}));
}

TEST(BmpDecoder, ASizeOverTheBudgetIsRefusedFromTheHeaderAlone) {
    const BmpBuilder builder{.width = 100'000, .height = 100'000};
    EXPECT_EQ(openBytes(builder.build()).error().status, Gdiplus::OutOfMemory);
    const BmpBuilder lowest{.width = 1, .height = INT32_MIN};
    EXPECT_EQ(openBytes(lowest.build()).error().status, Gdiplus::OutOfMemory);
}

TEST(BmpDecoder, EmptyAndNegativeSizesAreDamage) {
    for (const auto& [width, height] : {std::pair{0, 1}, {-1, 1}, {1, 0}, {INT32_MIN, 1}})
        EXPECT_EQ(statusOf(BmpBuilder{.width = width, .height = height, .pixels = {0, 0, 0, 0}}.build()),
                  Gdiplus::GenericError);
}

TEST(BmpDecoder, KindsThatDoNotExistAreDamage) {
    for (const auto& [bits, coding] :
         {std::pair{0, 0U}, {3, 0U}, {64, 0U}, {8, 2U}, {4, 1U}, {24, 3U}, {24, 9U}})
        EXPECT_EQ(statusOf(BmpBuilder{.width = 1, .height = 1, .bits = bits, .coding = coding}.build()),
                  Gdiplus::GenericError)
            << bits << " bits, coding " << coding;
}

TEST(BmpDecoder, EmbeddedJpegAndPngAreOfNoKnownKind) {
    for (const std::uint32_t coding : {4U, 5U})
        EXPECT_EQ(statusOf(BmpBuilder{.width = 1, .height = 1, .bits = 0, .coding = coding}.build()),
                  Gdiplus::UnknownImageFormat);
}

TEST(BmpDecoder, TextThatStartsLikeASignatureIsOfNoKnownKind) {
    Bytes text(100, std::byte{'x'});
    text[0] = std::byte{'B'};
    text[1] = std::byte{'M'};
    EXPECT_EQ(statusOf(text), Gdiplus::UnknownImageFormat);
}

TEST(BmpDecoder, OnePictureDecodesOnManyThreadsAtOnce) {
    const auto decoder = openBytes(fourColours().build());
    ASSERT_TRUE(decoder);
    EXPECT_TRUE(decodesAlikeOnManyThreads(**decoder));
}

} // namespace GdiplusBackend
