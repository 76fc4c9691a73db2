#include "backends/gdiplus/codecs/JpegBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

constexpr int tolerance = 4;

std::byte at(int value) {
    return static_cast<std::byte>(value);
}

JpegBuilder plain(int width, int height, std::array<int, 4> samples) {
    return JpegBuilder(width, height, [samples](int, int) { return samples; });
}

/// Red left of the middle and blue right of it.
JpegBuilder redThenBlue(int width, int height) {
    return JpegBuilder(width, height, [width](int x, int) {
        return x < width / 2 ? std::array<int, 4>{250, 10, 20, 0} : std::array<int, 4>{10, 20, 250, 0};
    });
}

void expectSamples(const CollectRows& rows, int x, int y, std::vector<int> expected) {
    for (std::size_t channel = 0; channel < expected.size(); ++channel)
        EXPECT_NEAR(rows.sample(x, y, static_cast<int>(channel)), expected[channel], tolerance)
            << "at " << x << ", " << y << ", channel " << channel;
}

void expectRedThenBlue(const Bytes& file) {
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder) << decoder.error().message;
    const PictureFacts& facts = (*decoder)->facts();
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows) << rows.error().message;
    ASSERT_EQ(rows->height(), facts.height);
    expectSamples(*rows, 2, 1, {20, 10, 250});
    expectSamples(*rows, facts.width - 3, facts.height - 1, {250, 20, 10});
}

/// What decoding gives for each possible length of the file; every one but the last should refuse.
void expectEveryCutRefused(const Bytes& file) {
    ASSERT_EQ(statusOf(file), Gdiplus::Ok);
    for (std::size_t length = 3; length < file.size(); ++length)
        EXPECT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << "cut at " << length;
}

std::size_t placeOf(const Bytes& file, int marker) {
    const std::array<std::byte, 2> wanted = {at(0xFF), at(marker)};
    return static_cast<std::size_t>(std::search(file.begin(), file.end(), wanted.begin(), wanted.end()) -
                                    file.begin());
}

} // namespace

TEST(JpegDecoder, ColourComesAsBlueGreenRed) {
    const Bytes file = redThenBlue(48, 20).build();
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder);
    const PictureFacts& facts = (*decoder)->facts();
    EXPECT_EQ(facts.width, 48);
    EXPECT_EQ(facts.height, 20);
    EXPECT_EQ(facts.layout, RowLayout::Bgr24);
    EXPECT_EQ(facts.pixelFormat(), PixelFormat24bppRGB);
    EXPECT_TRUE(facts.palette.empty());
    EXPECT_EQ(facts.rawFormat, Gdiplus::ImageFormatJPEG);
    expectRedThenBlue(file);
}

TEST(JpegDecoder, ComponentsThatAreAlreadyRgbAreNotTransformed) {
    expectRedThenBlue(redThenBlue(48, 20).rgbUntransformed().build());
}

TEST(JpegDecoder, ProgressiveFilesDecode) {
    expectRedThenBlue(redThenBlue(48, 20).progressive().build());
}

TEST(JpegDecoder, ArithmeticCodingDecodes) {
    expectRedThenBlue(redThenBlue(48, 20).arithmetic().build());
}

TEST(JpegDecoder, RestartMarkersAreFollowed) {
    expectRedThenBlue(redThenBlue(64, 32).restartEvery(2).build());
}

TEST(JpegDecoder, GreyIsIndexedWithARampOfGreys) {
    const Bytes file =
        JpegBuilder(16, 8, [](int x, int) { return std::array<int, 4>{x * 10}; }).grey().build();
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder);
    const PictureFacts& facts = (*decoder)->facts();
    EXPECT_EQ(facts.layout, RowLayout::Index8);
    EXPECT_EQ(facts.pixelFormat(), PixelFormat8bppIndexed);
    ASSERT_EQ(facts.palette.size(), 256U);
    EXPECT_EQ(facts.palette[0], 0xFF000000);
    EXPECT_EQ(facts.palette[0x80], 0xFF808080);
    EXPECT_EQ(facts.palette[255], 0xFFFFFFFF);
    EXPECT_EQ(facts.flags, Gdiplus::ImageFlagsReadOnly | Gdiplus::ImageFlagsHasRealPixelSize |
                               Gdiplus::ImageFlagsColorSpaceGRAY);
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows);
    EXPECT_NEAR(rows->index(0, 0), 0, tolerance);
    EXPECT_NEAR(rows->index(15, 7), 150, tolerance);
}

