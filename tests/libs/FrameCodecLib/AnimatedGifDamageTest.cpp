#include "GifFrames.h"

#include <gtest/gtest.h>

#include <random>

namespace FrameCodecLib {

namespace {

using TestSupport::GifCodes;
using TestSupport::GifFile;
using TestSupport::GifFrame;
using Bytes = std::vector<unsigned char>;

constexpr std::size_t headerLength = 13 + 4 * 3; // with four colours

class AnimatedGifDamage : public ::testing::Test {
protected:
    bool isRefused(const Bytes& bytes) {
        const auto gif = files.open(bytes);
        return !gif->valid && !gif->GetFrameAtIndex(0) && !gif->GetFrameAtIndex(1) &&
               !gif->GetFrameAtTime(0.5) && gif->GetFrameIndexAtTime(0.5) == -1 && gif->GetWidth() == 0 &&
               gif->GetFrameCount() == 0 && gif->GetDuration().numerator() == 0 &&
               gif->GetGdiplusBackgroundColor().GetValue() == 0;
    }

    GifFolder files;
};

GifFile redThenGreen() {
    return GifFile(3, 2, fourColours).frame(fullOf(r, 3, 2)).frame(fullOf(g, 3, 2));
}

Bytes cutAt(Bytes bytes, std::size_t length) {
    bytes.resize(length);
    return bytes;
}

} // namespace

TEST_F(AnimatedGifDamage, AMissingFileIsNotValid) {
    EXPECT_FALSE(WICAnimatedGIFLoader(TestSupport::wideOf(files.folder / "missing.gif")).valid);
    EXPECT_FALSE(WICAnimatedGIFLoader(L"").valid);
    EXPECT_FALSE(WICAnimatedGIFLoader(TestSupport::wideOf(files.folder / "")).valid);
}

TEST_F(AnimatedGifDamage, ANameWithANullInItIsNoShorterName) {
    const std::wstring path = TestSupport::wideOf(files.folder.write("b.gif", redThenGreen().bytes()));
    EXPECT_TRUE(WICAnimatedGIFLoader(path).valid);
    EXPECT_FALSE(WICAnimatedGIFLoader(path + L'\0' + L"c").valid);
}

TEST_F(AnimatedGifDamage, WhatIsNoGifIsNotValid) {
    EXPECT_TRUE(isRefused({}));
    EXPECT_TRUE(isRefused(Bytes(1000, 0)));
    Bytes other = redThenGreen().bytes();
    other[4] = '8';
    EXPECT_TRUE(isRefused(other));
}

TEST_F(AnimatedGifDamage, WithoutAFrameItIsNotValid) {
    EXPECT_TRUE(isRefused(GifFile(3, 2, fourColours).bytes()));
    EXPECT_TRUE(isRefused(GifFile(0, 0, fourColours).frame({.width = 0}).bytes()));
}

TEST_F(AnimatedGifDamage, AScreenBeyondTheBudgetIsNotValid) {
    Bytes bytes = redThenGreen().bytes();
    std::fill_n(bytes.begin() + 6, 4, static_cast<unsigned char>(0xFF));
    EXPECT_TRUE(isRefused(bytes));
}

TEST_F(AnimatedGifDamage, OfAFrameBeyondTheBudgetNothingIsDrawn) {
    Bytes bytes = redThenGreen().frame(fullOf(b, 1, 1)).bytes();
    const std::size_t lastDescriptor = bytes.size() - 1 - (10 + 1 + 1 + 4 + 1);
    ASSERT_EQ(bytes[lastDescriptor], 0x2C);
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(lastDescriptor) + 5, 4,
                static_cast<unsigned char>(0xFF));
    bytes[lastDescriptor + 9] = 0x40; // interlaced, so that all of it would be needed
    EXPECT_EQ(lettersOf(files.open(bytes)->GetFrameAtIndex(2)), "gggggg");
}

TEST_F(AnimatedGifDamage, ACutFileIsValidFromItsFirstFramesHeaderOn) {
    const Bytes whole = redThenGreen().bytes();
    constexpr std::size_t afterDescriptor = headerLength + 8 + 10;
    for (std::size_t length = 0; length <= whole.size(); ++length)
        ASSERT_EQ(files.open(cutAt(whole, length))->valid != 0, length >= afterDescriptor) << length;
}

TEST_F(AnimatedGifDamage, ACutFileShowsWhatThereIs) {
    const GifFile file = redThenGreen();
    const Bytes whole = file.bytes();
    const std::size_t firstFrame = GifFile(3, 2, fourColours).frame(fullOf(r, 3, 2)).bytes().size() - 1;
    const std::size_t secondPixels = firstFrame + 8 + 10 + 2; // behind code size and length of block
    EXPECT_EQ(lettersOf(files.open(cutAt(whole, firstFrame))->GetFrameAtIndex(1)), "rrrrrr");
    EXPECT_EQ(lettersOf(files.open(cutAt(whole, secondPixels))->GetFrameAtIndex(1)), "rrrrrr");
    // Codes have 9 bits, and the first is a clear code.
    EXPECT_EQ(lettersOf(files.open(cutAt(whole, secondPixels + 3))->GetFrameAtIndex(1)), "grrrrr");
    EXPECT_EQ(lettersOf(files.open(cutAt(whole, secondPixels + 5))->GetFrameAtIndex(1)), "gggrrr");
}

