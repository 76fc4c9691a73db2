#include "gdiplus/encoders/colorquantizer/PaletteFitter.h"

#include "backends/gdiplus/encoders/TestPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace GdiplusBackend {

namespace {

ColorBin bin(double count, Gdiplus::ARGB colour) {
    return {count, {count * (colour >> 16 & 255), count * (colour >> 8 & 255), count * (colour & 255)}};
}

} // namespace

TEST(PaletteFitter, FewBinsGetAnEntryEach) {
    const std::vector<ColorBin> bins = {bin(10, 0xFF102030), bin(1, 0xFF80C0F0), bin(1000, 0xFFFF0000)};
    EXPECT_THAT(fitPalette(bins, 256), testing::UnorderedElementsAre(0xFF102030, 0xFF80C0F0, 0xFFFF0000));
}

TEST(PaletteFitter, ClustersFarApartBecomeTheirMeans) {
    const std::vector<ColorBin> bins = {bin(1, 0xFF000000), bin(3, 0xFF040404), bin(2, 0xFFF00000),
                                        bin(2, 0xFFF00008)};
    EXPECT_THAT(fitPalette(bins, 2), testing::UnorderedElementsAre(0xFF030303, 0xFFF00004));
}

TEST(PaletteFitter, OneEntryIsTheMeanOfAll) {
    const std::vector<ColorBin> bins = {bin(1, 0xFF000000), bin(1, 0xFF6464C8)};
    EXPECT_THAT(fitPalette(bins, 1), testing::ElementsAre(0xFF323264));
}

} // namespace GdiplusBackend
