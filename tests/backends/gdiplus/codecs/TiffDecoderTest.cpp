#include "backends/gdiplus/codecs/DecodedPicture.h"
#include "backends/gdiplus/codecs/TiffBuilder.h"

#include "gdiplus/properties/PropertyItems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace GdiplusBackend {

namespace {

int coloured(int x, int y, int sample) {
    return (40 * sample + 7 * x + 13 * y) % 256;
}

std::uint32_t colouredPixel(int x, int y) {
    return argbOf(255, coloured(x, y, 0), coloured(x, y, 1), coloured(x, y, 2));
}

TiffSpec rgbTiff() {
    return {.width = 21, .height = 18, .sample = coloured};
}

void expectColoured(const DecodedPicture& tiff) {
    ASSERT_EQ(tiff.facts.pixelFormat(), PixelFormat24bppRGB);
    ASSERT_EQ(tiff.rows.height(), tiff.facts.height);
    for (int y = 0; y < tiff.facts.height; ++y)
        for (int x = 0; x < tiff.facts.width; ++x)
            ASSERT_EQ(tiff.rows.argb(x, y), colouredPixel(x, y)) << x << "," << y;
}

bool isBlackDot(int x, int y) {
    return (x * 5 + y * 3) % 7 < 3;
}

/// A bilevel picture whose dots are `black` where the samples are `dot`.
TiffSpec bilevel(int compression, int photometric) {
    const int dot = photometric == PHOTOMETRIC_MINISWHITE ? 1 : 0;
    return {.width = 37,
            .height = 11,
            .bits = 1,
            .samples = 1,
            .photometric = photometric,
            .compression = compression,
            .sample = [dot](int x, int y, int) { return isBlackDot(x, y) ? dot : 1 - dot; }};
}

void expectDots(const DecodedPicture& tiff) {
    for (int y = 0; y < 11; ++y)
        for (int x = 0; x < 37; ++x)
            ASSERT_EQ(tiff.rows.argb(x, y), isBlackDot(x, y) ? 0xFF000000U : 0xFFFFFFFFU) << x << "," << y;
}

TiffSpec oneAlphaPixel(int kind) {
    TiffSpec spec = {.samples = 4, .extra = {kind}};
    spec.sample = [](int, int, int sample) {
        return std::array{100, 50, 25, 128}.at(static_cast<std::size_t>(sample));
    };
    return spec;
}

/// An ICC header that names its colour space, and nothing more.
Bytes profileOf(std::string_view colourSpace) {
    Bytes profile(132);
    std::memcpy(profile.data() + 16, colourSpace.data(), colourSpace.size());
    return profile;
}

} // namespace

class TiffRgbKinds : public testing::TestWithParam<int> {};

TEST_P(TiffRgbKinds, KeepEveryPixelInStrips) {
    TiffSpec spec = rgbTiff();
    spec.compression = GetParam();
    expectColoured(decodedPicture(buildTiff(spec)));
}

TEST_P(TiffRgbKinds, KeepEveryPixelInTiles) {
    TiffSpec spec = rgbTiff();
    spec.compression = GetParam();
    spec.tileSide = 16;
    expectColoured(decodedPicture(buildTiff(spec)));
}

TEST_P(TiffRgbKinds, KeepEveryPixelInSeparatePlanes) {
    TiffSpec spec = rgbTiff();
    spec.compression = GetParam();
    spec.planes = PLANARCONFIG_SEPARATE;
    expectColoured(decodedPicture(buildTiff(spec)));
}

TEST_P(TiffRgbKinds, KeepEveryPixelInTilesOfSeparatePlanes) {
    TiffSpec spec = rgbTiff();
    spec.compression = GetParam();
    spec.planes = PLANARCONFIG_SEPARATE;
    spec.tileSide = 16;
    expectColoured(decodedPicture(buildTiff(spec)));
}

INSTANTIATE_TEST_SUITE_P(Compressions, TiffRgbKinds,
                         testing::Values(COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE,
                                         COMPRESSION_PACKBITS));

