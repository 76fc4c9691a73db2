#include "backends/gdiplus/codecs/PngBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

constexpr int grey = 0;
constexpr int rgb = 2;
constexpr int palette = 3;
constexpr int greyAlpha = 4;
constexpr int rgbAlpha = 6;

constexpr PngKind allKinds[] = {{grey, 1},    {grey, 2},      {grey, 4},       {grey, 8},     {grey, 16},
                                {rgb, 8},     {rgb, 16},      {palette, 1},    {palette, 2},  {palette, 4},
                                {palette, 8}, {greyAlpha, 8}, {greyAlpha, 16}, {rgbAlpha, 8}, {rgbAlpha, 16}};

std::byte at(int value) {
    return static_cast<std::byte>(value);
}

/// Samples that look like noise, but are the same each time.
std::array<int, 4> noise(int x, int y, PngKind kind) {
    std::array<int, 4> samples = {};
    std::uint32_t state = static_cast<std::uint32_t>(x * 7919 + y * 104729 + 1);
    for (int& sample : samples) {
        state = state * 1664525 + 1013904223;
        sample = static_cast<int>(state >> 16) & ((1 << kind.bitDepth) - 1);
    }
    return samples;
}

std::vector<std::array<int, 3>> entries(int count) {
    std::vector<std::array<int, 3>> result;
    result.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        result.push_back({i * 5 % 256, 255 - i, i * 11 % 256});
    return result;
}

PngBuilder noisy(int width, int height, PngKind kind) {
    PngBuilder builder(width, height, kind, [kind](int x, int y) { return noise(x, y, kind); });
    if (kind.colour == palette)
        builder.palette(entries(1 << kind.bitDepth));
    return builder;
}

/// A picture of one colour.
PngBuilder plain(PngKind kind, std::array<int, 4> samples) {
    return PngBuilder(5, 3, kind, [samples](int, int) { return samples; });
}

/// A sample at eight bits.
int level(int sample, PngKind kind) {
    const int brightest = (1 << kind.bitDepth) - 1;
    return (sample * 255 + brightest / 2) / brightest;
}

std::uint32_t colourOf(const std::array<int, 4>& samples, PngKind kind) {
    const bool isGrey = kind.colour == grey || kind.colour == greyAlpha;
    const auto channel = [&](std::size_t i) { return static_cast<BYTE>(level(samples[i], kind)); };
    BYTE alpha = 255;
    if (kind.colour == greyAlpha)
        alpha = channel(1);
    if (kind.colour == rgbAlpha)
        alpha = channel(3);
    return Gdiplus::Color::MakeARGB(alpha, channel(0), channel(isGrey ? 0 : 1), channel(isGrey ? 0 : 2));
}

bool isIndexed(RowLayout layout) {
    return layout == RowLayout::Bits1 || layout == RowLayout::Bits4 || layout == RowLayout::Index8;
}

void expectNoise(const Bytes& file, PngKind kind) {
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder) << decoder.error().message;
    const PictureFacts& facts = (*decoder)->facts();
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows) << rows.error().message;
    ASSERT_EQ(rows->height(), facts.height);
    for (int y = 0; y < facts.height; ++y)
        for (int x = 0; x < facts.width; ++x) {
            const std::array<int, 4> samples = noise(x, y, kind);
            if (isIndexed(facts.layout)) {
                ASSERT_EQ(rows->index(x, y), samples[0]) << x << ", " << y;
            } else if (kind.colour == palette) {
                const auto entry = entries(1 << kind.bitDepth)[static_cast<std::size_t>(samples[0])];
                ASSERT_EQ(rows->argb(x, y),
                          Gdiplus::Color::MakeARGB(255, static_cast<BYTE>(entry[0]),
                                                   static_cast<BYTE>(entry[1]), static_cast<BYTE>(entry[2])));
            } else {
                ASSERT_EQ(rows->argb(x, y), colourOf(samples, kind)) << x << ", " << y;
            }
        }
}

std::string nameOf(PngKind kind) {
    return "colour type " + std::to_string(kind.colour) + ", " + std::to_string(kind.bitDepth) + " bits";
}

void expectFormat(PngKind kind, RowLayout layout, Gdiplus::PixelFormat format) {
    const auto decoder = openBytes(noisy(3, 3, kind).build());
    ASSERT_TRUE(decoder);
    EXPECT_EQ((*decoder)->facts().layout, layout) << nameOf(kind);
    EXPECT_EQ((*decoder)->facts().pixelFormat(), format) << nameOf(kind);
}

