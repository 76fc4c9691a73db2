#include "gdiplus/pixels/Premultiply.h"

#include <gtest/gtest.h>

using namespace GdiplusBackend;

TEST(Premultiply, EqualsTheRoundedDivisionForEveryPair) {
    for (std::uint32_t value = 0; value < 256; ++value)
        for (std::uint32_t alpha = 0; alpha < 256; ++alpha)
            ASSERT_EQ(scaleByAlpha(value, alpha), (value * alpha + 127) / 255) << value << ' ' << alpha;
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
