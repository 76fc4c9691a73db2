#include "gdiplus/color/ColorTransform.h"

#include "backends/gdiplus/color/IccProfiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

using namespace GdiplusBackend;
using Space = ColorTransform::Space;

namespace {

using Bytes = std::vector<std::byte>;

Bytes bytesOf(std::initializer_list<int> values) {
    Bytes bytes;
    for (const int value : values)
        bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

void expectNear(const Bytes& bytes, std::initializer_list<int> expected, int tolerance) {
    ASSERT_EQ(bytes.size(), expected.size());
    std::size_t i = 0;
    for (const int value : expected) {
        EXPECT_NEAR(std::to_integer<int>(bytes[i]), value, tolerance) << "byte " << i;
        ++i;
    }
}

// Half of the light is 188 in sRGB (IEC 61966-2-1).
constexpr int halfLight = 188;

} // namespace

TEST(ColorTransform, IsNoneForAProfileThatChangesNothing) {
    EXPECT_FALSE(ColorTransform::create(srgbProfile(), Space::Rgb));
    EXPECT_FALSE(ColorTransform::create(srgbGrayProfile(), Space::Gray));
}

TEST(ColorTransform, IsNoneForABrokenProfile) {
    const ProfileBytes good = rgbProfile(1);
    EXPECT_FALSE(ColorTransform::create({}, Space::Rgb));
    EXPECT_FALSE(ColorTransform::create(std::span(good).first(60), Space::Rgb));
    EXPECT_FALSE(ColorTransform::create(std::span(good).first(200), Space::Rgb));
    ProfileBytes text(400, std::byte{'x'});
    EXPECT_FALSE(ColorTransform::create(text, Space::Rgb));
}

TEST(ColorTransform, IsNoneForAProfileOfOtherColours) {
    EXPECT_FALSE(ColorTransform::create(rgbProfile(1), Space::Gray));
    EXPECT_FALSE(ColorTransform::create(rgbProfile(1), Space::Cmyk));
    EXPECT_FALSE(ColorTransform::create(grayProfile(1), Space::Rgb));
    EXPECT_FALSE(ColorTransform::create(blackOnlyCmykProfile(), Space::Rgb));
}

TEST(ColorTransform, AppliesTheCurveOfRgbProfiles) {
    const auto transform = ColorTransform::create(rgbProfile(1), Space::Rgb);
    ASSERT_TRUE(transform);
    Bytes pixels = bytesOf({128, 128, 128, 0, 0, 0, 255, 255, 255});
    transform->applyRgb(pixels.data(), 3, 3);
    expectNear(pixels, {halfLight, halfLight, halfLight, 0, 0, 0, 255, 255, 255}, 1);
}

TEST(ColorTransform, AppliesThePrimariesOfRgbProfiles) {
    const auto transform = ColorTransform::create(rgbProfile(2.2, Primaries::RedAndBlueSwapped), Space::Rgb);
    ASSERT_TRUE(transform);
    Bytes pixels = bytesOf({255, 0, 0, 0, 255, 0});
    transform->applyRgb(pixels.data(), 2, 3);
    expectNear(pixels, {0, 0, 255, 0, 255, 0}, 2);
}

TEST(ColorTransform, LeavesTheFourthByteOfPixels) {
    const auto transform = ColorTransform::create(rgbProfile(1), Space::Rgb);
    ASSERT_TRUE(transform);
    Bytes pixels = bytesOf({128, 0, 255, 77, 0, 128, 0, 3});
    transform->applyRgb(pixels.data(), 2, 4);
    expectNear(pixels, {halfLight, 0, 255, 77, 0, halfLight, 0, 3}, 1);
}

TEST(ColorTransform, TreatsLongRowsLikeSinglePixels) {
    const auto transform = ColorTransform::create(rgbProfile(1), Space::Rgb);
    ASSERT_TRUE(transform);
    constexpr int count = 1000;
    for (const int pixelBytes : {3, 4}) {
        Bytes row(static_cast<std::size_t>(count * pixelBytes));
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i] = static_cast<std::byte>(i * 7);
        Bytes single = row;
        transform->applyRgb(row.data(), count, pixelBytes);
        for (int i = 0; i < count; ++i)
            transform->applyRgb(single.data() + i * pixelBytes, 1, pixelBytes);
        EXPECT_EQ(row, single) << pixelBytes;
    }
}

TEST(ColorTransform, OfGrayWorksOnEqualChannels) {
    const auto transform = ColorTransform::create(grayProfile(1), Space::Gray);
    ASSERT_TRUE(transform);
    Bytes three = bytesOf({128, 128, 128, 255, 255, 255});
    transform->applyRgb(three.data(), 2, 3);
    expectNear(three, {halfLight, halfLight, halfLight, 255, 255, 255}, 1);
    Bytes four = bytesOf({128, 128, 128, 9});
    transform->applyRgb(four.data(), 1, 4);
    expectNear(four, {halfLight, halfLight, halfLight, 9}, 1);
}

TEST(ColorTransform, OfInksGivesOpaqueColours) {
    const auto transform = ColorTransform::create(blackOnlyCmykProfile(), Space::Cmyk);
    ASSERT_TRUE(transform);
    // Lightness 50 is 119 in sRGB (ISO/CIE 11664-4).
    Bytes pixels = bytesOf({0, 0, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 90, 0, 200, 128});
    transform->applyCmyk(pixels.data(), 4);
    expectNear(pixels, {255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 255, 119, 119, 119, 255}, 2);
}

TEST(ColorTransform, ChangesTheColoursOfPalettesButNotTheirAlpha) {
    const auto rgb = ColorTransform::create(rgbProfile(2.2, Primaries::RedAndBlueSwapped), Space::Rgb);
    ASSERT_TRUE(rgb);
    std::vector<Gdiplus::ARGB> palette = {0x40FF0000U, 0xFF000000U};
    rgb->applyToPalette(palette);
    EXPECT_EQ(palette[0] >> 24, 0x40U);
    EXPECT_LE(palette[0] >> 16 & 255, 2U);
    EXPECT_GE(palette[0] & 255, 253U);
    EXPECT_EQ(palette[1], 0xFF000000U);

    const auto gray = ColorTransform::create(grayProfile(1), Space::Gray);
    ASSERT_TRUE(gray);
    std::vector<Gdiplus::ARGB> grays = {0x11808080U};
    gray->applyToPalette(grays);
    EXPECT_EQ(grays[0] >> 24, 0x11U);
    EXPECT_NEAR(grays[0] & 255, halfLight, 1);
    EXPECT_EQ(grays[0] & 255, grays[0] >> 16 & 255);
}

TEST(ColorTransform, GivesTheSameOnManyThreads) {
    const auto transform = ColorTransform::create(rgbProfile(1.8), Space::Rgb);
    ASSERT_TRUE(transform);
    Bytes input(3 * 3000);
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = static_cast<std::byte>(i * 13 / 5);
    Bytes expected = input;
    transform->applyRgb(expected.data(), 3000, 3);
    std::array<Bytes, 6> results;
    {
        std::vector<std::jthread> threads;
        for (Bytes& result : results)
            threads.emplace_back([&result, &input, &transform] {
                result = input;
                transform->applyRgb(result.data(), 3000, 3);
            });
    }
    for (const Bytes& result : results)
        EXPECT_EQ(result, expected);
}