std::uint32_t firstPixel(const PngBuilder& builder) {
    const auto decoder = openBytes(builder.build());
    const auto rows = decoder ? decodeRows(**decoder) : tl::unexpected(decoder.error());
    return rows && (*decoder)->facts().layout == RowLayout::Bgra32 ? rows->argb(0, 0) : 0xDEAD0000;
}

} // namespace

TEST(PngDecoder, EveryKindHasItsPixelFormat) {
    expectFormat({grey, 1}, RowLayout::Bits1, PixelFormat1bppIndexed);
    expectFormat({palette, 1}, RowLayout::Bits1, PixelFormat1bppIndexed);
    expectFormat({palette, 2}, RowLayout::Bgra32, PixelFormat32bppARGB);
    expectFormat({palette, 4}, RowLayout::Bits4, PixelFormat4bppIndexed);
    expectFormat({palette, 8}, RowLayout::Index8, PixelFormat8bppIndexed);
    expectFormat({rgb, 8}, RowLayout::Bgr24, PixelFormat24bppRGB);
    for (const PngKind kind : {PngKind{grey, 2},
                               {grey, 4},
                               {grey, 8},
                               {grey, 16},
                               {rgb, 16},
                               {greyAlpha, 8},
                               {greyAlpha, 16},
                               {rgbAlpha, 8},
                               {rgbAlpha, 16}})
        expectFormat(kind, RowLayout::Bgra32, PixelFormat32bppARGB);
}

TEST(PngDecoder, EveryKindGivesItsPixels) {
    for (const PngKind kind : allKinds) {
        SCOPED_TRACE(nameOf(kind));
        expectNoise(noisy(37, 11, kind).build(), kind);
    }
}

TEST(PngDecoder, EveryKindGivesItsPixelsWhenInterlaced) {
    for (const PngKind kind : allKinds) {
        SCOPED_TRACE(nameOf(kind));
        expectNoise(noisy(37, 11, kind).interlaced().build(), kind);
    }
}

TEST(PngDecoder, InterlacedPicturesMayLackPasses) {
    for (const int width : {1, 2, 4, 5})
        for (const int height : {1, 2, 3, 5}) {
            SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
            expectNoise(noisy(width, height, {rgb, 8}).interlaced().build(), {rgb, 8});
            expectNoise(noisy(width, height, {grey, 1}).interlaced().build(), {grey, 1});
        }
}

TEST(PngDecoder, EveryFilterIsUndone) {
    for (int filter = 0; filter < 5; ++filter)
        for (const PngKind kind : allKinds) {
            SCOPED_TRACE(nameOf(kind) + ", filter " + std::to_string(filter));
            expectNoise(noisy(23, 9, kind).filter(filter).build(), kind);
        }
}

TEST(PngDecoder, ImageDataMayComeInManySmallChunks) {
    expectNoise(noisy(37, 11, {rgb, 8}).chunksOf(6).build(), {rgb, 8});
}

TEST(PngDecoder, EmptyImageDataChunksAreSkipped) {
    const Bytes file = noisy(37, 11, {rgb, 8}).build();
    const Bytes empty = pngChunk("IDAT", {});
    expectNoise(withBytesBefore(withBytesBefore(file, "IEND", empty), "IDAT", empty), {rgb, 8});
}

TEST(PngDecoder, APaletteShorterThanItsIndicesIsFilledUp) {
    const auto decoder = openBytes(plain({palette, 8}, {3}).palette(entries(5)).build());
    ASSERT_TRUE(decoder);
    ASSERT_EQ((*decoder)->facts().palette.size(), 256U);
    EXPECT_EQ((*decoder)->facts().palette[4], 0xFF14FB2C);
    EXPECT_EQ((*decoder)->facts().palette[5], 0xFF000000);
}

TEST(PngDecoder, OneBitGreyHasAPaletteOfBlackAndWhite) {
    const auto decoder = openBytes(plain({grey, 1}, {1}).build());
    ASSERT_TRUE(decoder);
    EXPECT_THAT((*decoder)->facts().palette, testing::ElementsAre(0xFF000000, 0xFFFFFFFF));
}

TEST(PngDecoder, AlphaOfPaletteEntriesIsKept) {
    const auto alphas = [](int index) {
        return firstPixel(plain({palette, 8}, {index}).palette(entries(5)).paletteAlpha({0, 0x80}));
    };
    EXPECT_EQ(alphas(0), 0x0000FF00U);
    EXPECT_EQ(alphas(1), 0x8005FE0BU);
    EXPECT_EQ(alphas(2), 0xFF0AFD16U);
}

