#include "gif/CanvasPlan.h"

#include "support/GifFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

namespace GifBackend {

void PrintTo(const CanvasStep& step, std::ostream* out) {
    *out << (step.kind == CanvasStep::Kind::Draw ? "draw " : "clear ") << step.frame;
}

namespace {

using TestSupport::GifFile;
using TestSupport::GifFrame;
using Steps = std::vector<CanvasStep>;

constexpr int side = 8;

class MemoryBytes : public IBytes {
public:
    explicit MemoryBytes(std::vector<unsigned char> content)
        : bytes(std::move(content)) {}

    std::size_t read(std::uint64_t place, std::span<std::byte> out) override {
        if (place >= bytes.size())
            return 0;
        const auto rest = std::as_bytes(std::span(bytes)).subspan(static_cast<std::size_t>(place));
        const std::size_t count = std::min(rest.size(), out.size());
        std::copy_n(rest.begin(), count, out.begin());
        return count;
    }

private:
    std::vector<unsigned char> bytes;
};

/// From a blank canvas, or from that before frame `kept`, to that before the last frame.
CanvasPlan planFor(const std::vector<GifFrame>& specs, std::size_t kept = 0,
                   const std::optional<Box>& covered = std::nullopt) {
    GifFile file(side, side, {0x000000, 0xFF0000});
    for (const GifFrame& spec : specs)
        file.frame(spec);
    MemoryBytes bytes(file.bytes());
    FrameList frames(bytes);
    EXPECT_TRUE(frames.open());
    return planCanvas(frames, kept, frames.count() - 1, covered);
}

GifFrame full(int disposal = 0) {
    return {.width = side, .height = side, .disposal = disposal};
}

GifFrame part(int left, int width, int disposal = 0) {
    return {.left = left, .width = width, .height = 2, .disposal = disposal};
}

GifFrame seeThrough(GifFrame frame) {
    frame.transparentIndex = 0;
    return frame;
}

CanvasStep drawn(std::size_t frame) {
    return {frame, CanvasStep::Kind::Draw};
}

CanvasStep cleared(std::size_t frame) {
    return {frame, CanvasStep::Kind::Clear};
}

} // namespace

TEST(CanvasPlan, DrawsWhatStays) {
    const CanvasPlan plan = planFor({seeThrough(full()), seeThrough(full()), full()});
    EXPECT_TRUE(plan.startsBlank);
    EXPECT_EQ(plan.steps, (Steps{drawn(0), drawn(1)}));
}

TEST(CanvasPlan, BeginsWithTheLastFrameThatHidesAllBefore) {
    const CanvasPlan plan = planFor({full(), seeThrough(full()), full(), part(0, 2), full()});
    EXPECT_TRUE(plan.startsBlank);
    EXPECT_EQ(plan.steps, (Steps{drawn(2), drawn(3)}));
}

TEST(CanvasPlan, BeginsBlankWhereTheWholeScreenWasCleared) {
    const CanvasPlan plan = planFor({full(), full(2), part(0, 2), full()});
    EXPECT_TRUE(plan.startsBlank);
    EXPECT_EQ(plan.steps, (Steps{drawn(2)}));
}

TEST(CanvasPlan, FramesThatAreTakenAwayAreNeverDrawn) {
    EXPECT_EQ(planFor({full(), part(0, 4, 3), part(2, 4, 2), full()}).steps, (Steps{drawn(0), cleared(2)}));
}

TEST(CanvasPlan, FramesHiddenByLaterOnesAreLeftOut) {
    EXPECT_EQ(planFor({seeThrough(full()), part(1, 2), part(0, 4), full()}).steps,
              (Steps{drawn(0), drawn(2)}));
    EXPECT_EQ(planFor({seeThrough(full()), part(1, 2), part(0, 4, 2), full()}).steps,
              (Steps{drawn(0), cleared(2)}));
}

TEST(CanvasPlan, ATransparentFrameHidesNothing) {
    EXPECT_EQ(planFor({part(1, 2), seeThrough(part(0, 4)), full()}).steps, (Steps{drawn(0), drawn(1)}));
}

TEST(CanvasPlan, WhatWillBeCoveredIsLeftOut) {
    EXPECT_EQ(planFor({part(1, 2), part(5, 2), full()}, 0, Box{0, 0, 4, 4}).steps, (Steps{drawn(1)}));
    const CanvasPlan nothing = planFor({part(1, 2), full()}, 0, Box{0, 0, side, side});
    EXPECT_TRUE(nothing.startsBlank);
    EXPECT_EQ(nothing.steps, Steps());
}

TEST(CanvasPlan, GoesOnFromAKeptCanvas) {
    const CanvasPlan plan = planFor({full(), part(0, 2), part(2, 2), part(4, 2), full()}, 2);
    EXPECT_FALSE(plan.startsBlank);
    EXPECT_EQ(plan.steps, (Steps{drawn(2), drawn(3)}));
}

} // namespace GifBackend