TEST(TiffDecoder, AnRgbPictureIsA24BitOne) {
    const auto facts = decodedPicture(buildTiff(rgbTiff())).facts;
    EXPECT_EQ(facts.width, 21);
    EXPECT_EQ(facts.height, 18);
    EXPECT_EQ(facts.layout, RowLayout::Bgr24);
    EXPECT_EQ(facts.rawFormat, Gdiplus::ImageFormatTIFF);
    EXPECT_EQ(facts.flags & Gdiplus::ImageFlagsHasAlpha, 0U);
    EXPECT_EQ(facts.flags & Gdiplus::ImageFlagsHasRealDPI, 0U);
}

TEST(TiffDecoder, BothByteOrdersAndBigTiffAreRead) {
    for (const char* mode : {"wl", "wb", "wl8", "wb8"}) {
        SCOPED_TRACE(mode);
        TiffSpec spec = rgbTiff();
        spec.mode = mode;
        expectColoured(decodedPicture(buildTiff(spec)));
    }
}

TEST(TiffDecoder, OneStripForTheWholePictureIsRead) {
    TiffSpec spec = rgbTiff();
    spec.rowsPerStrip = spec.height;
    spec.compression = COMPRESSION_LZW;
    expectColoured(decodedPicture(buildTiff(spec)));
}

TEST(TiffDecoder, SixteenBitsAreRoundedToEight) {
    for (const char* mode : {"wl", "wb"}) {
        TiffSpec spec = {.width = 2, .bits = 16, .mode = mode};
        spec.sample = [](int x, int, int sample) { return x == 0 ? 65535 - sample * 257 : 128 + sample; };
        const auto tiff = decodedPicture(buildTiff(spec));
        EXPECT_EQ(tiff.rows.argb(0, 0), argbOf(255, 255, 254, 253));
        EXPECT_EQ(tiff.rows.argb(1, 0), argbOf(255, 0, 1, 1));
    }
}

TEST(TiffDecoder, TwelveBitsAreScaledToEight) {
    TiffSpec spec = {.width = 3, .bits = 12, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK};
    spec.sample = [](int x, int, int) { return std::array{0, 2048, 4095}.at(static_cast<std::size_t>(x)); };
    const auto tiff = decodedPicture(buildTiff(spec));
    EXPECT_EQ(tiff.rows.argb(0, 0), argbOf(255, 0, 0, 0));
    EXPECT_EQ(tiff.rows.argb(1, 0), argbOf(255, 128, 128, 128));
    EXPECT_EQ(tiff.rows.argb(2, 0), argbOf(255, 255, 255, 255));
}

TEST(TiffDecoder, GreyLevelsKeepTheirValues) {
    for (const int photometric : {PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE}) {
        TiffSpec spec = {.width = 256, .samples = 1, .photometric = photometric};
        spec.sample = [](int x, int, int) { return x; };
        const auto tiff = decodedPicture(buildTiff(spec));
        EXPECT_NE(tiff.facts.flags & Gdiplus::ImageFlagsColorSpaceGRAY, 0U);
        for (int x = 0; x < 256; ++x) {
            const int grey = photometric == PHOTOMETRIC_MINISWHITE ? 255 - x : x;
            ASSERT_EQ(tiff.rows.argb(x, 0), argbOf(255, grey, grey, grey));
        }
    }
}

TEST(TiffDecoder, FourBitGreyIsSpreadOverTheWholeRange) {
    TiffSpec spec = {.width = 16, .bits = 4, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK};
    spec.sample = [](int x, int, int) { return x; };
    const auto tiff = decodedPicture(buildTiff(spec));
    for (int x = 0; x < 16; ++x)
        EXPECT_EQ(tiff.rows.argb(x, 0), argbOf(255, x * 17, x * 17, x * 17));
}

TEST(TiffDecoder, BilevelPicturesOfEveryCompressionKeepTheirDots) {
    for (const int compression :
         {COMPRESSION_NONE, COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4})
        for (const int photometric : {PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE}) {
            SCOPED_TRACE(testing::Message() << compression << " " << photometric);
            expectDots(decodedPicture(buildTiff(bilevel(compression, photometric))));
        }
}

