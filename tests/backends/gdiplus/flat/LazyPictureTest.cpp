#include "backends/gdiplus/codecs/GifBuilder.h"
#include "backends/gdiplus/codecs/JpegBuilder.h"
#include "backends/gdiplus/codecs/PngBuilder.h"
#include "backends/gdiplus/codecs/TiffBuilder.h"
#include "backends/gdiplus/color/IccProfiles.h"
#include "backends/gdiplus/flat/PictureFiles.h"

#include <array>
#include <cmath>
#include <functional>
#include <thread>

using namespace Gdiplus;
using namespace GdiplusBackend;

namespace {

using LazyPicture = PictureFiles;
using Samples = std::array<int, 4>;

constexpr int width = 160;
constexpr int height = 120;

constexpr InterpolationMode modes[] = {InterpolationModeBilinear, InterpolationModeHighQualityBicubic,
                                       InterpolationModeNearestNeighbor};

constexpr RotateFlipType turns[] = {RotateNoneFlipNone, Rotate90FlipNone, Rotate180FlipNone,
                                    Rotate270FlipNone,  RotateNoneFlipX,  Rotate90FlipX,
                                    Rotate180FlipX,     Rotate270FlipX};

/// Smooth, and different in every corner.
Samples shades(int x, int y) {
    return {x * 255 / (width - 1), y * 255 / (height - 1),
            static_cast<int>(std::lround(127.5 + 100 * std::sin((x + y) * 0.08))), 60 + (x + y) * 190 / 278};
}

Bytes shadesPng() {
    return PngBuilder(width, height, {6, 8}, shades).build();
}

Bytes shadesJpeg() {
    return JpegBuilder(width, height, shades).build();
}

Bytes shadesGif() {
    GifBuilder gif(width, height, gifColours(256));
    gif.frame({.width = width, .height = height, .index = [](int x, int y) { return (x + y) * 255 / 278; }});
    return gif.build();
}

std::vector<Bytes> everyKind() {
    const auto sample = [](int x, int y, int channel) {
        return shades(x, y)[static_cast<std::size_t>(channel)];
    };
    return {shadesPng(),
            shadesJpeg(),
            JpegBuilder(width, height, shades).grey().build(),
            JpegBuilder(width, height, shades).cmyk().build(),
            shadesGif(),
            PngBuilder(width, height, {0, 1},
                       [](int x, int) {
                           return Samples{x < 80 ? 1 : 0, 0, 0, 0};
                       })
                .build(),
            buildTiff({.width = width, .height = height, .sample = sample})};
}

} // namespace

TEST_F(LazyPicture, TurnedBeforeDecodingEqualsTurnedAfter) {
    for (const Bytes& file : everyKind())
        for (const RotateFlipType turn : turns) {
            const auto before = open(file);
            ASSERT_EQ(before->RotateFlip(turn), Ok);
            const auto after = openDecoded(file);
            ASSERT_EQ(after->RotateFlip(turn), Ok);
            EXPECT_EQ(before->GetWidth(), after->GetWidth());
            EXPECT_EQ(before->GetPixelFormat(), after->GetPixelFormat());
            ASSERT_EQ(pixelsOf(*before), pixelsOf(*after)) << "turn " << turn;
        }
}

TEST_F(LazyPicture, TurnedSeveralTimesBeforeDecodingEqualsTheSameTurnsAfter) {
    for (const RotateFlipType first : turns)
        for (const RotateFlipType second : turns) {
            const auto before = open(shadesGif());
            before->RotateFlip(first);
            before->RotateFlip(second);
            const auto after = openDecoded(shadesGif());
            after->RotateFlip(first);
            after->RotateFlip(second);
            ASSERT_EQ(pixelsOf(*before), pixelsOf(*after)) << first << " then " << second;
        }
}

TEST_F(LazyPicture, DrawnReducedAndTurnedEqualsTurnedAfterDecodingWithinAFewLevels) {
    for (const Bytes& file : {shadesPng(), shadesJpeg()})
        for (const RotateFlipType turn : turns) {
            const auto before = open(file);
            ASSERT_EQ(before->RotateFlip(turn), Ok);
            const auto after = openDecoded(file);
            ASSERT_EQ(after->RotateFlip(turn), Ok);
            const int drawnWidth = static_cast<int>(before->GetWidth()) / 8;
            const int drawnHeight = static_cast<int>(before->GetHeight()) / 8;
            EXPECT_LE(largestDifference(drawn(*before, drawnWidth, drawnHeight),
                                        drawn(*after, drawnWidth, drawnHeight)),
                      3)
                << "turn " << turn;
        }
}

