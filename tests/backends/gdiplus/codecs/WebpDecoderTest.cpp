#include "backends/gdiplus/codecs/DecodedPicture.h"
#include "backends/gdiplus/codecs/WebpBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

namespace GdiplusBackend {

namespace {

std::uint32_t opaque(int x, int y) {
    return argbOf(255, 10 * x, 12 * y, 200 - x - y);
}

std::uint32_t glassy(int x, int y) {
    return argbOf(40 * x % 255 + 1, 10 * x, 12 * y, 77);
}

std::uint32_t red(int, int) {
    return argbOf(255, 200, 40, 30);
}

std::uint32_t redLeftBlueRight(int x, int) {
    return x < 32 ? argbOf(255, 200, 40, 30) : argbOf(255, 30, 40, 200);
}

Bytes bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

void expectNear(const DecodedPicture& webp, int x, int y, std::uint32_t colour) {
    for (const int channel : {0, 1, 2})
        EXPECT_NEAR(webp.rows.sample(x, y, channel), static_cast<int>(colour >> (8 * channel) & 0xFFU), 6)
            << x << "," << y << " channel " << channel;
}

} // namespace

TEST(WebpDecoder, LosslessKeepsEveryPixel) {
    const auto webp = decodedPicture(buildWebp(WebpKind::Lossless, 13, 9, opaque));
    EXPECT_EQ(webp.facts.width, 13);
    EXPECT_EQ(webp.facts.height, 9);
    EXPECT_EQ(webp.facts.pixelFormat(), PixelFormat24bppRGB);
    EXPECT_EQ(webp.facts.flags & Gdiplus::ImageFlagsHasAlpha, 0U);
    ASSERT_EQ(webp.rows.height(), 9);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 13; ++x)
            ASSERT_EQ(webp.rows.argb(x, y), opaque(x, y)) << x << "," << y;
}

TEST(WebpDecoder, LosslessKeepsStraightAlpha) {
    const auto webp = decodedPicture(buildWebp(WebpKind::Lossless, 13, 9, glassy));
    EXPECT_EQ(webp.facts.pixelFormat(), PixelFormat32bppARGB);
    EXPECT_NE(webp.facts.flags & Gdiplus::ImageFlagsHasAlpha, 0U);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 13; ++x)
            ASSERT_EQ(webp.rows.argb(x, y), glassy(x, y)) << x << "," << y;
}

TEST(WebpDecoder, LossyComesOutNearItsColours) {
    const auto webp = decodedPicture(buildWebp(WebpKind::Lossy, 64, 32, redLeftBlueRight));
    EXPECT_EQ(webp.facts.pixelFormat(), PixelFormat24bppRGB);
    expectNear(webp, 10, 10, redLeftBlueRight(10, 10));
    expectNear(webp, 50, 20, redLeftBlueRight(50, 20));
}

