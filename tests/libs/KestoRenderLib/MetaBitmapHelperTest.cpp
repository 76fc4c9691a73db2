#include "platform/KestoRenderLib.h"
#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>

namespace {

using KestoRenderLib::MetaBitmap;
using KestoRenderLib::MetaBitmapHelper;
using KestoRenderLib::Size;
using Frame = boost::shared_ptr<MetaBitmap>;

constexpr auto format = KestoRenderLib::PixelFormat::Premultiplied32;
constexpr std::uint32_t black = 0xFF000000;
constexpr std::uint32_t white = 0xFFFFFFFF;

unsigned char* pixelAt(const MetaBitmap& frame, int x, int y) {
    return frame.GetPixels() + std::ptrdiff_t{y} * frame.GetStride() + std::ptrdiff_t{x} * 4;
}

/// Premultiplied, 0xAARRGGBB.
std::uint32_t valueAt(const MetaBitmap& frame, int x, int y) {
    std::uint32_t value = 0;
    std::memcpy(&value, pixelAt(frame, x, y), sizeof value);
    return value;
}

unsigned alphaAt(const MetaBitmap& frame, int x, int y) {
    return valueAt(frame, x, y) >> 24;
}

unsigned redAt(const MetaBitmap& frame, int x, int y) {
    return valueAt(frame, x, y) >> 16 & 0xFFU;
}

/// Each pixel is the premultiplied value that `valueOf` gives for it.
Frame painted(Size size, const std::function<std::uint32_t(int x, int y)>& valueOf) {
    Frame frame = MetaBitmap::Create(size, format);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const std::uint32_t value = valueOf(x, y);
            std::memcpy(pixelAt(*frame, x, y), &value, sizeof value);
        }
    return frame;
}

Frame filled(Size size, std::uint32_t value) {
    return painted(size, [value](int, int) { return value; });
}

Frame scaled(const Frame& source, Size size) {
    Frame destination = MetaBitmap::Create(size, format);
    EXPECT_TRUE(MetaBitmapHelper::HighQualityScale(source.get(), destination.get()));
    return destination;
}

class HighQualityScale : public ::testing::Test {
protected:
    TestSupport::GdiplusUser gdiplus;
};

} // namespace

TEST_F(HighQualityScale, EqualSizesAreCopiedExactly) {
    const auto valueOf = [](int x, int y) {
        const auto alpha = static_cast<std::uint32_t>(x * 16 + y);
        return alpha << 24 | (alpha / 2) << 16 | (alpha / 3) << 8 | alpha;
    };
    const Frame copy = scaled(painted({16, 16}, valueOf), {16, 16});
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            EXPECT_EQ(valueAt(*copy, x, y), valueOf(x, y)) << x << ", " << y;
}

TEST_F(HighQualityScale, TheWholeSourceFillsTheWholeDestination) {
    const Frame quarters = painted({32, 32}, [](int x, int y) {
        return black | (x < 16 ? 0U : 0x00FF0000U) | (y < 16 ? 0U : 0x000000FFU);
    });
    const Frame small = scaled(quarters, {12, 8});
    EXPECT_EQ(valueAt(*small, 0, 0), 0xFF000000U);
    EXPECT_EQ(valueAt(*small, 11, 0), 0xFFFF0000U);
    EXPECT_EQ(valueAt(*small, 0, 7), 0xFF0000FFU);
    EXPECT_EQ(valueAt(*small, 11, 7), 0xFFFF00FFU);
}

TEST_F(HighQualityScale, WhatTheDestinationHeldIsReplaced) {
    const Frame destination = filled({8, 8}, white);
    ASSERT_TRUE(MetaBitmapHelper::HighQualityScale(filled({4, 4}, 0x80400000).get(), destination.get()));
    EXPECT_EQ(valueAt(*destination, 0, 0), 0x80400000U);
    EXPECT_EQ(valueAt(*destination, 7, 7), 0x80400000U);
}

TEST_F(HighQualityScale, AFinePatternShrinksToItsAverage) {
    const Frame board = painted({64, 64}, [](int x, int y) { return (x + y) % 2 == 0 ? black : white; });
    const Frame small = scaled(board, {8, 8});
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_NEAR(redAt(*small, x, y), 128, 6) << x << ", " << y;
}

TEST_F(HighQualityScale, EnlargedBordersStayOpaque) {
    const Frame large = scaled(filled({2, 2}, 0xFF336699), {16, 16});
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x)
            EXPECT_EQ(valueAt(*large, x, y), 0xFF336699U) << x << ", " << y;
}

TEST_F(HighQualityScale, AnEnlargedEdgeOvershootsAsACubicDoes) {
    const Frame edge = painted({8, 8}, [](int x, int) { return x < 4 ? 0xFF404040U : 0xFFC0C0C0U; });
    const Frame large = scaled(edge, {64, 8});
    std::array<unsigned, 64> row{};
    for (int x = 0; x < 64; ++x)
        row[static_cast<std::size_t>(x)] = redAt(*large, x, 4);
    EXPECT_LT(*std::min_element(row.begin(), row.end()), 0x3EU);
    EXPECT_GT(*std::max_element(row.begin(), row.end()), 0xC2U);
}

TEST_F(HighQualityScale, NoColourComesOutOfTransparentPixels) {
    const Frame edge = painted({16, 16}, [](int x, int) { return x < 8 ? 0U : 0xFFFF0000U; });
    const Frame large = scaled(edge, {64, 16});
    EXPECT_EQ(alphaAt(*large, 0, 8), 0U);
    EXPECT_EQ(alphaAt(*large, 63, 8), 255U);
    for (int x = 0; x < 64; ++x) {
        EXPECT_NEAR(redAt(*large, x, 8), alphaAt(*large, x, 8), 1) << x;
        EXPECT_EQ(valueAt(*large, x, 8) & 0xFFFFU, 0U) << x;
    }
}

TEST_F(HighQualityScale, RowsThatLieApartAreReadByTheirStride) {
    std::array<unsigned char, 128> memory{};
    memory.fill(0xFF); // two pixels a row, then white that is no picture
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t pixel = 0; pixel < 2; ++pixel)
            std::memcpy(&memory[row * 32 + pixel * 4], &black, sizeof black);
    const Frame source(new MetaBitmap({2, 4}, 32, format, memory.data(), false));
    const Frame large = scaled(source, {4, 8});
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(valueAt(*large, x, y), black) << x << ", " << y;
}

TEST_F(HighQualityScale, TheSourceIsOnlyRead) {
    const Frame source = painted({4, 4}, [](int x, int y) { return (x + y) % 2 == 0 ? black : white; });
    scaled(source, {9, 3});
    EXPECT_EQ(valueAt(*source, 0, 0), black);
    EXPECT_EQ(valueAt(*source, 3, 2), white);
}

TEST_F(HighQualityScale, WithoutAFrameItFails) {
    const Frame frame = filled({4, 4}, black);
    EXPECT_FALSE(MetaBitmapHelper::HighQualityScale(nullptr, frame.get()));
    EXPECT_FALSE(MetaBitmapHelper::HighQualityScale(frame.get(), nullptr));
    EXPECT_EQ(valueAt(*frame, 2, 2), black);
}

TEST_F(HighQualityScale, WithoutASizeItFails) {
    MetaBitmap empty({0, 0}, 0, format, nullptr, false);
    const Frame frame = filled({4, 4}, black);
    EXPECT_FALSE(MetaBitmapHelper::HighQualityScale(&empty, frame.get()));
    EXPECT_FALSE(MetaBitmapHelper::HighQualityScale(frame.get(), &empty));
}
