#include "production/GdiplusBitmapThumbnailingHelper.h"

#include "support/GdiplusUser.h"
#include "support/JpegFile.h"
#include "support/PngFile.h"
#include "support/TempFolder.h"

#include <sys/stat.h>

#include <gtest/gtest.h>
#include <lcms2.h>

#include <array>
#include <cstdlib>
#include <memory>

namespace KestoThumbnailer {

namespace {

using Gdiplus::ARGB;
using TestSupport::JpegFile;
using TestSupport::pixelOf;
using TestSupport::PngFile;
using TestSupport::wideOf;

constexpr int block = 16; // whole blocks of the JPEG transform, so that colours stay flat
constexpr std::array<std::uint32_t, 6> blockColours = {0xFF0000, 0x00FF00, 0x0000FF,
                                                       0xFFFF00, 0x00FFFF, 0xFF00FF};

/// The upright picture that all orientations must end in: 3 by 2 blocks of different colours.
std::uint32_t uprightPixel(int x, int y) {
    const int index = y / block * 3 + x / block;
    return blockColours[static_cast<std::size_t>(index)];
}

/// The picture as a camera stores it under an orientation (CIPA DC-008): row 0 and column 0 of what is stored
/// lie at the sides of the upright picture that the tag names.
JpegFile storedUnder(int orientation) {
    constexpr int width = 3 * block;
    constexpr int height = 2 * block;
    constexpr int right = width - 1;
    constexpr int bottom = height - 1;
    const bool turned = orientation >= 5;
    return {.width = turned ? height : width,
            .height = turned ? width : height,
            .pixelAt =
                [=](int x, int y) {
                    switch (orientation) {
                    case 2: // row 0 at the top, column 0 at the right
                        return uprightPixel(right - x, y);
                    case 3: // bottom, right
                        return uprightPixel(right - x, bottom - y);
                    case 4: // bottom, left
                        return uprightPixel(x, bottom - y);
                    case 5: // left, top
                        return uprightPixel(y, x);
                    case 6: // right, top
                        return uprightPixel(right - y, x);
                    case 7: // right, bottom
                        return uprightPixel(right - y, bottom - x);
                    case 8: // left, bottom
                        return uprightPixel(y, bottom - x);
                    default:
                        return uprightPixel(x, y);
                    }
                },
            .orientation = orientation};
}

/// A profile with the primaries of sRGB and no curve: stored values are proportional to light.
std::string linearProfile() {
    const cmsCIExyY white = {0.3127, 0.3290, 1.0};
    const cmsCIExyYTRIPLE primaries = {{0.64, 0.33, 1.0}, {0.30, 0.60, 1.0}, {0.15, 0.06, 1.0}};
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 1.0);
    cmsToneCurve* const curves[3] = {curve, curve, curve};
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    cmsFreeToneCurve(curve);
    return bytes;
}

void expectNear(ARGB pixel, ARGB expected, int tolerance) {
    for (const int shift : {24, 16, 8, 0})
        EXPECT_NEAR(static_cast<int>(pixel >> shift & 0xFF), static_cast<int>(expected >> shift & 0xFF),
                    tolerance)
            << std::hex << pixel << " for " << expected;
}

class StillImage : public ::testing::Test {
protected:
    static std::unique_ptr<Gdiplus::Bitmap> thumbnailOf(const std::filesystem::path& path, int width,
                                                        int height) {
        return std::unique_ptr<Gdiplus::Bitmap>(
            GdiplusBitmapThumbnailingHelper::GetThumbnailForImage(wideOf(path), width, height));
    }

    template <typename File>
    std::unique_ptr<Gdiplus::Bitmap> thumbnailOf(const File& file, int width, int height) const {
        return thumbnailOf(folder.write("picture", file.bytes()), width, height);
    }

    static PngFile palettePng() {
        return {.width = 40,
                .height = 20,
                .pixelAt = [](int x, int) { return x < 20 ? 0U : 1U; },
                .palette = {0xFF0000, 0x0000FF}};
    }

    /// Incompressible, so that half of the file is half of the picture.
    static std::uint32_t noise(int x, int y) {
        std::uint32_t value = static_cast<std::uint32_t>(x * 7919 + y * 104729 + 1);
        value = (value ^ value >> 15) * 0x2C1B3C6DU;
        return value ^ value >> 12;
    }

    /// Nothing comes of the file, whether the picture would fit or be shrunk.
    void expectNoThumbnail(const std::filesystem::path& path) const {
        EXPECT_EQ(thumbnailOf(path, 32, 32), nullptr);
        EXPECT_EQ(thumbnailOf(path, 4000, 4000), nullptr);
        EXPECT_EQ(thumbnailOf(path, 0, 0), nullptr);
    }

    TestSupport::TempFolder folder;
    TestSupport::GdiplusUser gdiplus;
};

class OrientedImage : public StillImage, public ::testing::WithParamInterface<int> {};

} // namespace

