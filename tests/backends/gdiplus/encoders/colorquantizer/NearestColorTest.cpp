#include "gdiplus/encoders/colorquantizer/NearestColor.h"

#include "backends/gdiplus/encoders/TestPicture.h"

#include <gtest/gtest.h>

namespace GdiplusBackend {

namespace {

int distance(Gdiplus::ARGB first, Gdiplus::ARGB second) {
    int sum = 0;
    for (const int shift : {0, 8, 16}) {
        const int byChannel =
            static_cast<int>(first >> shift & 255) - static_cast<int>(second >> shift & 255);
        sum += byChannel * byChannel;
    }
    return sum;
}

} // namespace

TEST(NearestColor, NoEntryIsNearer) {
    const auto palette = distinctColours(200);
    const NearestColor nearest(palette);
    for (int i = 0; i < 500; ++i) {
        const Gdiplus::ARGB colour = static_cast<Gdiplus::ARGB>(i) * 0x9E3779B1U | 0xFF000000;
        const int found = distance(palette.at(nearest.indexFor(colour)), colour);
        for (const Gdiplus::ARGB entry : palette)
            EXPECT_LE(found, distance(entry, colour));
    }
}

TEST(NearestColor, FirstOfEqualEntriesIsTaken) {
    const std::vector<Gdiplus::ARGB> palette = {0xFF000000, 0xFF808080, 0xFF808080};
    EXPECT_EQ(NearestColor(palette).indexFor(0xFF7F7F7F), 1);
}

TEST(NearestColor, FarthestColoursAreStillTold) {
    const std::vector<Gdiplus::ARGB> palette = {0xFF000000};
    EXPECT_EQ(NearestColor(palette).indexFor(0xFFFFFFFF), 0);
}

TEST(RememberedNearestColor, AnswersForTheMiddleOfSmallCubes) {
    const std::vector<Gdiplus::ARGB> palette = {0xFF000000, 0xFF646464, 0xFFFFFFFF};
    RememberedNearestColor nearest(palette);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(nearest.indexFor(0, 0, 0), 0);
        EXPECT_EQ(nearest.indexFor(102, 99, 101), 1);
        EXPECT_EQ(nearest.indexFor(255, 255, 255), 2);
    }
}

} // namespace GdiplusBackend
