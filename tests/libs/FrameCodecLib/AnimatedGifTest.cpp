#include "GifFrames.h"

#include <gtest/gtest.h>

namespace FrameCodecLib {

namespace {

using TestSupport::GifCodes;
using TestSupport::GifFile;
using TestSupport::GifFrame;

class AnimatedGif : public ::testing::Test {
protected:
    std::string frameOf(const GifFile& file, int index) {
        return lettersOf(files.open(file)->GetFrameAtIndex(index));
    }

    GifFolder files;
};

GifFile fourByOne() {
    return {4, 1, fourColours};
}

GifFrame pixelAt(int x, int index, int disposal = 0) {
    return {.left = x, .index = [index](int, int) { return index; }, .disposal = disposal};
}

} // namespace

TEST_F(AnimatedGif, AFrameThatIsNotDisposedOfStays) {
    for (const int disposal : {0, 1, 5, 7}) {
        const GifFile file = fourByOne().frame(pixelAt(0, r, disposal)).frame(pixelAt(1, g, disposal));
        EXPECT_EQ(frameOf(file, 0), "r   ") << disposal;
        EXPECT_EQ(frameOf(file, 1), "rg  ") << disposal;
    }
}

TEST_F(AnimatedGif, AFrameDisposedOfToTheBackgroundLeavesItsAreaTransparent) {
    GifFrame both = fullOf(g, 2, 1);
    both.disposal = 2;
    const GifFile file = fourByOne().frame(fullOf(b, 4, 1)).frame(both).frame(pixelAt(1, r));
    EXPECT_EQ(frameOf(file, 1), "ggbb");
    EXPECT_EQ(frameOf(file, 2), " rbb");
}

TEST_F(AnimatedGif, AFrameDisposedOfToThePreviousStateGivesBackWhatWasBelow) {
    const GifFile file =
        fourByOne().frame(pixelAt(0, b)).frame(pixelAt(0, g, 3)).frame(pixelAt(1, r, 3)).frame(pixelAt(2, g));
    EXPECT_EQ(frameOf(file, 1), "g   ");
    EXPECT_EQ(frameOf(file, 2), "br  ");
    EXPECT_EQ(frameOf(file, 3), "b g ");
}

TEST_F(AnimatedGif, TheOlderNumberOfThePreviousStateCountsToo) {
    const GifFile file = fourByOne().frame(pixelAt(0, b)).frame(pixelAt(0, g, 4)).frame(pixelAt(1, r));
    EXPECT_EQ(frameOf(file, 1), "g   ");
    EXPECT_EQ(frameOf(file, 2), "br  ");
}

TEST_F(AnimatedGif, BeforeTheFirstFrameThereIsNothingToGoBackTo) {
    const GifFile file = fourByOne().frame(pixelAt(0, b, 3)).frame(pixelAt(1, r));
    EXPECT_EQ(frameOf(file, 0), "b   ");
    EXPECT_EQ(frameOf(file, 1), " r  ");
}

TEST_F(AnimatedGif, TransparentPixelsShowWhatIsBelow) {
    GifFrame chequered = {.width = 4, .height = 1, .index = [](int x, int) { return x % 2 ? r : g; }};
    chequered.transparentIndex = g;
    const GifFile file = fourByOne().frame(chequered).frame(fullOf(b, 4, 1)).frame(chequered);
    EXPECT_EQ(frameOf(file, 0), " r r");
    EXPECT_EQ(frameOf(file, 2), "brbr");
}

TEST_F(AnimatedGif, AroundAFrameTheScreenIsTransparentWhateverItsBackground) {
    const GifFile file = GifFile(3, 3, fourColours, b).frame({.left = 1, .top = 1});
    EXPECT_EQ(frameOf(file, 0), "    k    ");
}

TEST_F(AnimatedGif, ALocalPaletteCountsForItsFrameAlone) {
    GifFrame local = pixelAt(1, 1);
    local.palette = {0x000000, 0x0000FF};
    const GifFile file = fourByOne().frame(pixelAt(0, r)).frame(local).frame(pixelAt(2, r));
    EXPECT_EQ(frameOf(file, 2), "rbr ");
}

TEST_F(AnimatedGif, AnIndexWithoutAColourShowsTheFirst) {
    GifFrame local = fullOf(3, 4, 1);
    local.palette = {0x00FF00, 0x0000FF};
    EXPECT_EQ(frameOf(fourByOne().frame(local), 0), "gggg");
}

TEST_F(AnimatedGif, AFrameWithoutAnyPaletteDrawsNothing) {
    GifFrame local = pixelAt(1, 1);
    local.palette = {0x000000, 0x0000FF};
    const GifFile file = GifFile(2, 1, {}).frame(local).frame(fullOf(0, 2, 1));
    EXPECT_EQ(frameOf(file, 1), " b");
}

TEST_F(AnimatedGif, InterlacedLinesLieWhereTheyBelong) {
    const auto colourOf = [](int x, int y) { return (x + y * 3) % 4; };
    for (const int height : {1, 2, 3, 5, 8, 19}) {
        GifFrame frame = {.width = 3, .height = height, .index = colourOf};
        const std::string straight = frameOf(GifFile(3, height, fourColours).frame(frame), 0);
        frame.interlaced = true;
        EXPECT_EQ(frameOf(GifFile(3, height, fourColours).frame(frame), 0), straight) << height;
    }
}

TEST_F(AnimatedGif, AFrameThatLeavesTheScreenIsCutOff) {
    const auto corner = [](int x, int y) { return x == 0 && y == 0 ? r : g; };
    for (const bool interlaced : {false, true}) {
        const GifFrame frame = {.left = 1, .top = 1, .width = 9, .height = 9, .index = corner};
        GifFrame lines = frame;
        lines.interlaced = interlaced;
        EXPECT_EQ(frameOf(GifFile(3, 3, fourColours).frame(lines), 0), "    rg gg");
    }
}

TEST_F(AnimatedGif, AFrameOffTheScreenChangesNothing) {
    for (const int disposal : {0, 2, 3}) {
        GifFrame off = fullOf(g, 5, 5);
        off.left = 4;
        off.disposal = disposal;
        const GifFile file = fourByOne().frame(fullOf(r, 4, 1)).frame(off).frame(pixelAt(0, b));
        EXPECT_EQ(frameOf(file, 1), "rrrr");
        EXPECT_EQ(frameOf(file, 2), "brrr");
    }
}

TEST_F(AnimatedGif, AFrameOfNoPixelsShowsWhatIsThere) {
    const GifFile file = fourByOne().frame(fullOf(r, 4, 1)).frame({.width = 0, .height = 0});
    EXPECT_EQ(frameOf(file, 1), "rrrr");
}

TEST_F(AnimatedGif, AScreenOfNoSizeReachesAsFarAsTheFirstFrame) {
    const GifFile file = GifFile(0, 0, fourColours).frame({.left = 1, .width = 2}).frame({.width = 5});
    EXPECT_EQ(frameOf(file, 0), " kk");
    EXPECT_EQ(frameOf(file, 1), "kkk");
}

TEST_F(AnimatedGif, CodesOfEveryLengthAreRead) {
    const auto noise = [](int x, int y) { return (x * x * 31 + y * y * 17 + x * y * 7) % 251; };
    TestSupport::GifColours palette;
    for (std::uint32_t i = 0; i < 256; ++i)
        palette.push_back(i << 16 | (255 - i) << 8 | i / 2);
    const GifFrame frame = {.width = 100, .height = 90, .index = noise};
    for (const GifCodes codes : {GifCodes::Plain, GifCodes::Packed, GifCodes::KeepingFull}) {
        const auto gif = files.open(GifFile(100, 90, palette).codes(codes).frame(frame));
        const auto pixels = pixelsOf(gif->GetFrameAtIndex(0));
        ASSERT_EQ(pixels.size(), 100U * 90U);
        for (int y = 0; y < 90; ++y)
            for (int x = 0; x < 100; ++x)
                ASSERT_EQ(pixels[static_cast<std::size_t>(y * 100 + x)],
                          0xFF000000U | palette[static_cast<std::size_t>(noise(x, y))])
                    << x << "," << y;
    }
}

TEST_F(AnimatedGif, LongRunsOfOneColourAreRead) {
    const GifFile file = GifFile(500, 200, fourColours).codes(GifCodes::Packed).frame(fullOf(g, 500, 200));
    EXPECT_EQ(frameOf(file, 0), std::string(500 * 200, 'g'));
}

TEST_F(AnimatedGif, AnIndexBehindTheLastFrameGivesTheLast) {
    const GifFile file = fourByOne().frame(pixelAt(0, r)).frame(pixelAt(1, g));
    EXPECT_EQ(frameOf(file, 2), "rg  ");
    EXPECT_EQ(frameOf(file, 1'000'000), "rg  ");
    EXPECT_EQ(frameOf(fourByOne().frame(pixelAt(0, r)), 1), "r   ");
}

TEST_F(AnimatedGif, AnIndexBelowZeroGivesNothing) {
    const auto gif = files.open(fourByOne().frame(pixelAt(0, r)));
    EXPECT_FALSE(gif->GetFrameAtIndex(-1));
    EXPECT_EQ(gif->GetFrameTiming(-1).end, boost::rational<__int64>(0));
}

TEST_F(AnimatedGif, TellsItsSize) {
    const auto gif = files.open(fourByOne().frame(pixelAt(0, r)).frame(pixelAt(1, r)));
    ASSERT_TRUE(gif->valid);
    EXPECT_EQ(gif->GetWidth(), 4);
    EXPECT_EQ(gif->GetHeight(), 1);
    EXPECT_EQ(gif->GetFrameCount(), 2);
}

TEST_F(AnimatedGif, FramesOutliveTheirLoader) {
    auto gif = files.open(fourByOne().frame(pixelAt(0, r)).frame(pixelAt(1, g)));
    const auto first = gif->GetFrameAtIndex(0);
    const auto second = gif->GetFrameAtIndex(1);
    gif.reset();
    EXPECT_EQ(lettersOf(first), "r   ");
    EXPECT_EQ(lettersOf(second), "rg  ");
}

TEST_F(AnimatedGif, AFrameHasPixelsOnlyWhileItIsLocked) {
    const auto frame = files.open(fourByOne().frame(pixelAt(0, r)))->GetFrameAtIndex(0);
    EXPECT_EQ(frame->GetPixels(), nullptr);
    ASSERT_TRUE(frame->Lock());
    EXPECT_NE(frame->GetPixels(), nullptr);
    frame->Unlock();
    EXPECT_EQ(frame->GetPixels(), nullptr);
}

TEST_F(AnimatedGif, TheBackgroundIsAnOpaqueColourOfTheGlobalPalette) {
    const auto colourOf = [&](const GifFile& file) {
        return files.open(file)->GetGdiplusBackgroundColor().GetValue();
    };
    GifFrame seeThrough = fullOf(b, 4, 1);
    seeThrough.transparentIndex = b;
    EXPECT_EQ(colourOf(GifFile(4, 1, fourColours, b).frame({})), 0xFF0000FFU);
    EXPECT_EQ(colourOf(GifFile(4, 1, fourColours, b).frame(seeThrough)), 0xFF0000FFU);
}

TEST_F(AnimatedGif, ABackgroundWithoutAColourIsTransparent) {
    GifFrame local;
    local.palette = fourColours;
    EXPECT_EQ(files.open(GifFile(4, 1, {}).frame(local))->GetGdiplusBackgroundColor().GetValue(), 0U);
    EXPECT_EQ(files.open(GifFile(4, 1, fourColours, 200).frame({}))->GetGdiplusBackgroundColor().GetValue(),
              0U);
}

TEST_F(AnimatedGif, OtherExtensionsArePassedOver) {
    const GifFile file = fourByOne()
                             .extension({0x21, 0xFE, 3, 'a', 'b', 'c', 2, 'd', 'e', 0})
                             .extension({0x21, 0x01, 1, 0, 0})
                             .extension({0x21, 0xF9, 2, 1, 1, 0})
                             .extension({0x21, 0xFF, 2, 1, 1, 0})
                             .frame(pixelAt(3, r));
    EXPECT_EQ(frameOf(file, 0), "   r");
}

} // namespace FrameCodecLib