TEST(TiffDecoder, PaletteColoursComeFromTheHighBytes) {
    TiffSpec spec = {.width = 4, .bits = 2, .samples = 1, .photometric = PHOTOMETRIC_PALETTE};
    spec.palette = {0x1122, 0x3344, 0xFF00, 0, 0x5566, 0x7788, 0, 0xFFFF, 0x99AA, 0xBBCC, 0, 0};
    spec.sample = [](int x, int, int) { return x; };
    const auto tiff = decodedPicture(buildTiff(spec));
    EXPECT_EQ(tiff.rows.argb(0, 0), argbOf(255, 0x11, 0x55, 0x99));
    EXPECT_EQ(tiff.rows.argb(1, 0), argbOf(255, 0x33, 0x77, 0xBB));
    EXPECT_EQ(tiff.rows.argb(2, 0), argbOf(255, 0xFF, 0, 0));
    EXPECT_EQ(tiff.rows.argb(3, 0), argbOf(255, 0, 0xFF, 0));
}

TEST(TiffDecoder, APaletteOfEightBitValuesIsTakenAsItIs) {
    TiffSpec spec = {.bits = 1, .samples = 1, .photometric = PHOTOMETRIC_PALETTE};
    spec.palette = {10, 0, 20, 0, 30, 0};
    EXPECT_EQ(decodedPicture(buildTiff(spec)).rows.argb(0, 0), argbOf(255, 10, 20, 30));
}

TEST(TiffDecoder, InksAreMixedWithBlack) {
    TiffSpec spec = {.width = 3, .samples = 4, .photometric = PHOTOMETRIC_SEPARATED};
    spec.sample = [](int x, int, int sample) {
        constexpr std::array<std::array<int, 4>, 3> inks = {{{0, 0, 0, 0}, {255, 0, 0, 0}, {0, 0, 102, 51}}};
        return inks.at(static_cast<std::size_t>(x)).at(static_cast<std::size_t>(sample));
    };
    const auto tiff = decodedPicture(buildTiff(spec));
    EXPECT_EQ(tiff.rows.argb(0, 0), argbOf(255, 255, 255, 255));
    EXPECT_EQ(tiff.rows.argb(1, 0), argbOf(255, 0, 255, 255));
    EXPECT_EQ(tiff.rows.argb(2, 0), argbOf(255, 204, 204, 122));
}

TEST(TiffDecoder, StraightAlphaIsKept) {
    const auto tiff = decodedPicture(buildTiff(oneAlphaPixel(EXTRASAMPLE_UNASSALPHA)));
    EXPECT_EQ(tiff.facts.pixelFormat(), PixelFormat32bppARGB);
    EXPECT_NE(tiff.facts.flags & Gdiplus::ImageFlagsHasAlpha, 0U);
    EXPECT_EQ(tiff.rows.argb(0, 0), argbOf(128, 100, 50, 25));
}

TEST(TiffDecoder, PremultipliedAlphaIsDividedOut) {
    const auto tiff = decodedPicture(buildTiff(oneAlphaPixel(EXTRASAMPLE_ASSOCALPHA)));
    EXPECT_EQ(tiff.rows.argb(0, 0), argbOf(128, 199, 100, 50));
}

TEST(TiffDecoder, PremultipliedAlphaOfSeparatePlanesIsDividedOut) {
    TiffSpec spec = oneAlphaPixel(EXTRASAMPLE_ASSOCALPHA);
    spec.planes = PLANARCONFIG_SEPARATE;
    EXPECT_EQ(decodedPicture(buildTiff(spec)).rows.argb(0, 0), argbOf(128, 199, 100, 50));
}

TEST(TiffDecoder, StraightAlphaOfSeparatePlanesIsKept) {
    TiffSpec spec = oneAlphaPixel(EXTRASAMPLE_UNASSALPHA);
    spec.planes = PLANARCONFIG_SEPARATE;
    EXPECT_EQ(decodedPicture(buildTiff(spec)).rows.argb(0, 0), argbOf(128, 100, 50, 25));
}

TEST(TiffDecoder, SixteenBitsOfSeparatePlanesAreRoundedToEight) {
    TiffSpec spec = {.bits = 16, .planes = PLANARCONFIG_SEPARATE, .mode = "wb"};
    spec.sample = [](int, int, int sample) { return (sample + 1) * 257 * 50; };
    EXPECT_EQ(decodedPicture(buildTiff(spec)).rows.argb(0, 0), argbOf(255, 50, 100, 150));
}

TEST(TiffDecoder, GreyWithStraightAlphaIsArgb) {
    TiffSpec spec = {.samples = 2, .photometric = PHOTOMETRIC_MINISBLACK, .extra = {EXTRASAMPLE_UNASSALPHA}};
    spec.sample = [](int, int, int sample) { return sample == 0 ? 77 : 9; };
    EXPECT_EQ(decodedPicture(buildTiff(spec)).rows.argb(0, 0), argbOf(9, 77, 77, 77));
}

