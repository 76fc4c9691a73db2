#include "backends/gdiplus/scaling/Pictures.h"

#include <limits>

namespace GdiplusBackend::ScalingTest {

namespace {

Gdiplus::Status statusOf(const Region& region) {
    const Picture source = Picture::filled(8, 8, gray(1));
    Picture target(4, 4);
    const Result<void> result =
        scale({source.constView(), region, Kernel::Linear, Opacity::Opaque}, target.view());
    return result ? Gdiplus::Ok : result.error().status;
}

} // namespace

TEST(ScaleRefusal, RegionsWithoutExtentAreInvalid) {
    EXPECT_EQ(statusOf({0, 0, 0, 8}), Gdiplus::InvalidParameter);
    EXPECT_EQ(statusOf({0, 0, 8, -1}), Gdiplus::InvalidParameter);
}

TEST(ScaleRefusal, RegionsThatAreNoNumbersAreInvalid) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nothing = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(statusOf({nothing, 0, 8, 8}), Gdiplus::InvalidParameter);
    EXPECT_EQ(statusOf({0, 0, nothing, 8}), Gdiplus::InvalidParameter);
    EXPECT_EQ(statusOf({0, 0, infinity, 8}), Gdiplus::InvalidParameter);
    EXPECT_EQ(statusOf({0, -infinity, 8, infinity}), Gdiplus::InvalidParameter);
}

TEST(ScaleRefusal, RegionsFarBeyondTheBorderAreInvalid) {
    EXPECT_EQ(statusOf({1e9, 0, 8, 8}), Gdiplus::InvalidParameter);
    EXPECT_EQ(statusOf({0, 0, 8, 1e9}), Gdiplus::InvalidParameter);
    EXPECT_EQ(statusOf({0, 65530, 8, 8}), Gdiplus::Ok);
}

TEST(ScaleRefusal, EmptyPicturesAreInvalid) {
    Picture target(4, 4);
    EXPECT_EQ(scale({ConstPixelView{}, {0, 0, 8, 8}, Kernel::Linear, Opacity::Opaque}, target.view())
                  .error()
                  .status,
              Gdiplus::InvalidParameter);
    const Picture source = Picture::filled(8, 8, gray(1));
    EXPECT_EQ(scale({source.constView(), whole(source), Kernel::Linear, Opacity::Opaque}, PixelView{})
                  .error()
                  .status,
              Gdiplus::InvalidParameter);
}

} // namespace GdiplusBackend::ScalingTest
