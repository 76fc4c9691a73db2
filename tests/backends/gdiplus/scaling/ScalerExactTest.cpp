#include "backends/gdiplus/scaling/Pictures.h"

#include <thread>

namespace GdiplusBackend::ScalingTest {

namespace {

class EqualSize : public testing::TestWithParam<Kernel> {};

Picture columnsNumbered(int width) {
    return Picture::painted(width, 1, [](int x, int) { return gray(x); });
}

std::vector<int> columnNumbers(const Picture& picture) {
    std::vector<int> numbers;
    numbers.reserve(static_cast<std::size_t>(picture.width));
    for (int x = 0; x < picture.width; ++x)
        numbers.push_back(picture.at(x, 0)[0]);
    return numbers;
}

} // namespace

TEST_P(EqualSize, IsAnExactCopy) {
    const Picture source = noise(37, 21);
    EXPECT_EQ(worstDifference(scaled(source, 37, 21, GetParam(), Opacity::Transparent), source), 0);
}

TEST_P(EqualSize, SetsTheFourthByteOfOpaquePixels) {
    const Picture source = Picture::filled(5, 4, {10, 20, 30, 7});
    const Picture expected = Picture::filled(5, 4, {10, 20, 30, 255});
    EXPECT_EQ(worstDifference(scaled(source, 5, 4, GetParam(), Opacity::Opaque), expected), 0);
}

TEST_P(EqualSize, CopiesAPartAtAWholeOffset) {
    const Picture source = noise(37, 21);
    const Picture part = scaled(source, {5, 3, 10, 8}, 10, 8, GetParam(), Opacity::Transparent);
    const Picture expected = Picture::painted(10, 8, [&](int x, int y) { return source.at(x + 5, y + 3); });
    EXPECT_EQ(worstDifference(part, expected), 0);
}

TEST_P(EqualSize, RepeatsTheEdgeBeyondThePicture) {
    const Picture source = noise(6, 5);
    const Picture wider = scaled(source, {-3, -2, 12, 9}, 12, 9, GetParam(), Opacity::Transparent);
    const Picture expected = Picture::painted(
        12, 9, [&](int x, int y) { return source.at(std::clamp(x - 3, 0, 5), std::clamp(y - 2, 0, 4)); });
    EXPECT_EQ(worstDifference(wider, expected), 0);
}

INSTANTIATE_TEST_SUITE_P(Scaler, EqualSize, testing::Values(Kernel::Nearest, Kernel::Linear, Kernel::Cubic));

TEST(NearestScale, TakesThePixelUnderEachCenter) {
    EXPECT_EQ(columnNumbers(scaled(columnsNumbered(2), 4, 1, Kernel::Nearest, Opacity::Opaque)),
              (std::vector<int>{0, 0, 1, 1}));
    EXPECT_EQ(columnNumbers(scaled(columnsNumbered(10), 3, 1, Kernel::Nearest, Opacity::Opaque)),
              (std::vector<int>{1, 5, 8}));
    EXPECT_EQ(columnNumbers(scaled(columnsNumbered(100), 10, 1, Kernel::Nearest, Opacity::Opaque)),
              (std::vector<int>{5, 15, 25, 35, 45, 55, 65, 75, 85, 95}));
}

TEST(NearestScale, FollowsFractionalRegionsAndRepeatsEdges) {
    EXPECT_EQ(columnNumbers(
                  scaled(columnsNumbered(10), {1.5, 0, 4, 1}, 4, 1, Kernel::Nearest, Opacity::Transparent)),
              (std::vector<int>{2, 3, 4, 5}));
    EXPECT_EQ(
        columnNumbers(scaled(columnsNumbered(4), {-2, 0, 8, 1}, 8, 1, Kernel::Nearest, Opacity::Transparent)),
        (std::vector<int>{0, 0, 0, 1, 2, 3, 3, 3}));
}

TEST(NearestScale, PicksRowsLikeColumns) {
    const Picture source = Picture::painted(1, 10, [](int, int y) { return gray(y); });
    const Picture target = scaled(source, 1, 3, Kernel::Nearest, Opacity::Opaque);
    EXPECT_EQ(target.at(0, 0), gray(1));
    EXPECT_EQ(target.at(0, 1), gray(5));
    EXPECT_EQ(target.at(0, 2), gray(8));
}

TEST(LinearScale, TwoPixelsBecomeFour) {
    const Picture source = Picture::painted(2, 1, [](int x, int) { return gray(x == 0 ? 40 : 200); });
    for (const Opacity opacity : {Opacity::Opaque, Opacity::Transparent})
        EXPECT_EQ(columnNumbers(scaled(source, 4, 1, Kernel::Linear, opacity)),
                  (std::vector<int>{40, 80, 160, 200}));
}

TEST(LinearScale, APictureOfManyPixelsDoublesLikeOneOfTwo) {
    const Picture source = Picture::painted(40, 40, [](int x, int) { return gray(x % 2 == 0 ? 40 : 200); });
    const Picture target = scaled(source, 80, 80, Kernel::Linear, Opacity::Opaque);
    for (int y = 0; y < 80; ++y) {
        EXPECT_EQ(target.at(0, y), gray(40));
        EXPECT_NEAR(target.at(1, y)[0], 80, 1);
        EXPECT_NEAR(target.at(2, y)[0], 160, 1);
        EXPECT_EQ(target.at(79, y), gray(200));
    }
}

class RowOrders : public FilteredScale {};

TEST_P(RowOrders, OfSourceAndTargetDoNotMatter) {
    const auto paint = [](int x, int y) { return Pixel{x * 4, y * 3, (x + y) % 100, 255}; };
    for (const auto& [width, height] :
         {std::pair{30, 20}, std::pair{9, 7}, std::pair{100, 130}, std::pair{60, 50}}) {
        const Picture expected = scaled(Picture::painted(60, 50, paint), width, height, kernel(), opacity());
        const Picture bottomUp = Picture::painted(60, 50, paint, RowOrder::BottomUp);
        Picture target(width, height, RowOrder::BottomUp);
        ASSERT_TRUE(scale({bottomUp.constView(), whole(bottomUp), kernel(), opacity()}, target.view()));
        EXPECT_EQ(worstDifference(target, expected), 0);
        EXPECT_TRUE(target.paddingIsUntouched());
    }
}

TEST_P(RowOrders, NeighboursOfASourceNeedNotBeReadable) {
    // A copy without padding, so that a checker of memory sees every read beyond a row's end.
    const Picture picture = noise(61, 47);
    const std::ptrdiff_t rowBytes = std::ptrdiff_t{picture.width} * 4;
    std::vector<std::byte> tight;
    for (int y = 0; y < picture.height; ++y)
        tight.insert(tight.end(), picture.constView().row(y), picture.constView().row(y) + rowBytes);
    const ConstPixelView view = {tight.data(), rowBytes, picture.width, picture.height,
                                 PixelFormat32bppPARGB};
    Picture target(25, 13);
    ASSERT_TRUE(scale({view, whole(picture), kernel(), opacity()}, target.view()));
    EXPECT_EQ(worstDifference(target, scaled(picture, 25, 13, kernel(), opacity())), 0);
}

TEST_P(RowOrders, ThreadsScaleAtTheSameTime) {
    const Picture source = noise(200, 150);
    const Picture small = scaled(source, 70, 50, kernel(), opacity());
    const Picture large = scaled(source, 300, 170, kernel(), opacity());
    std::vector<int> worst(4, 256);
    std::vector<std::thread> threads;
    threads.reserve(worst.size());
    for (int& difference : worst)
        threads.emplace_back([&source, &small, &large, &difference, this] {
            difference = 0;
            for (int turn = 0; turn < 2; ++turn) {
                difference =
                    std::max(difference, worstDifference(scaled(source, 70, 50, kernel(), opacity()), small));
                difference = std::max(difference,
                                      worstDifference(scaled(source, 300, 170, kernel(), opacity()), large));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(worst, std::vector<int>(4, 0));
}

INSTANTIATE_TEST_SUITE_P(Scaler, RowOrders, everyFilter(), filterName);

} // namespace GdiplusBackend::ScalingTest