TEST_P(OrientedImage, EndsUprightAtFullSize) {
    const auto thumbnail = thumbnailOf(storedUnder(GetParam()), 100, 100);
    ASSERT_NE(thumbnail, nullptr);
    ASSERT_EQ(thumbnail->GetWidth(), 48U);
    ASSERT_EQ(thumbnail->GetHeight(), 32U);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 48; ++x)
            expectNear(pixelOf(*thumbnail, x, y), 0xFF000000U | uprightPixel(x, y), 3);
}

TEST_P(OrientedImage, EndsUprightWhenShrunk) {
    const auto thumbnail = thumbnailOf(storedUnder(GetParam()), 12, 12);
    ASSERT_NE(thumbnail, nullptr);
    ASSERT_EQ(thumbnail->GetWidth(), 12U);
    ASSERT_EQ(thumbnail->GetHeight(), 8U);
    for (const int y : {1, 6})
        for (const int x : {1, 6, 10})
            expectNear(pixelOf(*thumbnail, x, y), 0xFF000000U | uprightPixel(x * 4 + 2, y * 4 + 2), 48);
}

INSTANTIATE_TEST_SUITE_P(AllOrientations, OrientedImage, ::testing::Range(1, 9));

TEST_F(StillImage, APictureIsTurnedBeforeItsSizeIsComparedWithTheBounds) {
    const auto thumbnail = thumbnailOf(storedUnder(6), 48, 32); // stored as 32 by 48
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->GetWidth(), 48U);
    EXPECT_EQ(thumbnail->GetHeight(), 32U);
}

TEST_F(StillImage, APictureThatFitsIsGivenItself) {
    const auto thumbnail = thumbnailOf(palettePng(), 40, 20);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->GetWidth(), 40U);
    EXPECT_EQ(thumbnail->GetPixelFormat(), PixelFormat8bppIndexed);
    EXPECT_EQ(pixelOf(*thumbnail, 39, 19), 0xFF0000FFU);
}

TEST_F(StillImage, AnIndexedPictureThatIsShrunkBecomes32Bits) {
    const auto thumbnail = thumbnailOf(palettePng(), 10, 10);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(thumbnail->GetWidth(), 10U);
    EXPECT_EQ(thumbnail->GetHeight(), 5U);
    EXPECT_EQ(thumbnail->GetPixelFormat(), PixelFormat32bppARGB);
    EXPECT_EQ(pixelOf(*thumbnail, 1, 2), 0xFFFF0000U);
    EXPECT_EQ(pixelOf(*thumbnail, 8, 2), 0xFF0000FFU);
}

TEST_F(StillImage, BoundsBelowOneGiveACopyOfFullSize) {
    for (const auto& [width, height] : {std::pair{0, 0}, {-5, -5}, {-1, 10}, {10, -1}}) {
        const auto copy = thumbnailOf(palettePng(), width, height);
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->GetWidth(), 40U);
        EXPECT_EQ(copy->GetHeight(), 20U);
        EXPECT_EQ(copy->GetPixelFormat(), PixelFormat32bppARGB); // the picture itself is indexed
        EXPECT_EQ(pixelOf(*copy, 39, 19), 0xFF0000FFU);
    }
}

TEST_F(StillImage, OneBoundOfZeroIsNoBoundInThatDirection) {
    const auto byHeight = thumbnailOf(palettePng(), 0, 10);
    ASSERT_NE(byHeight, nullptr);
    EXPECT_EQ(byHeight->GetWidth(), 20U);
    EXPECT_EQ(byHeight->GetHeight(), 10U);
    const auto byWidth = thumbnailOf(palettePng(), 10, 0);
    ASSERT_NE(byWidth, nullptr);
    EXPECT_EQ(byWidth->GetWidth(), 10U);
    EXPECT_EQ(byWidth->GetHeight(), 5U);
}

TEST_F(StillImage, ATransparentPngStaysTransparent) {
    const PngFile png{
        .width = 40, .height = 40, .pixelAt = [](int x, int) { return x < 20 ? 0x00FF0000U : 0x8000FF00U; }};
    const auto whole = thumbnailOf(png, 40, 40);
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(pixelOf(*whole, 5, 5) >> 24, 0U);
    EXPECT_EQ(pixelOf(*whole, 35, 5), 0x8000FF00U);
    const auto shrunk = thumbnailOf(png, 10, 10);
    ASSERT_NE(shrunk, nullptr);
    EXPECT_EQ(pixelOf(*shrunk, 1, 5), 0U);
    expectNear(pixelOf(*shrunk, 8, 5), 0x8000FF00U, 1);
}