TEST(WebpDecoder, LossyWithAlphaKeepsTheAlpha) {
    const auto webp = decodedPicture(buildWebp(
        WebpKind::Lossy, 32, 32, [](int x, int) { return argbOf(x < 16 ? 255 : 100, 90, 90, 90); }));
    EXPECT_EQ(webp.facts.pixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(webp.rows.sample(3, 3, 3), 255);
    EXPECT_EQ(webp.rows.sample(25, 3, 3), 100);
}

TEST(WebpDecoder, OpaqueLossyPicturesComeOutReducedInTheirColours) {
    const Bytes file = buildWebp(WebpKind::Lossy, 67, 33, redLeftBlueRight);
    EXPECT_THAT(openBytes(file).value()->facts().reductions, testing::ElementsAre(4, 8));
    for (const int reduction : {4, 8}) {
        const auto webp = decodedPicture(file, reduction);
        ASSERT_EQ(webp.rows.height(), reducedLength(33, reduction));
        EXPECT_EQ(webp.rows.bytesInRow(0), static_cast<std::size_t>(reducedLength(67, reduction)) * 3);
        expectNear(webp, 1, 1, redLeftBlueRight(0, 0));
        expectNear(webp, reducedLength(67, reduction) - 2, 1, redLeftBlueRight(60, 0));
    }
}

TEST(WebpDecoder, LosslessAndTransparentPicturesOfferNoReductions) {
    EXPECT_TRUE(openBytes(buildWebp(WebpKind::Lossless, 4, 4, opaque)).value()->facts().reductions.empty());
    EXPECT_TRUE(openBytes(buildWebp(WebpKind::Lossy, 4, 4, glassy)).value()->facts().reductions.empty());
}

TEST(WebpDecoder, ProfileAndExifOfAnExtendedFileAreGiven) {
    const auto webp = decodedPicture(ExtendedWebp(ExtendedWebp::exifFlag | ExtendedWebp::profileFlag, 5, 4)
                                         .chunk("ICCP", bytesOf("profile"))
                                         .picture(buildWebp(WebpKind::Lossless, 5, 4, opaque))
                                         .chunk("EXIF", bytesOf("II*"))
                                         .build());
    EXPECT_EQ(webp.facts.iccProfile, bytesOf("profile"));
    EXPECT_EQ(webp.facts.exif, bytesOf("II*"));
    EXPECT_EQ(webp.rows.argb(4, 3), opaque(4, 3));
}

TEST(WebpDecoder, TheIdentifierBeforeExifIsDropped) {
    const auto webp = decodedPicture(ExtendedWebp(ExtendedWebp::exifFlag, 5, 4)
                                         .picture(buildWebp(WebpKind::Lossless, 5, 4, opaque))
                                         .chunk("EXIF", bytesOf(std::string_view("Exif\0\0MM", 8)))
                                         .build());
    EXPECT_EQ(webp.facts.exif, bytesOf("MM"));
}

TEST(WebpDecoder, OfAnAnimationTheFirstFrameLiesOnATransparentCanvas) {
    const auto webp = decodedPicture(ExtendedWebp(ExtendedWebp::animationFlag, 8, 6)
                                         .chunk("ANIM", Bytes(6))
                                         .frame(2, 4, 3, 2, buildWebp(WebpKind::Lossless, 3, 2, opaque))
                                         .frame(0, 0, 8, 6, buildWebp(WebpKind::Lossless, 8, 6, red))
                                         .build());
    EXPECT_EQ(webp.facts.pixelFormat(), PixelFormat32bppARGB);
    ASSERT_EQ(webp.rows.height(), 6);
    EXPECT_EQ(webp.rows.argb(0, 0), 0U);
    EXPECT_EQ(webp.rows.argb(1, 4), 0U);
    EXPECT_EQ(webp.rows.argb(2, 4), opaque(0, 0));
    EXPECT_EQ(webp.rows.argb(4, 5), opaque(2, 1));
    EXPECT_EQ(webp.rows.argb(5, 5), 0U);
}

TEST(WebpDecoder, AFrameBeyondItsCanvasIsDamage) {
    EXPECT_EQ(statusOf(ExtendedWebp(ExtendedWebp::animationFlag, 4, 4)
                           .frame(2, 2, 3, 3, buildWebp(WebpKind::Lossless, 3, 3, opaque))
                           .build()),
              Gdiplus::GenericError);
}

TEST(WebpDecoder, APictureThatDoesNotFillItsCanvasIsDamage) {
    EXPECT_EQ(statusOf(ExtendedWebp(0, 4, 4).picture(buildWebp(WebpKind::Lossless, 3, 4, opaque)).build()),
              Gdiplus::GenericError);
}

TEST(WebpDecoder, EveryCutIsAborted) {
    for (const Bytes& file :
         {buildWebp(WebpKind::Lossless, 13, 9, glassy), buildWebp(WebpKind::Lossy, 13, 9, opaque),
          ExtendedWebp(ExtendedWebp::animationFlag, 8, 6)
              .frame(2, 4, 3, 2, buildWebp(WebpKind::Lossless, 3, 2, opaque))
              .build()})
        for (std::size_t length = 12; length < file.size(); ++length)
            ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << length;
}

TEST(WebpDecoder, ACanvasBeyondTheBudgetIsRefusedByItsHeader) {
    const auto decoder = openBytes(ExtendedWebp(ExtendedWebp::animationFlag, 100'000, 100'000)
                                       .frame(0, 0, 3, 2, buildWebp(WebpKind::Lossless, 3, 2, opaque))
                                       .build());
    ASSERT_FALSE(decoder);
    EXPECT_EQ(decoder.error().status, Gdiplus::OutOfMemory);
}

TEST(WebpDecoder, ZerosAfterTheSignatureAreRefused) {
    Bytes file = buildWebp(WebpKind::Lossless, 13, 9, opaque);
    std::fill(file.begin() + 12, file.end(), std::byte{0});
    EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
}

TEST(WebpDecoder, DamagedPixelsAreRefused) {
    Bytes file = buildWebp(WebpKind::Lossless, 40, 40, glassy);
    std::fill(file.begin() + 30, file.begin() + 60, std::byte{0xFF});
    EXPECT_NE(statusOf(file), Gdiplus::Ok);
}

TEST(WebpDecoder, ThreadsMayDecodeOnePictureAtOnce) {
    EXPECT_EQ(threadsThatAgree(buildWebp(WebpKind::Lossy, 64, 32, redLeftBlueRight)), 4);
}

} // namespace GdiplusBackend
