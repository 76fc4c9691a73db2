#include "backends/gdiplus/scaling/Pictures.h"

namespace GdiplusBackend::ScalingTest {

namespace {

class ExtremeShape : public FilteredScale {};

Picture stripes(int width, int height) {
    return Picture::painted(width, height, [](int x, int y) { return gray((x + y) % 2 == 0 ? 200 : 100); });
}

void expectAll(const Picture& picture, int value, int tolerance) {
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            ASSERT_NEAR(picture.at(x, y)[0], value, tolerance) << x << ' ' << y;
            ASSERT_EQ(picture.at(x, y)[3], 255);
        }
}

} // namespace

TEST_P(ExtremeShape, OneColumnBecomesOnePixel) {
    expectAll(scaled(stripes(1, 30000), 1, 1, kernel(), opacity()), 150, 1);
}

TEST_P(ExtremeShape, OneRowBecomesAShorterRow) {
    expectAll(scaled(stripes(30000, 1), 160, 1, kernel(), opacity()), 150, 1);
}

TEST_P(ExtremeShape, TheWidestRowBecomesOnePixel) {
    expectAll(scaled(stripes(65535, 3), 1, 3, kernel(), opacity()), 150, 1);
}

TEST_P(ExtremeShape, OneColumnBecomesWideAndShort) {
    expectAll(scaled(stripes(1, 30000), 50, 40, kernel(), opacity()), 150, 1);
}

TEST_P(ExtremeShape, OnePixelFillsALargePicture) {
    const Picture large = scaled(Picture::filled(1, 1, {10, 20, 30, 255}), 400, 300, kernel(), opacity());
    EXPECT_EQ(worstDifference(large, Picture::filled(400, 300, {10, 20, 30, 255})), 0);
}

TEST_P(ExtremeShape, AWholePictureBecomesItsMean) {
    const Picture source = Picture::painted(200, 100, [](int x, int) { return gray(x < 100 ? 50 : 150); });
    expectAll(scaled(source, 1, 1, kernel(), opacity()), 100, 1);
}

TEST_P(ExtremeShape, ARegionFarOutsideShowsTheEdge) {
    const Picture source = Picture::painted(50, 40, [](int x, int) { return gray(x == 49 ? 240 : x); });
    for (const int side : {3, 20, 90})
        expectAll(scaled(source, {60000, 0, 40, 40}, side, side, kernel(), opacity()), 240, 0);
}

TEST_P(ExtremeShape, ARegionFarLargerThanThePictureIsMostlyEdge) {
    const Picture source = Picture::painted(40, 40, [](int x, int) { return gray(x < 20 ? 30 : 60); });
    const Picture target = scaled(source, {-1000, -1000, 2040, 2040}, 20, 20, kernel(), opacity());
    EXPECT_EQ(target.at(0, 0), gray(30));
    EXPECT_EQ(target.at(19, 19), gray(60));
}

INSTANTIATE_TEST_SUITE_P(Scaler, ExtremeShape, everyFilter(), filterName);

} // namespace GdiplusBackend::ScalingTest
