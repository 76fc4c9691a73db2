#include "gdiplus/scaling/BoxReducer.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace GdiplusBackend {

namespace {

using Rows = std::vector<std::vector<int>>;

Rows reduced(const Rows& rows, int samples, int factorX, int factorY) {
    Rows result;
    const int width = static_cast<int>(rows.front().size()) / samples;
    BoxReducer reducer(width, static_cast<int>(rows.size()), samples, factorX, factorY,
                       [&result](std::span<const std::byte> row) {
                           std::vector<int>& out = result.emplace_back();
                           out.reserve(row.size());
                           for (const std::byte sample : row)
                               out.push_back(std::to_integer<int>(sample));
                       });
    for (const std::vector<int>& row : rows) {
        std::vector<std::byte> bytes;
        bytes.reserve(row.size());
        for (const int sample : row)
            bytes.push_back(static_cast<std::byte>(sample));
        reducer.putRow(bytes);
    }
    return result;
}

/// Block by block from the definition.
Rows referenceReduced(const Rows& rows, int samples, int factorX, int factorY) {
    const int height = static_cast<int>(rows.size());
    const int width = static_cast<int>(rows.front().size()) / samples;
    Rows result;
    for (int top = 0; top < height; top += factorY) {
        std::vector<int>& out = result.emplace_back();
        for (int left = 0; left < width; left += factorX)
            for (int sample = 0; sample < samples; ++sample) {
                long long sum = 0;
                long long count = 0;
                for (int y = top; y < std::min(top + factorY, height); ++y)
                    for (int x = left; x < std::min(left + factorX, width); ++x, ++count)
                        sum += *(rows[static_cast<std::size_t>(y)].begin() + std::ptrdiff_t{x} * samples +
                                 sample);
                out.push_back(static_cast<int>((2 * sum + count) / (2 * count)));
            }
    }
    return result;
}

Rows randomRows(int width, int height, int samples) {
    std::mt19937 random(7);
    Rows rows(static_cast<std::size_t>(height),
              std::vector<int>(static_cast<std::size_t>(width) * static_cast<std::size_t>(samples)));
    for (std::vector<int>& row : rows)
        for (int& sample : row)
            sample = static_cast<int>(random() % 256);
    return rows;
}

Rows filledRows(int width, int height, int samples, int value) {
    return Rows(static_cast<std::size_t>(height),
                std::vector<int>(static_cast<std::size_t>(width) * static_cast<std::size_t>(samples), value));
}

} // namespace

TEST(BoxReducer, AveragesBlocksOfTwoByTwo) {
    EXPECT_EQ(reduced({{10, 20, 0, 0}, {30, 40, 0, 8}}, 1, 2, 2), (Rows{{25, 2}}));
}

TEST(BoxReducer, RoundsHalvesUpAndLessDown) {
    EXPECT_EQ(reduced({{0, 1, 254, 255}}, 1, 2, 1), (Rows{{1, 255}}));
    EXPECT_EQ(reduced({{0, 0, 1, 1, 1, 0}}, 1, 3, 1), (Rows{{0, 1}}));
}

TEST(BoxReducer, KeepsSamplesOfAPixelApart) {
    EXPECT_EQ(reduced({{0, 100, 200, 2, 102, 202}}, 3, 2, 1), (Rows{{1, 101, 201}}));
    EXPECT_EQ(reduced({{0, 100, 200, 40, 2, 102, 202, 42}}, 4, 2, 1), (Rows{{1, 101, 201, 41}}));
}

TEST(BoxReducer, LastBlocksAverageWhatIsLeftOfThem) {
    EXPECT_EQ(reduced({{10, 20, 90}, {30, 40, 70}, {1, 3, 5}}, 1, 2, 2), (Rows{{25, 80}, {2, 5}}));
}

TEST(BoxReducer, FactorOneLeavesThatDirectionAlone) {
    const Rows rows = randomRows(5, 4, 3);
    EXPECT_EQ(reduced(rows, 3, 1, 1), rows);
    EXPECT_EQ(reduced(rows, 3, 1, 3), referenceReduced(rows, 3, 1, 3));
    EXPECT_EQ(reduced(rows, 3, 3, 1), referenceReduced(rows, 3, 3, 1));
}

TEST(BoxReducer, GivesARowAsSoonAsItsBlockIsComplete) {
    int given = 0;
    BoxReducer reducer(2, 5, 1, 2, 2, [&given](std::span<const std::byte>) { ++given; });
    const std::vector<std::byte> row(2);
    std::vector<int> givenAfterRow;
    for (int y = 0; y < 5; ++y) {
        reducer.putRow(row);
        givenAfterRow.push_back(given);
    }
    EXPECT_EQ(givenAfterRow, (std::vector<int>{0, 1, 1, 2, 3}));
}

TEST(BoxReducer, FactorsBeyondThePictureAverageAllOfIt) {
    EXPECT_EQ(reduced({{0, 10}, {20, 30}}, 1, 100000, 100000), (Rows{{15}}));
}

class BoxReducerFactors : public testing::TestWithParam<std::tuple<int, int, int>> {};

TEST_P(BoxReducerFactors, AgreeWithTheDefinition) {
    const auto [samples, factorX, factorY] = GetParam();
    const Rows rows = randomRows(131, 67, samples);
    EXPECT_EQ(reduced(rows, samples, factorX, factorY), referenceReduced(rows, samples, factorX, factorY));
}

INSTANTIATE_TEST_SUITE_P(BoxReducer, BoxReducerFactors,
                         testing::Combine(testing::Values(1, 3, 4),
                                          testing::Values(1, 2, 3, 4, 7, 12, 64, 130),
                                          testing::Values(1, 2, 3, 12, 61, 67)));

TEST(BoxReducer, SumsOfSmallBlocksAreRoundedExactly) {
    // A block of 64 by 64 pixels for each of many sums: pixels of 255 up to the sum, then the rest.
    constexpr int side = 64;
    for (int sum = 0; sum <= side * side * 255; sum += 991) {
        Rows rows = filledRows(side, side, 1, 0);
        int left = sum;
        for (std::vector<int>& row : rows)
            for (int& sample : row) {
                sample = std::min(left, 255);
                left -= sample;
            }
        ASSERT_EQ(reduced(rows, 1, side, side), (Rows{{(2 * sum + side * side) / (2 * side * side)}})) << sum;
    }
}

TEST(BoxReducer, WhiteStaysWhiteInBlocksHigherThanAColumnSumHolds) {
    EXPECT_EQ(reduced(filledRows(3, 600, 3, 255), 3, 2, 600), (filledRows(2, 1, 3, 255)));
    EXPECT_EQ(reduced(filledRows(1, 100000, 1, 255), 1, 1, 100000), (Rows{{255}}));
}

TEST(BoxReducer, BlocksHigherThanAColumnSumHoldsAverageAllTheirRows) {
    const Rows rows = randomRows(5, 1300, 4);
    EXPECT_EQ(reduced(rows, 4, 2, 600), referenceReduced(rows, 4, 2, 600));
}

TEST(BoxReducer, VeryWideBlocksDoNotOverflow) {
    EXPECT_EQ(reduced(filledRows(60000, 300, 1, 255), 1, 60000, 300), (Rows{{255}}));
}

} // namespace GdiplusBackend