TEST_F(LazyPicture, DrawnFromTheFileEqualsDrawnFromMemoryWithinAFewLevels) {
    for (const Bytes& file : everyKind())
        for (const InterpolationMode mode : modes)
            for (const auto& [toWidth, toHeight] : {std::pair(20, 15), std::pair(53, 31), std::pair(7, 90),
                                                    std::pair(80, 60), std::pair(200, 150)}) {
                const auto encoded = open(file);
                const auto decoded = openDecoded(file);
                // The one sharp edge that a picture here has may fall on either side of a sample.
                const int tolerance = decoded->GetPixelFormat() == PixelFormat1bppIndexed ? 12 : 4;
                EXPECT_LE(largestDifference(drawn(*encoded, toWidth, toHeight, mode),
                                            drawn(*decoded, toWidth, toHeight, mode)),
                          tolerance)
                    << std::hex << decoded->GetPixelFormat() << std::dec << ' ' << toWidth << 'x' << toHeight
                    << " mode " << mode;
            }
}

TEST_F(LazyPicture, DrawnAtItsOwnSizeIsAnExactCopyInEveryMode) {
    for (const Bytes& file : everyKind())
        for (const InterpolationMode mode : modes)
            EXPECT_EQ(drawn(*open(file), width, height, mode),
                      drawn(*openDecoded(file), width, height, mode));
}

TEST_F(LazyPicture, DrawnTwiceShowsTheSameBothTimes) {
    for (const Bytes& file : everyKind()) {
        const auto bitmap = open(file);
        const ArgbPixels first = drawn(*bitmap, 40, 30);
        const ArgbPixels second = drawn(*bitmap, 40, 30);
        EXPECT_LE(largestDifference(first, second), 4) << std::hex << bitmap->GetPixelFormat();
        EXPECT_EQ(second, drawn(*bitmap, 40, 30));
    }
}

TEST_F(LazyPicture, OfManagedInksIsDrawnTwiceTheSame) {
    const auto half = [](int, int) { return Samples{255, 255, 255, 127}; }; // of black alone
    const auto bitmap =
        open(JpegBuilder(32, 32, half).cmyk().iccProfile(blackOnlyCmykProfile()).build(), TRUE);
    EXPECT_EQ(bitmap->GetPixelFormat(), PixelFormat24bppRGB) << "they are inks no more";
    for (int time = 0; time < 3; ++time)
        // Lightness 50 is 119 in sRGB (ISO/CIE 11664-4).
        EXPECT_LE(largestDifference(drawn(*bitmap, 4, 4), ArgbPixels(16, 0xFF777777U)), 2) << time;
}

TEST_F(LazyPicture, OfAProfileIsManagedOnlyForWhoAsks) {
    const auto gray = [](int, int) { return Samples{128, 128, 128, 0}; };
    const Bytes file = JpegBuilder(32, 32, gray).iccProfile(rgbProfile(1)).build();
    const auto managed = open(file, TRUE);
    const auto plain = open(file);
    // Half of the light is 188 in sRGB (IEC 61966-2-1).
    EXPECT_LE(largestDifference(drawn(*managed, 4, 4), ArgbPixels(16, 0xFFBCBCBCU)), 1);
    EXPECT_LE(largestDifference(drawn(*plain, 4, 4), ArgbPixels(16, 0xFF808080U)), 1);
    EXPECT_LE(largestDifference(pixelsOf(*managed), ArgbPixels(32 * 32, 0xFFBCBCBCU)), 1);
}

TEST_F(LazyPicture, IsValidAfterItWasDrawn) {
    const auto bitmap = open(shadesPng());
    ASSERT_FALSE(drawn(*bitmap, 10, 10).empty());
    EXPECT_EQ(bitmap->ForceValidation(), Ok);
}

TEST_F(LazyPicture, KeepsItsAlphaWhenItIsDrawnReduced) {
    const auto halfClear = PngBuilder(64, 64, {6, 8}, [](int x, int) {
        return x % 2 == 0 ? Samples{255, 0, 0, 255} : Samples{0, 255, 0, 0};
    });
    for (const ARGB pixel : drawn(*open(halfClear.build()), 8, 8)) {
        EXPECT_NEAR(pixel >> 24, 128, 1);
        EXPECT_EQ(pixel >> 16 & 255, pixel >> 24) << "the colour of clear pixels does not bleed in";
        EXPECT_EQ(pixel >> 8 & 255, 0U);
    }
}

