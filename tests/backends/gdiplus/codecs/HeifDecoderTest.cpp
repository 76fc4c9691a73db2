#include "backends/gdiplus/codecs/DecodedPicture.h"
#include "backends/gdiplus/codecs/HeifBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace GdiplusBackend {

namespace {

/// Four colours in the quarters of a picture.
std::uint32_t quarters(int x, int y, int width, int height) {
    if (y < height / 2)
        return x < width / 2 ? argbOf(255, 220, 30, 30) : argbOf(255, 30, 200, 40);
    return x < width / 2 ? argbOf(255, 20, 60, 210) : argbOf(255, 240, 230, 60);
}

HeifSpec quarteredSpec() {
    return {.width = 96, .height = 64, .pixel = [](int x, int y) { return quarters(x, y, 96, 64); }};
}

void expectNear(const DecodedPicture& heif, int x, int y, std::uint32_t colour) {
    const std::uint32_t found = heif.rows.argb(x, y);
    for (const unsigned shift : {0U, 8U, 16U, 24U})
        EXPECT_NEAR(static_cast<int>(found >> shift & 0xFFU), static_cast<int>(colour >> shift & 0xFFU), 6)
            << x << "," << y << " shift " << shift;
}

void expectQuarters(const DecodedPicture& heif) {
    for (const int y : {8, 56})
        for (const int x : {8, 88})
            expectNear(heif, x, y, quarters(x, y, 96, 64));
}

std::size_t placeOf(const Bytes& file, std::string_view text) {
    const auto wanted = std::as_bytes(std::span(text));
    return static_cast<std::size_t>(std::search(file.begin(), file.end(), wanted.begin(), wanted.end()) -
                                    file.begin());
}

} // namespace

TEST(HeifDecoder, AnHevcPictureComesOutInItsColours) {
    const auto heif = decodedPicture(buildHeif(quarteredSpec()));
    EXPECT_EQ(heif.facts.width, 96);
    EXPECT_EQ(heif.facts.height, 64);
    EXPECT_EQ(heif.facts.pixelFormat(), PixelFormat24bppRGB);
    ASSERT_EQ(heif.rows.height(), 64);
    expectQuarters(heif);
}

TEST(HeifDecoder, AnAv1PictureComesOutInItsColours) {
    HeifSpec spec = quarteredSpec();
    spec.coding = heif_compression_AV1;
    expectQuarters(decodedPicture(buildHeif(spec)));
}

TEST(HeifDecoder, AlphaIsKeptStraight) {
    HeifSpec spec = {.alpha = true};
    spec.pixel = [](int x, int) { return x < 32 ? argbOf(255, 200, 100, 50) : argbOf(128, 200, 100, 50); };
    const auto heif = decodedPicture(buildHeif(spec));
    EXPECT_EQ(heif.facts.pixelFormat(), PixelFormat32bppARGB);
    EXPECT_NE(heif.facts.flags & Gdiplus::ImageFlagsHasAlpha, 0U);
    expectNear(heif, 8, 30, argbOf(255, 200, 100, 50));
    expectNear(heif, 56, 30, argbOf(128, 200, 100, 50));
}

TEST(HeifDecoder, AQuarterTurnIsAppliedAndNotToldAgain) {
    HeifSpec spec = quarteredSpec();
    spec.orientation = heif_orientation_rotate_90_cw;
    const auto heif = decodedPicture(buildHeif(spec));
    EXPECT_EQ(heif.facts.width, 64);
    EXPECT_EQ(heif.facts.height, 96);
    EXPECT_TRUE(heif.facts.exif.empty());
    expectNear(heif, 56, 8, quarters(8, 8, 96, 64));   // top left has gone to the top right
    expectNear(heif, 8, 8, quarters(8, 56, 96, 64));   // bottom left to the top left
    expectNear(heif, 56, 88, quarters(88, 8, 96, 64)); // top right to the bottom right
}

TEST(HeifDecoder, TheProfileIsGiven) {
    HeifSpec spec = quarteredSpec();
    spec.iccProfile = Bytes(200, std::byte{0x5A});
    EXPECT_EQ(decodedPicture(buildHeif(spec)).facts.iccProfile, spec.iccProfile);
}

TEST(HeifDecoder, EveryCutIsAborted) {
    const Bytes file = buildHeif({.width = 16, .height = 16});
    const std::size_t boxes = placeOf(file, "meta") - 4;
    const std::size_t pixels = placeOf(file, "mdat") - 4;
    for (std::size_t length = 20; length < file.size(); ++length) {
        const bool betweenBoxes = length == boxes || length == pixels;
        const auto status = statusOf(cutAt(file, length));
        ASSERT_NE(status, Gdiplus::Ok) << length;
        ASSERT_TRUE(status == Gdiplus::Aborted || betweenBoxes) << length;
    }
}

TEST(HeifDecoder, LyingDimensionsAreRefusedByTheHeader) {
    Bytes file = buildHeif(quarteredSpec());
    std::size_t size = placeOf(file, "ispe");
    ASSERT_LT(size, file.size());
    size += 8;
    for (const std::size_t side : {size, size + 4}) { // 100,000 by 100,000
        file[side] = std::byte{0x00};
        file[side + 1] = std::byte{0x01};
        file[side + 2] = std::byte{0x86};
        file[side + 3] = std::byte{0xA0};
    }
    const auto decoder = openBytes(file);
    ASSERT_FALSE(decoder);
    EXPECT_EQ(decoder.error().status, Gdiplus::OutOfMemory);
}

TEST(HeifDecoder, ZerosAfterTheBrandsAreRefused) {
    Bytes file = buildHeif(quarteredSpec());
    std::fill(file.begin() + 24, file.end(), std::byte{0});
    EXPECT_NE(statusOf(file), Gdiplus::Ok);
}

TEST(HeifDecoder, ThreadsMayDecodeOnePictureAtOnce) {
    EXPECT_EQ(threadsThatAgree(buildHeif(quarteredSpec())), 4);
}

} // namespace GdiplusBackend