TEST(TiffDecoder, AFourthSampleWithoutMeaningIsIgnored) {
    const auto tiff = decodedPicture(buildTiff(oneAlphaPixel(EXTRASAMPLE_UNSPECIFIED)));
    EXPECT_EQ(tiff.facts.pixelFormat(), PixelFormat24bppRGB);
    EXPECT_EQ(tiff.rows.argb(0, 0), argbOf(255, 100, 50, 25));
}

TEST(TiffDecoder, AJpegInsideComesOutNearItsColours) {
    TiffSpec spec = {.width = 32,
                     .height = 32,
                     .photometric = PHOTOMETRIC_YCBCR,
                     .compression = COMPRESSION_JPEG,
                     .rowsPerStrip = 16};
    spec.sample = [](int, int, int sample) {
        return std::array{200, 60, 30}.at(static_cast<std::size_t>(sample));
    };
    const auto tiff = decodedPicture(buildTiff(spec));
    EXPECT_NEAR(tiff.rows.sample(17, 20, 2), 200, 4);
    EXPECT_NEAR(tiff.rows.sample(17, 20, 1), 60, 4);
    EXPECT_NEAR(tiff.rows.sample(17, 20, 0), 30, 4);
}

TEST(TiffDecoder, UncompressedYCbCrIsConverted) {
    TiffSpec spec = {.width = 8, .height = 8, .photometric = PHOTOMETRIC_YCBCR, .rowsPerStrip = 8};
    spec.sample = [](int, int, int sample) { return sample == 0 ? 120 : 128; };
    const Bytes file = buildTiff(spec);
    // Without subsampling the samples of a pixel lie together; the tag's default would be 2 by 2.
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder) << decoder.error().message;
    const auto rows = decodeRows(**decoder);
    ASSERT_TRUE(rows) << rows.error().message;
    EXPECT_NEAR(rows->sample(3, 3, 0), 120, 1);
    EXPECT_NEAR(rows->sample(3, 3, 1), 120, 1);
    EXPECT_NEAR(rows->sample(3, 3, 2), 120, 1);
}

class TiffOrientations : public testing::TestWithParam<int> {};