TEST_F(StillImage, TheColourProfileIsHonoured) {
    JpegFile jpeg{.width = 32, .height = 32, .pixelAt = [](int, int) { return 0x808080U; }};
    const auto plain = thumbnailOf(jpeg, 8, 8);
    ASSERT_NE(plain, nullptr);
    expectNear(pixelOf(*plain, 4, 4), 0xFF808080U, 1);
    jpeg.iccProfile = linearProfile();
    const auto managed = thumbnailOf(jpeg, 8, 8);
    ASSERT_NE(managed, nullptr);
    expectNear(pixelOf(*managed, 4, 4), 0xFFBCBCBCU, 2); // half the light is 188 in sRGB (IEC 61966-2-1)
}

TEST_F(StillImage, ACmykJpegBecomes24Bits) {
    const JpegFile jpeg{.width = 32,
                        .height = 32,
                        .colors = TestSupport::JpegColors::Cmyk,
                        .pixelAt = [](int x, int) { return x < 16 ? 0xFFFFFFFFU : 0x00FFFFFFU; }};
    for (const int bound : {32, 16}) {
        const auto thumbnail = thumbnailOf(jpeg, bound, bound);
        ASSERT_NE(thumbnail, nullptr);
        EXPECT_EQ(thumbnail->GetPixelFormat(), PixelFormat24bppRGB);
        expectNear(pixelOf(*thumbnail, 2, 2), 0xFFFFFFFFU, 2);
        const Gdiplus::Color cyan(pixelOf(*thumbnail, bound - 2, 2));
        EXPECT_LT(cyan.GetRed(), 64);
        EXPECT_GT(cyan.GetGreen(), 128);
        EXPECT_GT(cyan.GetBlue(), 192);
    }
}

TEST_F(StillImage, TheContentDecidesTheKindOfPicture) {
    const PngFile png{.width = 4, .height = 4, .pixelAt = [](int, int) { return 0xFF00FF00U; }};
    const auto thumbnail = thumbnailOf(folder.write("really-a-png.jpg", png.bytes()), 8, 8);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_EQ(pixelOf(*thumbnail, 3, 3), 0xFF00FF00U);
}

TEST_F(StillImage, AThumbnailOutlivesItsFile) {
    const auto path = folder.write("gone.png", palettePng().bytes());
    const auto thumbnail = thumbnailOf(path, 100, 100);
    ASSERT_NE(thumbnail, nullptr);
    std::filesystem::resize_file(path, 0);
    std::filesystem::remove(path);
    EXPECT_EQ(pixelOf(*thumbnail, 39, 19), 0xFF0000FFU);
}

TEST_F(StillImage, AMissingFileHasNoThumbnail) {
    expectNoThumbnail(folder / "missing.png");
    expectNoThumbnail(folder / "missing.pdf");
}

TEST_F(StillImage, AnEmptyPathHasNoThumbnail) {
    expectNoThumbnail("");
}

TEST_F(StillImage, AnEmptyFileHasNoThumbnail) {
    expectNoThumbnail(folder.write("empty.png", ""));
}

TEST_F(StillImage, AFileThatIsNoPictureHasNoThumbnail) {
    expectNoThumbnail(folder.write("notes.png", "just some text, and no picture"));
}

TEST_F(StillImage, AFolderHasNoThumbnail) {
    expectNoThumbnail(folder / "");
    std::filesystem::create_directory(folder / "folder.png");
    expectNoThumbnail(folder / "folder.png");
}

TEST_F(StillImage, APipeHasNoThumbnailAndIsNotWaitedFor) {
    for (const char* name : {"pipe.png", "pipe.pdf"}) {
        const std::filesystem::path pipe = folder / name;
        ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        expectNoThumbnail(pipe);
    }
}

TEST_F(StillImage, ATruncatedPngHasNoThumbnail) {
    const PngFile png{
        .width = 64, .height = 64, .pixelAt = [](int x, int y) { return noise(x, y) | 0xFF000000U; }};
    auto bytes = png.bytes();
    bytes.resize(bytes.size() / 2);
    expectNoThumbnail(folder.write("half.png", bytes));
}

TEST_F(StillImage, ATruncatedJpegHasNoThumbnail) {
    for (const int orientation : {0, 6}) {
        const JpegFile jpeg{.width = 64, .height = 64, .pixelAt = noise, .orientation = orientation};
        auto bytes = jpeg.bytes();
        bytes.resize(bytes.size() / 2);
        expectNoThumbnail(folder.write("half.jpg", bytes));
    }
}

TEST_F(StillImage, ATruncatedCmykJpegHasNoThumbnail) {
    const JpegFile jpeg{.width = 64, .height = 64, .colors = TestSupport::JpegColors::Cmyk, .pixelAt = noise};
    auto bytes = jpeg.bytes();
    bytes.resize(bytes.size() / 2);
    expectNoThumbnail(folder.write("half.jpg", bytes));
}

} // namespace KestoThumbnailer
