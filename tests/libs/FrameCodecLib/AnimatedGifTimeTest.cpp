#include "GifFrames.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace FrameCodecLib {

namespace {

using TestSupport::GifFile;
using TestSupport::GifFrame;

constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double farAway = std::numeric_limits<double>::infinity();

/// Frames of every kind at many places, some opaque and some not.
GifFile manyFrames(int count) {
    std::mt19937 random(7);
    const auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    GifFile file(24, 18, fourColours);
    file.frame(fullOf(b, 24, 18));
    for (int i = 1; i < count; ++i) {
        const int seed = below(1000);
        GifFrame frame = {.left = below(20),
                          .top = below(14),
                          .width = 1 + below(24),
                          .height = 1 + below(18),
                          .index = [seed](int x, int y) { return (x * 5 + y * 3 + seed) / 4 % 4; },
                          .disposal = below(4),
                          .delay = 2 + below(5)};
        if (below(2))
            frame.transparentIndex = below(4);
        frame.interlaced = below(4) == 0;
        file.frame(frame);
    }
    return file;
}

class AnimatedGifTime : public ::testing::Test {
protected:
    std::string shownAt(const GifFile& file, double time) {
        return lettersOf(files.open(file)->GetFrameAtTime(time));
    }

    GifFolder files;
};

} // namespace

TEST_F(AnimatedGifTime, AFrameIsShownFromItsStartUntilBeforeItsEnd) {
    EXPECT_EQ(shownAt(threeColours(), 0), "r");
    EXPECT_EQ(shownAt(threeColours(), 0.001), "r");
    EXPECT_EQ(shownAt(threeColours(), 0.2999), "r");
    EXPECT_EQ(shownAt(threeColours(), 0.3), "g");
    EXPECT_EQ(shownAt(threeColours(), 0.4999), "g");
    EXPECT_EQ(shownAt(threeColours(), 0.5), "b");
    EXPECT_EQ(shownAt(threeColours(), 0.9999), "b");
}

TEST_F(AnimatedGifTime, EveryHundredthIsMetExactly) {
    GifFile file(1, 1, fourColours);
    constexpr int frames = 300;
    for (int i = 0; i < frames; ++i)
        file.frame(lasting(r, 3));
    const auto gif = files.open(file.loops(0));
    for (int i = 0; i < 2 * frames; ++i)
        ASSERT_EQ(gif->GetFrameIndexAtTime(std::stod(std::to_string(3 * i) + "e-2")), i % frames) << i;
}

TEST_F(AnimatedGifTime, BeforeTheStartAndAtNoTimeThereIsTheFirstFrame) {
    EXPECT_EQ(shownAt(threeColours(), -1), "r");
    EXPECT_EQ(shownAt(threeColours(), -farAway), "r");
    EXPECT_EQ(shownAt(threeColours(), noNumber), "r");
}

TEST_F(AnimatedGifTime, WithoutAWordAboutLoopsTheLastFrameStays) {
    EXPECT_EQ(shownAt(threeColours(), 1), "b");
    EXPECT_EQ(shownAt(threeColours(), 1.1), "b");
    EXPECT_EQ(shownAt(threeColours(), 1e300), "b");
    EXPECT_EQ(shownAt(threeColours(), farAway), "b");
}

TEST_F(AnimatedGifTime, ZeroLoopsAreForEver) {
    EXPECT_EQ(shownAt(threeColours().loops(0), 1), "r");
    EXPECT_EQ(shownAt(threeColours().loops(0), 7.35), "g");
    EXPECT_EQ(shownAt(threeColours().loops(0), farAway), "b");
}

TEST_F(AnimatedGifTime, OneLoopIsASecondPass) {
    EXPECT_EQ(shownAt(threeColours().loops(1), 1.1), "r");
    EXPECT_EQ(shownAt(threeColours().loops(1), 1.35), "g");
    EXPECT_EQ(shownAt(threeColours().loops(1), 2), "b");
    EXPECT_EQ(shownAt(threeColours().loops(1), 2.1), "b");
}