TEST_P(TiffOrientations, AreToldButNotApplied) {
    for (const int planes : {PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE}) {
        TiffSpec spec = rgbTiff();
        spec.orientation = GetParam();
        spec.planes = planes;
        const auto tiff = decodedPicture(buildTiff(spec));
        expectColoured(tiff);
        const auto properties = propertiesFromExif(tiff.facts.exif);
        ASSERT_EQ(properties.size(), 1U);
        EXPECT_EQ(properties[0].id, PropertyTagOrientation);
        EXPECT_EQ(properties[0].type, PropertyTagTypeShort);
        std::uint16_t value = 0;
        ASSERT_EQ(properties[0].value.size(), sizeof value);
        std::memcpy(&value, properties[0].value.data(), sizeof value);
        EXPECT_EQ(value, GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(All, TiffOrientations, testing::Range(1, 9));

TEST(TiffDecoder, WithoutTheTagThereIsNoOrientation) {
    EXPECT_TRUE(decodedPicture(buildTiff(rgbTiff())).facts.exif.empty());
}

TEST(TiffDecoder, ResolutionIsGivenInDotsPerInch) {
    TiffSpec spec = rgbTiff();
    spec.resolutionUnit = RESUNIT_INCH;
    spec.dpi = 150;
    auto facts = decodedPicture(buildTiff(spec)).facts;
    EXPECT_FLOAT_EQ(facts.dpiX, 150);
    EXPECT_FLOAT_EQ(facts.dpiY, 300);
    EXPECT_NE(facts.flags & Gdiplus::ImageFlagsHasRealDPI, 0U);
    spec.resolutionUnit = RESUNIT_CENTIMETER;
    spec.dpi = 100;
    EXPECT_FLOAT_EQ(decodedPicture(buildTiff(spec)).facts.dpiX, 254);
}

TEST(TiffDecoder, AnRgbProfileIsGivenForRgbPicturesOnly) {
    TiffSpec spec = rgbTiff();
    spec.iccProfile = profileOf("RGB ");
    EXPECT_EQ(decodedPicture(buildTiff(spec)).facts.iccProfile, spec.iccProfile);
    spec.iccProfile = profileOf("CMYK");
    EXPECT_TRUE(decodedPicture(buildTiff(spec)).facts.iccProfile.empty());
}

TEST(TiffDecoder, EveryCutIsAborted) {
    for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        TiffSpec spec = rgbTiff();
        spec.compression = compression;
        spec.resolutionUnit = RESUNIT_INCH;
        spec.dpi = 72;
        const Bytes file = buildTiff(spec);
        for (std::size_t length = 4; length < file.size(); ++length)
            ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << compression << " " << length;
    }
}

TEST(TiffDecoder, EveryCutOfOtherKindsIsRefused) {
    TiffSpec planes = rgbTiff();
    planes.planes = PLANARCONFIG_SEPARATE;
    TiffSpec tiles = rgbTiff();
    tiles.tileSide = 16;
    for (const TiffSpec& spec : {planes, tiles, bilevel(COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE)}) {
        const Bytes file = buildTiff(spec);
        for (std::size_t length = 4; length < file.size(); ++length)
            ASSERT_EQ(statusOf(cutAt(file, length)), Gdiplus::Aborted) << length;
    }
}

TEST(TiffDecoder, LyingDimensionsAreOverTheBudget) {
    TiffSpec spec = {.width = 100'001, .height = 1, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK};
    Bytes file = buildTiff(spec);
    // The directory's second entry is the height.
    std::uint32_t directory = 0;
    std::memcpy(&directory, file.data() + 4, sizeof directory);
    const std::size_t heightValue = directory + 2 + 12 + 8;
    const std::uint32_t height = 100'000;
    const std::uint16_t asLong = 4;
    std::memcpy(file.data() + heightValue - 6, &asLong, sizeof asLong);
    std::memcpy(file.data() + heightValue, &height, sizeof height);
    const auto decoder = openBytes(file);
    ASSERT_FALSE(decoder);
    EXPECT_EQ(decoder.error().status, Gdiplus::OutOfMemory);
}

TEST(TiffDecoder, FloatingPointSamplesAreNoKnownKind) {
    TiffSpec spec = {.bits = 32, .samples = 1, .photometric = PHOTOMETRIC_MINISBLACK};
    spec.sampleFormat = SAMPLEFORMAT_IEEEFP;
    EXPECT_EQ(statusOf(buildTiff(spec)), Gdiplus::UnknownImageFormat);
}

TEST(TiffDecoder, ADirectoryThatNamesItselfAsTheNextIsRead) {
    Bytes file = buildTiff(rgbTiff());
    std::uint32_t directory = 0;
    std::uint16_t entries = 0;
    std::memcpy(&directory, file.data() + 4, sizeof directory);
    std::memcpy(&entries, file.data() + directory, sizeof entries);
    std::memcpy(file.data() + directory + 2 + entries * std::size_t{12}, &directory, sizeof directory);
    EXPECT_EQ(statusOf(file), Gdiplus::Ok);
}

TEST(TiffDecoder, NoiseAfterTheSignatureIsRefusedInSilence) {
    testing::internal::CaptureStderr();
    for (unsigned seed = 1; seed < 50; ++seed) {
        Bytes file = {std::byte{'I'}, std::byte{'I'}, std::byte{42}, std::byte{0}, std::byte{8}};
        file.resize(8);
        unsigned state = seed;
        while (file.size() < 600)
            file.push_back(static_cast<std::byte>((state = state * 1664525U + 1013904223U) >> 24U));
        EXPECT_NE(statusOf(file), Gdiplus::Ok);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(TiffDecoder, DamagedPixelsAreRefusedInSilence) {
    testing::internal::CaptureStderr();
    for (const int compression : {COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        TiffSpec spec = rgbTiff();
        spec.compression = compression;
        Bytes file = buildTiff(spec);
        std::fill_n(file.begin() + 8, 40, std::byte{0xFF});
        EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(TiffDecoder, ThreadsMayDecodeOnePictureAtOnce) {
    TiffSpec spec = rgbTiff();
    spec.compression = COMPRESSION_LZW;
    EXPECT_EQ(threadsThatAgree(buildTiff(spec)), 4);
}

} // namespace GdiplusBackend