TEST(PngDecoder, ATransparentGreyIsComparedAtFullDepth) {
    EXPECT_EQ(firstPixel(plain({grey, 1}, {1}).transparentColour({1, 0, 0})), 0x00FFFFFFU);
    EXPECT_EQ(firstPixel(plain({grey, 4}, {3}).transparentColour({3, 0, 0})), 0x00333333U);
    EXPECT_EQ(firstPixel(plain({grey, 16}, {0x1234}).transparentColour({0x1234, 0, 0})), 0x00121212U);
    EXPECT_EQ(firstPixel(plain({grey, 16}, {0x1235}).transparentColour({0x1234, 0, 0})), 0xFF121212U);
}

TEST(PngDecoder, ATransparentColourHidesNoOther) {
    EXPECT_EQ(firstPixel(plain({rgb, 8}, {1, 2, 3}).transparentColour({1, 2, 3})), 0x00010203U);
    EXPECT_EQ(firstPixel(plain({rgb, 8}, {1, 2, 4}).transparentColour({1, 2, 3})), 0xFF010204U);
    EXPECT_EQ(firstPixel(plain({rgb, 16}, {0x100, 0x200, 0x301}).transparentColour({0x100, 0x200, 0x300})),
              0xFF010203U);
}

TEST(PngDecoder, FlagsTellGreyFromColourAndWhetherThereIsAlpha) {
    constexpr UINT always = Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize;
    const auto flags = [](PngKind kind) { return (*openBytes(noisy(2, 2, kind).build()))->facts().flags; };
    EXPECT_EQ(flags({grey, 8}), always | Gdiplus::ImageFlagsColorSpaceGRAY);
    EXPECT_EQ(flags({greyAlpha, 8}),
              always | Gdiplus::ImageFlagsColorSpaceGRAY | Gdiplus::ImageFlagsHasAlpha);
    EXPECT_EQ(flags({rgb, 8}), always | Gdiplus::ImageFlagsColorSpaceRGB);
    EXPECT_EQ(flags({rgbAlpha, 8}), always | Gdiplus::ImageFlagsColorSpaceRGB | Gdiplus::ImageFlagsHasAlpha);
}

TEST(PngDecoder, PixelsPerMetreAreTheResolution) {
    const auto decoder = openBytes(noisy(2, 2, {rgb, 8}).resolution(11811, 5906).build());
    ASSERT_TRUE(decoder);
    EXPECT_NEAR((*decoder)->facts().dpiX, 300, 0.01);
    EXPECT_NEAR((*decoder)->facts().dpiY, 150, 0.02);
    EXPECT_TRUE((*decoder)->facts().flags & Gdiplus::ImageFlagsHasRealDPI);
}

TEST(PngDecoder, AProfileIsUnpacked) {
    Bytes profile(3000);
    for (std::size_t i = 0; i < profile.size(); ++i)
        profile[i] = at(static_cast<int>(i % 37));
    const Bytes file = noisy(2, 2, {rgb, 8}).build();
    const auto decoder = openBytes(withBytesBefore(file, "IDAT", pngChunk("iCCP", packedProfile(profile))));
    ASSERT_TRUE(decoder);
    EXPECT_EQ((*decoder)->facts().iccProfile, profile);
}

TEST(PngDecoder, AFileThatSaysStandardColoursHasNoProfile) {
    Bytes file = noisy(2, 2, {rgb, 8}).build();
    file = withBytesBefore(file, "IDAT", pngChunk("iCCP", packedProfile(Bytes(100))));
    file = withBytesBefore(file, "IDAT", pngChunk("sRGB", {at(0)}));
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder);
    EXPECT_TRUE((*decoder)->facts().iccProfile.empty());
}

TEST(PngDecoder, ExifIsNotShown) {
    const Bytes file = noisy(2, 2, {rgb, 8}).build();
    const auto decoder = openBytes(withBytesBefore(file, "IDAT", pngChunk("eXIf", Bytes(26, at(1)))));
    ASSERT_TRUE(decoder);
    EXPECT_TRUE((*decoder)->facts().exif.empty());
}

TEST(PngDecoder, OnePictureDecodesOnManyThreadsAtOnce) {
    const auto decoder = openBytes(noisy(150, 100, {rgb, 8}).interlaced().build());
    ASSERT_TRUE(decoder);
    EXPECT_TRUE(decodesAlikeOnManyThreads(**decoder));
}

TEST(PngDecoder, EveryCutIsRefused) {
    for (const PngKind kind : allKinds)
        for (const bool interlaced : {false, true}) {
            PngBuilder builder = noisy(9, 5, kind);
            const Bytes file = (interlaced ? builder.interlaced() : builder).build();
            ASSERT_EQ(statusOf(file), Gdiplus::Ok);
            for (std::size_t length = 8; length < file.size(); ++length)
                ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted)
                    << nameOf(kind) << ", cut at " << length;
        }
}

} // namespace GdiplusBackend
