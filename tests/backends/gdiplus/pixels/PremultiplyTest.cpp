#include "gdiplus/pixels/Premultiply.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace GdiplusBackend;

TEST(Premultiply, EqualsTheRoundedDivisionForEveryPair) {
    for (std::uint32_t value = 0; value < 256; ++value)
        for (std::uint32_t alpha = 0; alpha < 256; ++alpha)
            ASSERT_EQ(scaleByAlpha(value, alpha), (value * alpha + 127) / 255) << value << ' ' << alpha;
}

TEST(Premultiply, ScalesEachChannelOnItsOwn) {
    for (std::uint32_t value = 0; value < 256; ++value)
        for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
            const std::uint32_t other = 255 - value;
            const std::uint32_t scaled = scaleByAlpha(value, alpha);
            const std::uint32_t otherScaled = scaleByAlpha(other, alpha);
            ASSERT_EQ(premultiplyArgb(alpha << 24 | value << 16 | other << 8 | value),
                      alpha << 24 | scaled << 16 | otherScaled << 8 | scaled)
                << value << ' ' << alpha;
        }
}

TEST(Premultiply, AddsTheBytesOfPairsUpTo255) {
    for (std::uint32_t one = 0; one < 256; ++one)
        for (std::uint32_t other = 0; other < 256; ++other)
            ASSERT_EQ(addPairs(one << 16 | other, other << 16 | (255 - one)),
                      std::min(255U, one + other) << 16 | std::min(255U, other + 255 - one))
                << one << ' ' << other;
}

TEST(Premultiply, UnpremultipliesByTheTruncatedQuotient) {
    for (std::uint32_t value = 0; value < 256; ++value)
        for (std::uint32_t alpha = 1; alpha < 256; ++alpha)
            ASSERT_EQ(unpremultiply(value, alpha), std::min(255U, value * (255U * 65536U / alpha) >> 16))
                << value << ' ' << alpha;
}

TEST(Premultiply, RoundTripLosesWhatTheRecordedPlatformLoses) {
    EXPECT_EQ(unpremultiplyArgb(premultiplyArgb(0x80402010)), 0x803F1F0FU);
}

TEST(Premultiply, OpaqueColoursPassUnchangedBothWays) {
    for (std::uint32_t value = 0; value < 256; ++value) {
        const std::uint32_t argb = 0xFF000000 | value << 16 | (255 - value) << 8 | value / 2;
        EXPECT_EQ(premultiplyArgb(argb), argb);
        EXPECT_EQ(unpremultiplyArgb(argb), argb);
    }
}

TEST(Premultiply, UnpremultiplyingKeepsTheValueAtAlphaZeroAndNeverExceeds255) {
    EXPECT_EQ(unpremultiply(77, 0), 77U);
    EXPECT_EQ(unpremultiply(200, 100), 255U);
}
