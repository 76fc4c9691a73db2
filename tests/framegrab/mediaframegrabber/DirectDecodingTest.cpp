#include "framegrab/mediaframegrabber/MediaFrameGrabber_UsesFrameCodecLibDirectly.h"

#include "framegrab/ScriptedDecoders.h"

#include "support/GdiplusUser.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::Size;
using TestSupport::ScriptedDecoders;
using Frame = boost::shared_ptr<KestoRenderLib::MetaBitmap>;
using Living = ScriptedDecoders::Living;
using Time = boost::rational<__int64>;

class DirectDecoding : public ::testing::Test {
protected:
    Frame frame(Size size = {}, bool keepOrientation = true) {
        if (!grabber)
            grabber.emplace("file.mp4", 5);
        return grabber->frameAtTime(Time(1, 3), keepOrientation, size);
    }

    TestSupport::GdiplusUser gdiplus;
    ScriptedDecoders decoders;
    std::optional<MediaFrameGrabber_UsesFrameCodecLibDirectly> grabber;
};

Gdiplus::ARGB pixelOf(const Frame& frame, int x, int y) {
    return TestSupport::pixelOf(*frame->AsGdiplusBitmap(), x, y);
}

} // namespace

TEST_F(DirectDecoding, OneDecoderIsOpenedByAFactoryThatGoesAtOnce) {
    frame();
    frame();
    ASSERT_EQ(decoders.opened.size(), 1U);
    EXPECT_EQ(decoders.opened[0].fileName, "file.mp4");
    EXPECT_EQ(decoders.opened[0].streamIndex, 5);
    EXPECT_EQ(decoders.opened[0].decodersAtOnce, 1);
    EXPECT_EQ(decoders.opened[0].factories, 1);
    EXPECT_EQ(decoders.living, (Living{.decoders = 1}));
}

TEST_F(DirectDecoding, TheTimeIsAskedForAsItIs) {
    frame();
    ASSERT_EQ(decoders.asked.size(), 1U);
    EXPECT_EQ(decoders.asked[0].time, Time(1, 3));
    EXPECT_EQ(decoders.asked[0].flags, 0);
}

TEST_F(DirectDecoding, AFrameIsACopyThatOutlivesAllOfTheDecoder) {
    const Frame copy = frame();
    grabber.reset();
    EXPECT_EQ(decoders.living, Living());
    ASSERT_EQ(copy->Size(), (Size{4, 2}));
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(pixelOf(copy, x, y), ScriptedDecoders::pixelAt(x, y));
}

TEST_F(DirectDecoding, AFrameIsFittedIntoTheSizeAlsoALargerOne) {
    decoders.frameSize = {40, 20};
    EXPECT_EQ(frame({10, 10})->Size(), (Size{10, 5}));
    EXPECT_EQ(frame({0, 40})->Size(), (Size{80, 40}));
}

TEST_F(DirectDecoding, WithoutItsOrientationAFrameIsUpsideDownAlsoWhenItWasScaled) {
    const Frame copy = frame({}, /*keepOrientation=*/false);
    EXPECT_EQ(pixelOf(copy, 2, 0), ScriptedDecoders::pixelAt(2, 1));
    EXPECT_EQ(pixelOf(copy, 2, 1), ScriptedDecoders::pixelAt(2, 0));
    decoders.frameSize = {64, 64};
    const Frame scaled = frame({32, 32}, /*keepOrientation=*/false);
    EXPECT_GT(pixelOf(scaled, 16, 0) & 0xFF00U, pixelOf(scaled, 16, 31) & 0xFF00U);
}

TEST_F(DirectDecoding, ASizeThatIsRefusedLeavesNoFrameBehind) {
    EXPECT_THROW(frame({-1, 4}), std::invalid_argument);
    EXPECT_EQ(decoders.living, (Living{.decoders = 1}));
    EXPECT_TRUE(frame());
}

TEST_F(DirectDecoding, AScalingThatFailsLeavesNoFrameBehind) {
    decoders.frameSize = {1000, 3};
    EXPECT_THROW(frame({10, 10}), std::runtime_error);
    EXPECT_EQ(decoders.living, (Living{.decoders = 1}));
}

TEST_F(DirectDecoding, WithoutADecoderEveryFrameIsEmpty) {
    decoders.canOpen = false;
    EXPECT_FALSE(frame());
    EXPECT_FALSE(frame({-1, -1}, /*keepOrientation=*/false));
}

TEST_F(DirectDecoding, WithoutAFrameTheResultIsEmpty) {
    decoders.hasFrames = false;
    EXPECT_FALSE(frame({}, /*keepOrientation=*/false));
}

TEST_F(DirectDecoding, AFrameThatCannotBeReadIsEmptyAndGoes) {
    decoders.canLock = false;
    EXPECT_FALSE(frame({}, /*keepOrientation=*/false));
    EXPECT_EQ(decoders.living, (Living{.decoders = 1}));
    decoders.canLock = true;
    decoders.hasPixels = false;
    EXPECT_FALSE(frame());
    EXPECT_EQ(decoders.living, (Living{.decoders = 1}));
}

} // namespace KestoThumbnailer