TEST(JpegDecoder, CmykOfAdobeIsTurnedIntoAmountsOfInk) {
    const auto decoder = openBytes(plain(16, 16, {255, 205, 55, 235}).cmyk().build());
    ASSERT_TRUE(decoder);
    EXPECT_EQ((*decoder)->facts().layout, RowLayout::Cmyk32);
    EXPECT_EQ((*decoder)->facts().pixelFormat(), PixelFormat32bppCMYK);
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows);
    expectSamples(*rows, 5, 5, {0, 50, 200, 20});
}

TEST(JpegDecoder, YcckOfAdobeIsTurnedIntoAmountsOfInk) {
    const auto decoder = openBytes(plain(16, 16, {255, 205, 55, 235}).ycck().build());
    ASSERT_TRUE(decoder);
    EXPECT_EQ((*decoder)->facts().layout, RowLayout::Cmyk32);
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows);
    expectSamples(*rows, 5, 5, {0, 50, 200, 20});
}

TEST(JpegDecoder, CmykWithoutAdobesMarkerIsInkAlready) {
    const auto decoder = openBytes(plain(16, 16, {0, 50, 200, 20}).cmyk().withoutAdobeMarker().build());
    ASSERT_TRUE(decoder);
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows);
    expectSamples(*rows, 5, 5, {0, 50, 200, 20});
}

TEST(JpegDecoder, ReducedSizesAreRoundedUpAndKeepTheColours) {
    const auto decoder = openBytes(redThenBlue(131, 67).build());
    ASSERT_TRUE(decoder);
    ASSERT_THAT(
        std::vector<int>((*decoder)->facts().reductions.begin(), (*decoder)->facts().reductions.end()),
        testing::ElementsAre(2, 4, 8));
    for (const int reduction : {2, 4, 8}) {
        const auto rows = decodeRows(**decoder, reduction);
        ASSERT_TRUE(rows);
        const int width = reducedLength(131, reduction);
        ASSERT_EQ(rows->height(), reducedLength(67, reduction));
        ASSERT_EQ(rows->bytesInRow(0), static_cast<std::size_t>(width) * 3);
        expectSamples(*rows, 1, 1, {20, 10, 250});
        expectSamples(*rows, width - 2, rows->height() - 1, {250, 20, 10});
    }
}

TEST(JpegDecoder, AStatedDensityIsTheResolution) {
    const auto inches = openBytes(plain(8, 8, {1, 2, 3}).density(1, 300, 150).build());
    ASSERT_TRUE(inches);
    EXPECT_FLOAT_EQ((*inches)->facts().dpiX, 300);
    EXPECT_FLOAT_EQ((*inches)->facts().dpiY, 150);
    EXPECT_TRUE((*inches)->facts().flags & Gdiplus::ImageFlagsHasRealDPI);
    const auto centimetres = openBytes(plain(8, 8, {1, 2, 3}).density(2, 100, 100).build());
    ASSERT_TRUE(centimetres);
    EXPECT_FLOAT_EQ((*centimetres)->facts().dpiX, 254);
}

TEST(JpegDecoder, AMereAspectRatioIsNoResolution) {
    const auto decoder = openBytes(plain(8, 8, {1, 2, 3}).density(0, 2, 1).build());
    ASSERT_TRUE(decoder);
    EXPECT_FLOAT_EQ((*decoder)->facts().dpiX, 96);
    EXPECT_FALSE((*decoder)->facts().flags & Gdiplus::ImageFlagsHasRealDPI);
}

TEST(JpegDecoder, ExifIsGivenFromItsTiffHeaderOn) {
    const Bytes tiff = {at('I'), at('I'), at(42), at(0), at(8), at(0), at(0), at(0), at(0), at(0)};
    const auto decoder = openBytes(plain(8, 8, {1, 2, 3}).exif(tiff).build());
    ASSERT_TRUE(decoder);
    EXPECT_EQ((*decoder)->facts().exif, tiff);
}

