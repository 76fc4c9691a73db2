#include "libs/FrameCodecLib/NumberedFrames.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace FrameCodecLib {
namespace {

/// The bars that support/video/CMakeLists.txt draws, in 8 bits; in 10 bits they are four times as much.
constexpr std::array<std::array<int, 3>, 6> bars = {
    {{16, 128, 128}, {235, 128, 128}, {81, 90, 240}, {145, 54, 34}, {41, 240, 110}, {180, 100, 150}}};
constexpr std::array<std::array<int, 3>, 6> bars10 = {
    {{64, 512, 512}, {940, 512, 512}, {325, 361, 960}, {581, 217, 135}, {163, 961, 439}, {723, 401, 601}}};

/// The shares of red and blue in luma: ITU-R BT.709, 601 and 2020.
struct Matrix {
    double red;
    double blue;
};
constexpr Matrix bt709 = {0.2126, 0.0722};
constexpr Matrix bt601 = {0.299, 0.114};
constexpr Matrix bt2020 = {0.2627, 0.0593};

struct Material {
    std::string file;
    Matrix matrix;
    int bits = 8;
    bool isFullRange = false;
};

/// Blue, green, red.
std::array<double, 3> trueColour(const std::array<int, 3>& sample, const Material& material) {
    const double step = std::pow(2, material.bits - 8);
    const double most = std::pow(2, material.bits) - 1;
    const double luma = material.isFullRange ? sample[0] / most : (sample[0] - 16 * step) / (219 * step);
    const double chromaRange = material.isFullRange ? most : 224 * step;
    const double cb = (sample[1] - 128 * step) / chromaRange;
    const double cr = (sample[2] - 128 * step) / chromaRange;
    const auto [kr, kb] = material.matrix;
    const double red = luma + 2 * (1 - kr) * cr;
    const double blue = luma + 2 * (1 - kb) * cb;
    const double green = (luma - kr * red - kb * blue) / (1 - kr - kb);
    const auto level = [](double value) { return std::clamp(value, 0.0, 1.0) * 255; };
    return {level(blue), level(green), level(red)};
}

class Colours : public testing::TestWithParam<Material> {};

TEST_P(Colours, AreWithinTwoOfTheTrueValues) {
    const Material& material = GetParam();
    const auto decoder = openDecoder(videoPath(material.file));
    ASSERT_TRUE(decoder);
    const auto frame = frameAt(*decoder, 0);
    ASSERT_TRUE(frame && frame->Lock());
    const auto& samples = material.bits == 8 ? bars : bars10;
    for (std::size_t bar = 0; bar < samples.size(); ++bar) {
        const unsigned char* pixel = frame->GetPixels() + 16 * frame->GetStride() + (16 * bar + 8) * 4;
        const std::array<double, 3> expected = trueColour(samples[bar], material);
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(pixel[channel], expected[channel], 2) << "bar " << bar << ", channel " << channel;
        EXPECT_EQ(pixel[3], 255);
    }
}

TEST_P(Colours, AreNearlyTheSameInASmallerPicture) {
    const Material& material = GetParam();
    const auto decoder = openDecoder(videoPath(material.file));
    ASSERT_TRUE(decoder);
    ASSERT_TRUE(decoder->SetOutputSize(decoder->GetDisplayWidth() / 4, decoder->GetDisplayHeight() / 4));
    const auto frame = frameAt(*decoder, 0);
    ASSERT_TRUE(frame && frame->Lock());
    constexpr double shareOfNeighbours = 4; // the scaler's kernel reaches over the edges
    const auto& samples = material.bits == 8 ? bars : bars10;
    for (std::size_t bar = 0; bar < samples.size(); ++bar) {
        const unsigned char* pixel = frame->GetPixels() + 4 * frame->GetStride() + (4 * bar + 2) * 4;
        const std::array<double, 3> expected = trueColour(samples[bar], material);
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(pixel[channel], expected[channel], shareOfNeighbours)
                << "bar " << bar << ", channel " << channel;
    }
}

INSTANTIATE_TEST_SUITE_P(Told, Colours,
                         testing::Values(Material{"bars-8-bt709-tv.mp4", bt709},
                                         Material{"bars-8-smpte170m-tv.mp4", bt601},
                                         Material{"bars-8-bt2020nc-tv.mp4", bt2020},
                                         Material{"bars-8-bt709-pc.mp4", bt709, 8, true},
                                         Material{"bars-8-smpte170m-pc.mp4", bt601, 8, true},
                                         Material{"bars-8-bt2020nc-pc.mp4", bt2020, 8, true},
                                         Material{"bars-10-bt709-tv.mp4", bt709, 10},
                                         Material{"bars-10-smpte170m-tv.mp4", bt601, 10},
                                         Material{"bars-10-bt2020nc-tv.mp4", bt2020, 10},
                                         Material{"bars-10-bt709-pc.mp4", bt709, 10, true},
                                         Material{"bars-10-smpte170m-pc.mp4", bt601, 10, true},
                                         Material{"bars-10-bt2020nc-pc.mp4", bt2020, 10, true}));

INSTANTIATE_TEST_SUITE_P(GuessedBySize, Colours,
                         testing::Values(Material{"bars-untold.mp4", bt601},
                                         Material{"bars-untold-wide.mp4", bt709}));

/// Bars against red, green, blue by ITU-R BT.2100, 2390 and 2087.
void expectBars(const std::string& file, const std::vector<std::array<int, 3>>& expected) {
    const auto decoder = openDecoder(videoPath(file));
    ASSERT_TRUE(decoder);
    const auto frame = frameAt(*decoder, 0);
    ASSERT_TRUE(frame && frame->Lock());
    for (std::size_t bar = 0; bar < expected.size(); ++bar) {
        const unsigned char* pixel = frame->GetPixels() + 16 * frame->GetStride() + (16 * bar + 8) * 4;
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(pixel[2 - channel], expected[bar][channel], 2)
                << "bar " << bar << ", channel " << channel;
        EXPECT_EQ(pixel[3], 255);
    }
}

TEST(HighDynamicRange, IsBroughtToThatOfTheScreen) {
    expectBars("bars-pq.mp4", {{15, 15, 15},
                               {136, 136, 136},
                               {229, 229, 229},
                               {250, 250, 250},
                               {136, 0, 0},
                               {3, 136, 1}, // as exact as its ten bits
                               {0, 0, 136}});
}

TEST(HighDynamicRange, OfHybridLogGammaIsAsBrightAsOnItsScreen) {
    expectBars("bars-hlg.mp4",
               {{16, 16, 16}, {61, 61, 61}, {137, 137, 137}, {229, 229, 229}, {255, 255, 255}});
}

/// `share` of the way from one bar to the next in chroma, with the luma of `lumaOf`.
std::array<int, 3> between(std::size_t bar, std::size_t lumaOf, double share) {
    const auto mixed = [&](std::size_t component) {
        return static_cast<int>(
            std::lround(bars[bar][component] * (1 - share) + bars[bar + 1][component] * share));
    };
    return {bars[lumaOf][0], mixed(1), mixed(2)};
}

void expectColour(const unsigned char* pixel, const std::array<int, 3>& sample) {
    const std::array<double, 3> expected = trueColour(sample, {"", bt709});
    for (std::size_t channel = 0; channel < 3; ++channel)
        EXPECT_NEAR(pixel[channel], expected[channel], 2) << "channel " << channel;
}

/// What is to be seen at the end of a bar, and at the beginning of the next, in shares of the next one's
/// chroma.
void expectAcrossColumns(const std::string& file, double atEnd, double atBeginning) {
    const auto decoder = openDecoder(videoPath(file));
    const auto frame = decoder ? frameAt(*decoder, 0) : nullptr;
    ASSERT_TRUE(frame && frame->Lock());
    for (std::size_t bar = 0; bar + 1 < bars.size(); ++bar) {
        const unsigned char* next = frame->GetPixels() + 16 * frame->GetStride() + 16 * (bar + 1) * 4;
        expectColour(next - 8, bars[bar]);
        expectColour(next - 4, between(bar, bar, atEnd));
        expectColour(next, between(bar, bar + 1, atBeginning));
        expectColour(next + 4, bars[bar + 1]);
    }
}

TEST(Chroma, IsInterpolatedFromEvenColumns) {
    expectAcrossColumns("bars-on-columns.mp4", 0.5, 1);
}

TEST(Chroma, IsInterpolatedFromBetweenColumns) {
    expectAcrossColumns("bars-8-bt709-tv.mp4", 0.25, 0.75);
}

TEST(Chroma, IsInterpolatedFromBetweenRows) {
    const auto decoder = openDecoder(videoPath("bars-in-rows.mp4"));
    const auto frame = decoder ? frameAt(*decoder, 0) : nullptr;
    ASSERT_TRUE(frame && frame->Lock());
    for (std::size_t bar = 0; bar + 1 < bars.size(); ++bar) {
        const int below = 16 * (static_cast<int>(bar) + 1);
        const auto pixelIn = [&](int row) { return frame->GetPixels() + row * frame->GetStride() + 16 * 4; };
        expectColour(pixelIn(below - 2), bars[bar]);
        expectColour(pixelIn(below - 1), between(bar, bar, 0.25));
        expectColour(pixelIn(below), between(bar, bar + 1, 0.75));
        expectColour(pixelIn(below + 1), bars[bar + 1]);
    }
}

TEST(Alpha, IsMultipliedIntoTheColours) {
    const auto decoder = openDecoder(videoPath("alpha.mov"));
    ASSERT_TRUE(decoder);
    const auto frame = frameAt(*decoder, 0);
    ASSERT_TRUE(frame && frame->Lock());
    const unsigned char* half = frame->GetPixels() + 48 * frame->GetStride() + 32 * 4;
    const unsigned char* clear = frame->GetPixels() + 48 * frame->GetStride() + 96 * 4;
    for (int channel = 0; channel < 4; ++channel) {
        EXPECT_NEAR(half[channel], 128, 2);
        EXPECT_EQ(clear[channel], 0);
    }
}

TEST(Alpha, DoesNotDarkenEdgesWhenThePictureShrinks) {
    const auto decoder = openDecoder(videoPath("alpha.mov"));
    ASSERT_TRUE(decoder && decoder->SetOutputSize(32, 24));
    const auto frame = frameAt(*decoder, 0);
    ASSERT_TRUE(frame && frame->Lock());
    for (int x = 0; x < 32; ++x) {
        const unsigned char* pixel = frame->GetPixels() + 12 * frame->GetStride() + x * 4;
        EXPECT_NEAR(pixel[0], pixel[3], 2) << x;
    }
}

} // namespace
} // namespace FrameCodecLib
