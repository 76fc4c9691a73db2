#include "backends/gdiplus/scaling/Pictures.h"

#include <cmath>

namespace GdiplusBackend::ScalingTest {

namespace {

class Shrink : public FilteredScale {};

Picture checkerboard(int side) {
    return Picture::painted(side, side, [](int x, int y) { return gray((x + y) % 2 == 0 ? 255 : 0); });
}

/// The largest distance from medium gray.
double farthestFromGray(const Picture& picture) {
    double farthest = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            farthest = std::max(farthest, std::abs(picture.at(x, y)[0] - 127.5));
    return farthest;
}

} // namespace

TEST_P(Shrink, CheckerboardBecomesUniformGrayUpToItsBorders) {
    for (const int factor : {8, 16, 100}) {
        const Picture target = scaled(checkerboard(factor * 10), 10, 10, kernel(), opacity());
        EXPECT_LE(farthestFromGray(target), 1) << factor;
    }
    EXPECT_LE(farthestFromGray(scaled(checkerboard(220), 40, 40, kernel(), opacity())), 1) << 5.5;
}

TEST_P(Shrink, CheckerboardShrunkALittleIsGrayButForWhatItsKernelLeavesOver) {
    for (const int factor : {2, 3}) {
        const Picture source = checkerboard(factor * 12);
        const Picture target = scaled(source, 12, 12, kernel(), opacity());
        EXPECT_LE(
            worstDifference(target, referenceScaled(source, whole(source), 12, 12, kernel(), opacity())), 1);
        Picture inner = scaled(source, whole(source), 12, 12, kernel(), opacity());
        for (const int x : {0, 11})
            for (const int y : {0, 11})
                inner.set(x, y, gray(127)); // repeating a white corner makes the corner lighter
        EXPECT_LE(farthestFromGray(inner), 2) << factor;
    }
}

TEST_P(Shrink, AgreesWithTheDefinitionBelowAFactorOfFour) {
    const Picture source = noise(95, 70);
    for (const auto& [width, height] :
         {std::pair{94, 69}, std::pair{48, 35}, std::pair{41, 31}, std::pair{24, 18}, std::pair{95, 30},
          std::pair{30, 70}, std::pair{3, 70}}) {
        const Region region = {0, 0, std::min(95.0, width * 3.9), 70};
        const Picture expected = referenceScaled(source, region, width, height, kernel(), opacity());
        EXPECT_LE(worstDifference(scaled(source, region, width, height, kernel(), opacity()), expected), 1)
            << width << " by " << height;
    }
}

TEST_P(Shrink, AgreesWithTheDefinitionForFractionalRegions) {
    const Picture source = noise(95, 70);
    for (const Region& region :
         {Region{3.25, 7.5, 50.5, 40.125}, Region{0.5, 0.5, 94, 69}, Region{20.9, 30.1, 21, 20},
          Region{-6.5, -4.25, 40, 30}, Region{70.5, 50.5, 40, 40}, Region{-10, -10, 115, 90},
          Region{200, 10, 40, 30}}) {
        const Picture expected = referenceScaled(source, region, 33, 29, kernel(), opacity());
        EXPECT_LE(worstDifference(scaled(source, region, 33, 29, kernel(), opacity()), expected), 1)
            << region.x << ' ' << region.y;
    }
}

TEST_P(Shrink, LargeShrinksOfSmoothPicturesAgreeWithTheDefinition) {
    const Picture source = Picture::painted(407, 311, [](int x, int y) {
        return Pixel{static_cast<int>(127.5 + 100 * std::sin(x / 40.0)), x * 200 / 407, y * 200 / 311, 255};
    });
    for (const Region& region :
         {Region{0, 0, 407, 311}, Region{11.3, 5.7, 307.5, 260.25}, Region{101, 55, 200, 200}})
        for (const auto& [width, height] : {std::pair{50, 40}, std::pair{30, 17}, std::pair{17, 40}}) {
            const Picture expected = referenceScaled(source, region, width, height, kernel(), opacity());
            EXPECT_LE(worstDifference(scaled(source, region, width, height, kernel(), opacity()), expected),
                      2)
                << region.x << ": " << width << " by " << height;
        }
}

TEST_P(Shrink, GradientsKeepTheirEndPoints) {
    const Picture across = Picture::painted(2550, 40, [](int x, int) { return gray(x / 10); });
    const Picture down = Picture::painted(40, 2550, [](int, int y) { return gray(y / 10); });
    for (const int length : {1275, 600, 255, 100, 51}) {
        const double half = 255.0 / length / 2;
        const Picture row = scaled(across, length, 20, kernel(), opacity());
        EXPECT_NEAR(row.at(0, 10)[0], half - 0.5, 2) << length;
        EXPECT_NEAR(row.at(length / 2, 10)[0], 127, 2 + half) << length;
        EXPECT_NEAR(row.at(length - 1, 10)[0], 254.5 - half, 2) << length;
        const Picture column = scaled(down, 20, length, kernel(), opacity());
        EXPECT_NEAR(column.at(10, 0)[0], half - 0.5, 2) << length;
        EXPECT_NEAR(column.at(10, length - 1)[0], 254.5 - half, 2) << length;
    }
}

TEST_P(Shrink, MirroredPicturesGiveMirroredResults) {
    const auto paint = [](int x, int y) {
        return Pixel{x * 255 / 799, y * 255 / 599, (x + y) * 255 / 1398, 255};
    };
    const Picture source = Picture::painted(800, 600, paint);
    const Picture turned = Picture::painted(800, 600, [&](int x, int y) { return paint(799 - x, 599 - y); });
    for (const int factor : {2, 3, 5, 7, 20}) {
        const int width = 800 / factor;
        const int height = 600 / factor;
        const Picture straight = scaled(source, width, height, kernel(), opacity());
        const Picture mirrored = scaled(turned, width, height, kernel(), opacity());
        const Picture back = Picture::painted(
            width, height, [&](int x, int y) { return mirrored.at(width - 1 - x, height - 1 - y); });
        EXPECT_LE(worstDifference(straight, back), 1) << factor;
    }
}

TEST_P(Shrink, APixelLandsWhereItWas) {
    for (const int side : {300, 301, 211, 160}) {
        Picture source = Picture::filled(600, 600, gray(20));
        source.set(177, 422, gray(255));
        const Spot spot = spotOn(scaled(source, side, side, kernel(), opacity()), 20);
        EXPECT_NEAR(spot.x, 177.5 * side / 600, 0.05) << side;
        EXPECT_NEAR(spot.y, 422.5 * side / 600, 0.05) << side;
    }
}

TEST_P(Shrink, ASpotLandsWhereItWasInLargeShrinks) {
    for (const int side : {130, 97, 60, 31}) {
        Picture source = Picture::filled(601, 600, gray(100));
        for (int y = 380; y < 420; ++y)
            for (int x = 163; x < 203; ++x)
                source.set(x, y, gray(180));
        const Region region = {1.5, 2.25, 597.75, 590.5};
        const Spot spot = spotOn(scaled(source, region, side, side, kernel(), opacity()), 100);
        EXPECT_NEAR(spot.x, (183 - region.x) * side / region.width, 0.05) << side;
        EXPECT_NEAR(spot.y, (400 - region.y) * side / region.height, 0.05) << side;
    }
}

TEST_P(Shrink, ConstantColoursStayExactly) {
    for (const Pixel& pixel : {Pixel{0, 0, 0, 255}, Pixel{255, 255, 255, 255}, Pixel{1, 127, 254, 255},
                               Pixel{13, 77, 128, 129}, Pixel{0, 0, 0, 0}, Pixel{1, 1, 1, 1}}) {
        Pixel expected = pixel;
        if (opacity() == Opacity::Opaque)
            expected[3] = 255;
        for (const auto& [width, height] :
             {std::pair{70, 50}, std::pair{99, 33}, std::pair{13, 9}, std::pair{1, 1}, std::pair{2, 100},
              std::pair{150, 170}, std::pair{101, 71}})
            EXPECT_EQ(
                worstDifference(scaled(Picture::filled(100, 70, pixel), width, height, kernel(), opacity()),
                                Picture::filled(width, height, expected)),
                0)
                << pixel[0] << ": " << width << " by " << height;
    }
}

TEST_P(Shrink, ReadsNothingOfALargePictureOutsideItsRegion) {
    // White beyond what the kernel may reach would show in the part if it were read and weighted.
    const Picture source = Picture::painted(500, 400, [](int x, int y) {
        const bool near = x >= 190 && x < 310 && y >= 140 && y < 260;
        return gray(near ? 90 : 255);
    });
    for (const int side : {200, 60, 30, 12})
        EXPECT_EQ(worstDifference(scaled(source, {230, 180, 40, 40}, side, side, kernel(), opacity()),
                                  Picture::filled(side, side, gray(90))),
                  0)
            << side;
}

INSTANTIATE_TEST_SUITE_P(Scaler, Shrink, everyFilter(), filterName);

} // namespace GdiplusBackend::ScalingTest