TEST_F(LazyPicture, HasClonesThatAreIndependent) {
    const auto bitmap = open(shadesPng());
    const std::unique_ptr<Bitmap> clone(bitmap->Clone(0, 0, width, height, PixelFormat32bppARGB));
    const std::unique_ptr<Bitmap> turned(bitmap->Clone(0, 0, width, height, PixelFormat32bppARGB));
    ASSERT_TRUE(clone && turned);
    turned->RotateFlip(Rotate90FlipNone);
    bitmap->SetPixel(3, 3, Color(0xFF123456U));
    clone->SetPixel(4, 4, Color(0xFF654321U));
    const ArgbPixels untouched = pixelsOf(*openDecoded(shadesPng()));
    const auto at = [&](int x, int y) { return untouched[static_cast<std::size_t>(y * width + x)]; };
    EXPECT_EQ(bitmap->GetWidth(), static_cast<UINT>(width));
    EXPECT_EQ(TestSupport::pixelOf(*clone, 3, 3), at(3, 3));
    EXPECT_EQ(TestSupport::pixelOf(*bitmap, 4, 4), at(4, 4));
    EXPECT_EQ(TestSupport::pixelOf(*turned, height - 1 - 3, 3), at(3, 3));
}

TEST_F(LazyPicture, HasClonesThatOutliveIt) {
    auto bitmap = open(shadesPng());
    const std::unique_ptr<Bitmap> clone(bitmap->Clone(0, 0, width, height, PixelFormat32bppARGB));
    bitmap.reset();
    EXPECT_EQ(pixelsOf(*clone), pixelsOf(*openDecoded(shadesPng())));
}

TEST_F(LazyPicture, LosesItsAlphaInA24BitCloneAndInWhatIsMadeOfThat) {
    for (const bool decodedFirst : {false, true}) {
        const auto bitmap = decodedFirst ? openDecoded(shadesPng()) : open(shadesPng());
        const std::unique_ptr<Bitmap> rgb(bitmap->Clone(0, 0, width, height, PixelFormat24bppRGB));
        ASSERT_TRUE(rgb);
        const std::unique_ptr<Bitmap> argb(rgb->Clone(0, 0, width, height, PixelFormat32bppARGB));
        ASSERT_TRUE(argb);
        for (Bitmap* clone : {rgb.get(), argb.get()})
            for (const ARGB pixel : drawn(*clone, 20, 15))
                ASSERT_EQ(pixel >> 24, 255U) << "decoded first: " << decodedFirst;
        for (const ARGB pixel : pixelsOf(*argb))
            ASSERT_EQ(pixel >> 24, 255U) << "decoded first: " << decodedFirst;
    }
}

TEST_F(LazyPicture, HasClonesOfFewerColoursThatAreDrawnWithFewerColours) {
    const auto bitmap = open(PngBuilder(32, 32, {2, 8}, [](int, int) {
                                 return Samples{13, 13, 13, 0};
                             }).build());
    const std::unique_ptr<Bitmap> coarse(bitmap->Clone(0, 0, 32, 32, PixelFormat16bppRGB555));
    ASSERT_TRUE(coarse);
    EXPECT_EQ(drawn(*coarse, 8, 8), ArgbPixels(64, 0xFF080808U)) << "13 is 1 of 31, and that is 8 of 255";
}

TEST_F(LazyPicture, IsOpenedAndDrawnOnManyThreadsAtOnce) {
    std::vector<std::wstring> paths;
    std::vector<ArgbPixels> expected;
    for (const Bytes& file : everyKind()) {
        paths.push_back(write("file-" + std::to_string(paths.size()), file));
        expected.push_back(drawn(*open(file), 20, 15));
    }
    std::array<std::size_t, 8> alike = {};
    {
        std::vector<std::jthread> threads;
        for (std::size_t& count : alike)
            threads.emplace_back([&count, &paths, &expected] {
                for (std::size_t i = 0; i < paths.size(); ++i) {
                    Bitmap bitmap(paths[i].c_str());
                    count += drawn(bitmap, 20, 15) == expected[i] ? 1U : 0U;
                }
            });
    }
    for (const std::size_t count : alike)
        EXPECT_EQ(count, paths.size());
}

TEST_F(LazyPicture, HasClonesThatCanBeDrawnOnTwoThreads) {
    for (const Bytes& file : everyKind()) {
        const auto bitmap = open(file);
        const std::unique_ptr<Bitmap> clone(bitmap->Clone(0, 0, width, height, bitmap->GetPixelFormat()));
        ASSERT_TRUE(clone);
        const ArgbPixels expected = drawn(*open(file), 20, 15);
        std::array<ArgbPixels, 2> results;
        {
            const std::jthread one([&results, &bitmap] { results[0] = drawn(*bitmap, 20, 15); });
            const std::jthread other([&results, &clone] { results[1] = drawn(*clone, 20, 15); });
        }
        EXPECT_EQ(results[0], expected);
        EXPECT_EQ(results[1], expected);
    }
}
