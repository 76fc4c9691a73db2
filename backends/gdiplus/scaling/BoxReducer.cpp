#include "gdiplus/scaling/BoxReducer.h"

#include "gdiplus/scaling/boxreducer/BlockSums.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace GdiplusBackend {

using namespace BoxReduction;

namespace {

/// Adds the columns to the sums of all blocks, the last of which may be narrower.
template <typename Sum>
void addToRow(const std::uint16_t* columns, int width, const BlockRow& wholeBlocks, std::vector<Sum>& sums) {
    const std::size_t covered = wholeBlocks.blocks * wholeBlocks.factor;
    addToBlocks(columns, wholeBlocks, sums.data());
    if (const std::size_t rest = static_cast<std::size_t>(width) - covered; rest > 0)
        addToBlocks(columns + covered * wholeBlocks.samples, {1, rest, wholeBlocks.samples},
                    sums.data() + wholeBlocks.blocks * wholeBlocks.samples);
}

template <typename Sum>
void averageRow(const std::vector<Sum>& sums, int width, const BlockRow& wholeBlocks, int rows,
                std::vector<std::byte>& averages) {
    const auto height = static_cast<std::uint64_t>(rows);
    const std::size_t inWholeBlocks = wholeBlocks.blocks * wholeBlocks.samples;
    const std::span<const Sum> all(sums);
    averageBlocks(all.first(inWholeBlocks), wholeBlocks.factor * height, averages.data());
    if (const std::size_t rest = static_cast<std::size_t>(width) - wholeBlocks.blocks * wholeBlocks.factor;
        rest > 0)
        averageBlocks(all.subspan(inWholeBlocks), rest * height, averages.data() + inWholeBlocks);
}

} // namespace

BoxReducer::BoxReducer(int widthInPixels, int heightInPixels, int samplesPerPixel, int blockWidth,
                       int blockHeight, std::function<void(std::span<const std::byte>)> rowOutput)
    : width(widthInPixels)
    , height(heightInPixels)
    , samples(samplesPerPixel)
    , factorX(std::min(blockWidth, widthInPixels))
    , factorY(std::min(blockHeight, heightInPixels))
    , output(std::move(rowOutput)) {
    assert(width > 0 && height > 0 && factorX > 0 && factorY > 0);
    if (factorX == 1 && factorY == 1)
        return;
    columns.resize(sampleCount(width));
    finished.resize(sampleCount(reducedLength(width, factorX)));
    if (factorX <= maxPixelsInSmallBlock / factorY)
        smallSums.resize(finished.size());
    else
        largeSums.resize(finished.size());
}

std::size_t BoxReducer::sampleCount(int pixels) const {
    return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(samples);
}

void BoxReducer::putRow(std::span<const std::byte> row) {
    assert(row.size() >= sampleCount(width));
    row = row.first(sampleCount(width));
    if (factorX == 1 && factorY == 1) {
        output(row);
        return;
    }
    if (rowsInColumns == 0)
        startColumns(row, columns.data());
    else
        addToColumns(row, columns.data());
    ++rowsTaken;
    ++rowsInBlock;
    ++rowsInColumns;
    const bool blockIsComplete = rowsInBlock == factorY || rowsTaken == height;
    if (blockIsComplete || rowsInColumns == maxRowsInColumns)
        addColumnsToBlocks();
    if (blockIsComplete)
        emitRow();
}

BlockRow BoxReducer::wholeBlocks() const {
    return {static_cast<std::size_t>(width / factorX), static_cast<std::size_t>(factorX),
            static_cast<std::size_t>(samples)};
}

void BoxReducer::addColumnsToBlocks() {
    if (largeSums.empty())
        addToRow(columns.data(), width, wholeBlocks(), smallSums);
    else
        addToRow(columns.data(), width, wholeBlocks(), largeSums);
    rowsInColumns = 0;
}

void BoxReducer::emitRow() {
    if (largeSums.empty())
        averageRow(smallSums, width, wholeBlocks(), rowsInBlock, finished);
    else
        averageRow(largeSums, width, wholeBlocks(), rowsInBlock, finished);
    std::fill(smallSums.begin(), smallSums.end(), 0U);
    std::fill(largeSums.begin(), largeSums.end(), 0U);
    rowsInBlock = 0;
    output(finished);
}

} // namespace GdiplusBackend