TEST(JpegDecoder, AProfileInSeveralSegmentsIsPutTogether) {
    Bytes profile(100'000);
    for (std::size_t i = 0; i < profile.size(); ++i)
        profile[i] = at(static_cast<int>(i * 7 % 251));
    const auto decoder = openBytes(plain(8, 8, {1, 2, 3}).iccProfile(profile).build());
    ASSERT_TRUE(decoder);
    EXPECT_EQ((*decoder)->facts().iccProfile, profile);
}

TEST(JpegDecoder, EveryCutOfABaselineFileIsRefused) {
    expectEveryCutRefused(redThenBlue(24, 24).build());
}

TEST(JpegDecoder, EveryCutOfAProgressiveFileIsRefused) {
    expectEveryCutRefused(redThenBlue(24, 24).progressive().build());
}

TEST(JpegDecoder, EveryCutOfACmykFileIsRefused) {
    expectEveryCutRefused(plain(24, 24, {255, 205, 55, 235}).cmyk().restartEvery(1).build());
}

TEST(JpegDecoder, BytesBehindTheEndAreIgnored) {
    Bytes file = redThenBlue(48, 20).build();
    file.resize(file.size() + 1000, at(0x5A));
    expectRedThenBlue(file);
}

TEST(JpegDecoder, ASizeOverTheBudgetIsRefusedBeforeDecoding) {
    Bytes file = plain(8, 8, {1, 2, 3}).build();
    const std::size_t frame = placeOf(file, 0xC0);
    for (std::size_t i = 5; i < 9; ++i)
        file[frame + i] = at(0xFD);
    EXPECT_EQ(openBytes(file).error().status, Gdiplus::OutOfMemory);
}

TEST(JpegDecoder, ASizeThatTheBytesCannotHoldIsRefusedBeforeDecoding) {
    Bytes file = plain(8, 8, {1, 2, 3}).progressive().build();
    const std::size_t frame = placeOf(file, 0xC2);
    file[frame + 5] = file[frame + 7] = at(0x40);
    EXPECT_EQ(openBytes(file).error().status, Gdiplus::Aborted);
}

TEST(JpegDecoder, NoiseBehindTheSignatureIsDamage) {
    Bytes file(200, at(0x11));
    constexpr std::array<int, 6> start = {0xFF, 0xD8, 0xFF, 0xC0, 0, 3};
    std::transform(start.begin(), start.end(), file.begin(), at);
    EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
}

TEST(JpegDecoder, TwoComponentsAreRefused) {
    Bytes file = plain(8, 8, {1}).grey().build();
    const std::size_t frame = placeOf(file, 0xC0);
    file[frame + 3] = at(14);
    file[frame + 9] = at(2);
    const Bytes component = {at(2), at(0x11), at(0)};
    file.insert(file.begin() + static_cast<std::ptrdiff_t>(frame) + 13, component.begin(), component.end());
    EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
}

TEST(JpegDecoder, AFileOfThousandsOfScansIsRefused) {
    const Bytes once = plain(8, 8, {9}).grey().progressive().build();
    // The last scan again and again: it refines one bit of the frequencies.
    const std::array<std::byte, 2> startOfScan = {at(0xFF), at(0xDA)};
    const auto last = std::find_end(once.begin(), once.end(), startOfScan.begin(), startOfScan.end());
    const auto end = once.end() - 2;
    Bytes file(once.begin(), end);
    for (int i = 0; i < 5000; ++i)
        file.insert(file.end(), last, end);
    file.insert(file.end(), end, once.end());
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder);
    const auto rows = decodeRows(**decoder);
    ASSERT_FALSE(rows);
    EXPECT_EQ(rows.error().status, Gdiplus::GenericError);
    EXPECT_NE(rows.error().message.find("scans"), std::string::npos);
}

TEST(JpegDecoder, OnePictureDecodesOnManyThreadsAtOnce) {
    const auto decoder = openBytes(redThenBlue(200, 150).progressive().build());
    ASSERT_TRUE(decoder);
    EXPECT_TRUE(decodesAlikeOnManyThreads(**decoder, 2));
}

} // namespace GdiplusBackend
