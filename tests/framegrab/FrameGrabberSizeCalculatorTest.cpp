#include "framegrab/FrameGrabberSizeCalculator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::Size;

constexpr std::int32_t longest = std::numeric_limits<std::int32_t>::max();

/// As "width x height", so that a failed expectation is readable.
std::string outputSize(Size source, Size requested) {
    const Size size = FrameGrabberSizeCalculator::calculateOutputSize(source, requested);
    return std::to_string(size.width) + " x " + std::to_string(size.height);
}

std::string refusalOf(Size source, Size requested) {
    try {
        return "no refusal, but " + outputSize(source, requested);
    } catch (const std::invalid_argument& refusal) {
        return refusal.what();
    }
}

constexpr auto negativeRequest =
    "FrameGrabberSizeCalculator::calculateOutputSize: requestedSize cannot be negative";
constexpr auto emptySource = "FrameGrabberSizeCalculator::calculateOutputSize: sourceImageSize must be > 0";

} // namespace

TEST(FrameGrabberSizeCalculator, NoRequestYieldsTheSourceSize) {
    EXPECT_EQ(outputSize({640, 480}, {0, 0}), "640 x 480");
}

TEST(FrameGrabberSizeCalculator, AWidthAloneDecidesTheHeight) {
    EXPECT_EQ(outputSize({640, 480}, {320, 0}), "320 x 240");
}

TEST(FrameGrabberSizeCalculator, AHeightAloneDecidesTheWidth) {
    EXPECT_EQ(outputSize({640, 480}, {0, 240}), "320 x 240");
}

TEST(FrameGrabberSizeCalculator, AComputedWidthIsTruncated) {
    EXPECT_EQ(outputSize({640, 480}, {0, 100}), "133 x 100");
    EXPECT_EQ(outputSize({2, 3}, {0, 100}), "66 x 100");
    EXPECT_EQ(outputSize({2, 3}, {100, 100}), "66 x 100");
}

TEST(FrameGrabberSizeCalculator, AComputedHeightIsTruncated) {
    EXPECT_EQ(outputSize({3, 2}, {100, 0}), "100 x 66");
    EXPECT_EQ(outputSize({3, 2}, {100, 100}), "100 x 66");
}

TEST(FrameGrabberSizeCalculator, AWiderSourceIsHeldByTheWidth) {
    EXPECT_EQ(outputSize({640, 360}, {100, 100}), "100 x 56");
}

TEST(FrameGrabberSizeCalculator, ATallerSourceIsHeldByTheHeight) {
    EXPECT_EQ(outputSize({480, 640}, {100, 100}), "75 x 100");
}

TEST(FrameGrabberSizeCalculator, ARequestOfTheSameShapeComesBackUnchanged) {
    EXPECT_EQ(outputSize({1920, 1080}, {16, 9}), "16 x 9");
}

TEST(FrameGrabberSizeCalculator, ASmallSourceIsEnlarged) {
    EXPECT_EQ(outputSize({100, 100}, {400, 400}), "400 x 400");
    EXPECT_EQ(outputSize({100, 50}, {400, 400}), "400 x 200");
    EXPECT_EQ(outputSize({50, 100}, {0, 400}), "200 x 400");
}

TEST(FrameGrabberSizeCalculator, AVeryFlatSourceLosesItsHeight) {
    EXPECT_EQ(outputSize({1000, 3}, {10, 10}), "10 x 0");
    EXPECT_EQ(outputSize({1000, 3}, {10, 0}), "10 x 0");
}

TEST(FrameGrabberSizeCalculator, AVeryNarrowSourceLosesItsWidth) {
    EXPECT_EQ(outputSize({3, 1000}, {10, 10}), "0 x 10");
    EXPECT_EQ(outputSize({3, 1000}, {0, 10}), "0 x 10");
}

TEST(FrameGrabberSizeCalculator, ANegativeRequestIsRefused) {
    EXPECT_EQ(refusalOf({640, 480}, {-1, 10}), negativeRequest);
    EXPECT_EQ(refusalOf({640, 480}, {10, -1}), negativeRequest);
}

TEST(FrameGrabberSizeCalculator, ASourceWithoutASizeIsRefused) {
    EXPECT_EQ(refusalOf({0, 480}, {10, 10}), emptySource);
    EXPECT_EQ(refusalOf({640, 0}, {10, 10}), emptySource);
    EXPECT_EQ(refusalOf({-640, 480}, {10, 10}), emptySource);
    EXPECT_EQ(refusalOf({640, -480}, {10, 10}), emptySource);
}

TEST(FrameGrabberSizeCalculator, ASourceWithoutASizeIsRefusedAlsoWithoutARequest) {
    EXPECT_EQ(refusalOf({0, 0}, {0, 0}), emptySource);
}

TEST(FrameGrabberSizeCalculator, ANegativeRequestIsToldBeforeASourceWithoutASize) {
    EXPECT_EQ(refusalOf({0, 0}, {-1, -1}), negativeRequest);
}

TEST(FrameGrabberSizeCalculator, ALengthBeyondTheRangeIsHeldAtItsEnd) {
    EXPECT_EQ(outputSize({longest, 1}, {0, 2}), std::to_string(longest) + " x 2");
    EXPECT_EQ(outputSize({1, longest}, {2, 0}), "2 x " + std::to_string(longest));
}

} // namespace KestoThumbnailer