TEST_F(AnimatedGifDamage, BehindAnUnknownBlockThereAreNoFrames) {
    const GifFile file = redThenGreen().extension({0x77}).frame(fullOf(b, 3, 2));
    const auto gif = files.open(file);
    EXPECT_EQ(gif->GetFrameCount(), 2);
    EXPECT_EQ(lettersOf(gif->GetFrameAtIndex(2)), "gggggg");
}

TEST_F(AnimatedGifDamage, AFrameThatLacksPixelsShowsThoseBelowInAnyOrder) {
    GifFile file = GifFile(3, 2, fourColours).frame(fullOf(r, 3, 2));
    const std::size_t second = file.bytes().size() - 1;
    file.frame(fullOf(g, 3, 1)); // told to be as high as the screen
    const std::size_t third = file.bytes().size() - 1;
    file.frame(fullOf(b, 1, 1));
    Bytes bytes = file.bytes();
    bytes[second + 8 + 7] = 2;
    ASSERT_EQ(bytes[third + 8], 0x2C);
    for (const int first : {0, 1, 2})
        for (const int next : {0, 1, 2}) {
            const auto gif = files.open(bytes);
            (void)gif->GetFrameAtIndex(first);
            EXPECT_EQ(
                lettersOf(gif->GetFrameAtIndex(next)),
                (std::vector<std::string>{"rrrrrr", "gggrrr", "bggrrr"})[static_cast<std::size_t>(next)])
                << first << " then " << next;
        }
}

TEST_F(AnimatedGifDamage, ACodeSizeThatCantBeDrawsNothing) {
    Bytes bytes = GifFile(3, 2, fourColours).frame(fullOf(r, 3, 2)).bytes();
    for (const int size : {0, 9, 200}) {
        bytes[headerLength + 18] = static_cast<unsigned char>(size);
        EXPECT_EQ(lettersOf(files.open(bytes)->GetFrameAtIndex(0)), "      ");
    }
}

TEST_F(AnimatedGifDamage, CutAnywhereEveryFrameIsThatOfOnePass) {
    GifFrame seeThrough = {.width = 6, .height = 5, .index = [](int x, int y) { return (x + y) % 4; }};
    seeThrough.transparentIndex = g;
    seeThrough.disposal = 2;
    GifFrame local = {
        .left = 2, .width = 4, .height = 4, .index = [](int x, int) { return x; }, .disposal = 3};
    local.palette = fourColours;
    local.interlaced = true;
    const Bytes whole = GifFile(6, 5, fourColours)
                            .codes(GifCodes::Packed)
                            .loops(2)
                            .frame(fullOf(r, 6, 5))
                            .frame(seeThrough)
                            .frame(local)
                            .frame(fullOf(b, 6, 5))
                            .bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Bytes cut = cutAt(whole, length);
        const auto forwards = files.open(cut);
        const auto backwards = files.open(cut);
        const int count = forwards->GetFrameCount();
        std::vector<std::string> shown;
        for (int i = 0; i < count; ++i)
            shown.push_back(lettersOf(forwards->GetFrameAtIndex(i)));
        for (int i = count - 1; i >= 0; --i)
            ASSERT_EQ(lettersOf(backwards->GetFrameAtIndex(i)), shown[static_cast<std::size_t>(i)]) << length;
    }
}

TEST_F(AnimatedGifDamage, ChangedBytesAreSurvived) {
    const Bytes whole = redThenGreen().codes(GifCodes::Packed).loops(2).frame(fullOf(b, 3, 2)).bytes();
    constexpr std::size_t behindSize = 10; // large screens take long
    std::mt19937 random(11);
    for (int i = 0; i < 400; ++i) {
        Bytes changed = whole;
        for (int k = 0; k < 3; ++k)
            changed[behindSize + random() % (changed.size() - behindSize)] =
                static_cast<unsigned char>(random());
        const auto gif = files.open(changed);
        const auto frame = gif->GetFrameAtTime(static_cast<double>(random() % 100) / 10);
        EXPECT_EQ(frame != nullptr, gif->valid != 0);
        const std::size_t expected =
            frame ? static_cast<std::size_t>(gif->GetWidth()) * static_cast<std::size_t>(gif->GetHeight())
                  : 0;
        EXPECT_EQ(pixelsOf(frame).size(), expected);
    }
}

} // namespace FrameCodecLib
