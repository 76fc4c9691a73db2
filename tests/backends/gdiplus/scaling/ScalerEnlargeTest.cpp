#include "backends/gdiplus/scaling/Pictures.h"

namespace GdiplusBackend::ScalingTest {

namespace {

class Enlarge : public FilteredScale {};

} // namespace

TEST_P(Enlarge, OpaqueWhiteHasNoFadedEdges) {
    const Picture white = Picture::filled(17, 11, gray(255));
    for (const auto& [width, height] : {std::pair{170, 110}, std::pair{18, 12}, std::pair{100, 11}})
        EXPECT_EQ(worstDifference(scaled(white, width, height, kernel(), opacity()),
                                  Picture::filled(width, height, gray(255))),
                  0);
}

TEST_P(Enlarge, AgreesWithTheDefinition) {
    const Picture source = noise(23, 19);
    for (const Region& region : {Region{0, 0, 23, 19}, Region{3.3, 2.7, 9.5, 11.25}, Region{-5.5, -3, 20, 14},
                                 Region{15, 12, 15.5, 20}, Region{0.5, 0.5, 22, 18}, Region{5, 3, 3, 3}}) {
        const Picture expected = referenceScaled(source, region, 57, 61, kernel(), opacity());
        EXPECT_LE(worstDifference(scaled(source, region, 57, 61, kernel(), opacity()), expected), 1)
            << region.x << ' ' << region.y;
    }
}

TEST_P(Enlarge, AgreesWithTheDefinitionForAFewPixels) {
    const Picture source = noise(23, 19);
    for (const Region& region : {Region{0, 0, 1, 19}, Region{4.3, 2, 1.5, 1}, Region{7.45, 9.5, 0.01, 0.02},
                                 Region{22, 18, 1, 1}, Region{-2, -2, 2, 2}, Region{9, 2, 2, 15}}) {
        const Picture expected = referenceScaled(source, region, 40, 37, kernel(), opacity());
        EXPECT_LE(worstDifference(scaled(source, region, 40, 37, kernel(), opacity()), expected), 1)
            << region.x << ' ' << region.y;
    }
}

TEST_P(Enlarge, AgreesWithTheDefinitionWhereOneDirectionShrinks) {
    const Picture source = noise(60, 20);
    const Picture expected = referenceScaled(source, whole(source), 25, 50, kernel(), opacity());
    EXPECT_LE(worstDifference(scaled(source, 25, 50, kernel(), opacity()), expected), 1);
}

TEST_P(Enlarge, ADirectionOfEqualSizeIsLeftAlone) {
    const Picture source =
        Picture::painted(40, 30, [](int x, int y) { return gray((x * 7 + y) % 2 == 0 ? 255 : 0); });
    const Picture taller = scaled(source, 40, 60, kernel(), opacity());
    for (int y = 0; y < 60; ++y)
        for (int x = 2; x < 40; ++x)
            EXPECT_EQ(taller.at(x, y), taller.at(x - 2, y));
}

TEST_P(Enlarge, APixelLandsWhereItWas) {
    for (const int side : {41, 60, 123, 200}) {
        Picture source = Picture::filled(40, 40, gray(100));
        source.set(13, 29, gray(200));
        const Spot spot = spotOn(scaled(source, side, side, kernel(), opacity()), 100);
        EXPECT_NEAR(spot.x, 13.5 * side / 40, 0.05) << side;
        EXPECT_NEAR(spot.y, 29.5 * side / 40, 0.05) << side;
    }
}

INSTANTIATE_TEST_SUITE_P(Scaler, Enlarge, everyFilter(), filterName);

class PremultipliedScale : public testing::TestWithParam<std::tuple<Kernel, int>> {};

TEST_P(PremultipliedScale, NoColourExceedsItsAlpha) {
    const auto [kernel, side] = GetParam();
    const Picture target = scaled(noise(64, 64), side, side, kernel, Opacity::Transparent);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            for (std::size_t sample = 0; sample < 3; ++sample)
                ASSERT_LE(target.at(x, y)[sample], target.at(x, y)[3]) << x << ' ' << y;
}

TEST_P(PremultipliedScale, WhiteStaysWhiteHoweverTransparentItIs) {
    const auto [kernel, side] = GetParam();
    Picture source = noise(64, 64);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x) {
            const int alpha = source.at(x, y)[3];
            source.set(x, y, {alpha, alpha, alpha, alpha});
        }
    const Picture target = scaled(source, side, side, kernel, Opacity::Transparent);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const int alpha = target.at(x, y)[3];
            ASSERT_EQ(target.at(x, y), (Pixel{alpha, alpha, alpha, alpha})) << x << ' ' << y;
        }
}

TEST_P(PremultipliedScale, TransparentNeighboursHaveNoColour) {
    // The left half is transparent, the right half opaque red: between them only red fades.
    const auto [kernel, side] = GetParam();
    const Picture source = Picture::painted(64, 64, [](int x, int) {
        return x < 32 ? Pixel{0, 0, 0, 0} : Pixel{0, 0, 255, 255};
    });
    const Picture target = scaled(source, side, side, kernel, Opacity::Transparent);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const int alpha = target.at(x, y)[3];
            ASSERT_EQ(target.at(x, y), (Pixel{0, 0, alpha, alpha})) << x << ' ' << y;
        }
    EXPECT_EQ(target.at(0, 0)[3], 0);
    EXPECT_EQ(target.at(side - 1, 0)[3], 255);
}

INSTANTIATE_TEST_SUITE_P(Scaler, PremultipliedScale,
                         testing::Combine(testing::Values(Kernel::Linear, Kernel::Cubic),
                                          testing::Values(7, 16, 30, 63, 65, 150)));

} // namespace GdiplusBackend::ScalingTest