TEST_F(AnimatedGifTime, LoopsAreKnownByEitherName) {
    EXPECT_EQ(shownAt(threeColours().loops(3, "ANIMEXTS1.0"), 3.35), "g");
    EXPECT_EQ(shownAt(threeColours().loops(3, "ANIMEXTS1.0"), 4.1), "b");
    EXPECT_EQ(shownAt(threeColours().loops(0, "SOMEBODY1.0"), 1.1), "b");
}

TEST_F(AnimatedGifTime, AnOddLoopExtensionSaysNothing) {
    const auto named = [](std::vector<unsigned char> blocks) {
        std::vector<unsigned char> bytes = {0x21, 0xFF, 11,  'N', 'E', 'T', 'S',
                                            'C',  'A',  'P', 'E', '2', '.', '0'};
        bytes.insert(bytes.end(), blocks.begin(), blocks.end());
        return bytes;
    };
    for (const auto& blocks :
         std::vector<std::vector<unsigned char>>{{0}, {2, 1, 0, 0}, {3, 2, 0, 0, 0}, {5, 2, 9, 9, 9, 9, 0}})
        EXPECT_EQ(shownAt(threeColours().extension(named(blocks)), 1.1), "b");
    EXPECT_EQ(shownAt(threeColours().extension(named({4, 1, 0, 0, 77, 2, 5, 5, 0})), 1.1), "r");
}

TEST_F(AnimatedGifTime, ADelayOfLessThanTwoHundredthsIsTen) {
    const GifFile file = GifFile(1, 1, fourColours)
                             .frame(lasting(r, 0))
                             .frame(lasting(g, 1))
                             .frame(lasting(b, 2))
                             .frame(lasting(k, 50));
    EXPECT_EQ(shownAt(file, 0.0999), "r");
    EXPECT_EQ(shownAt(file, 0.1), "g");
    EXPECT_EQ(shownAt(file, 0.1999), "g");
    EXPECT_EQ(shownAt(file, 0.2), "b");
    EXPECT_EQ(shownAt(file, 0.22), "k");
}

TEST_F(AnimatedGifTime, TellsWhenAFrameIsShown) {
    const auto gif = files.open(threeColours().loops(0));
    EXPECT_EQ(gif->GetFrameTiming(1).start, boost::rational<__int64>(3, 10));
    EXPECT_EQ(gif->GetFrameTiming(1).end, boost::rational<__int64>(1, 2));
    EXPECT_EQ(gif->GetFrameTiming(9).end, boost::rational<__int64>(1));
    EXPECT_EQ(gif->GetDuration(), boost::rational<__int64>(1));
    EXPECT_EQ(gif->GetFrameIndexAtTime(1.35), 1);
}

TEST_F(AnimatedGifTime, InAnyOrderFramesAreThoseOfOnePass) {
    constexpr int frames = 200;
    const auto bytes = manyFrames(frames).bytes();
    const auto ordered = files.open(bytes);
    std::vector<std::vector<std::uint32_t>> expected;
    for (int i = 0; i < frames; ++i)
        expected.push_back(pixelsOf(ordered->GetFrameAtIndex(i)));
    const auto jumping = files.open(bytes);
    const auto backwards = files.open(bytes);
    std::mt19937 random(3);
    for (int i = 0; i < frames; ++i) {
        const auto index = static_cast<int>(random() % frames);
        ASSERT_EQ(pixelsOf(jumping->GetFrameAtIndex(index)), expected[static_cast<std::size_t>(index)])
            << index;
        ASSERT_EQ(pixelsOf(backwards->GetFrameAtIndex(frames - 1 - i)),
                  expected[static_cast<std::size_t>(frames - 1 - i)]);
    }
}

TEST_F(AnimatedGifTime, AFreshLoaderGivesTheSameFrame) {
    constexpr int frames = 40;
    const auto bytes = manyFrames(frames).bytes();
    const auto ordered = files.open(bytes);
    for (int i = 0; i < frames; ++i)
        ASSERT_EQ(pixelsOf(ordered->GetFrameAtIndex(i)), pixelsOf(files.open(bytes)->GetFrameAtIndex(i)))
            << i;
}

} // namespace FrameCodecLib
