#include "gdiplus/scaling/boxreducer/BlockSums.h"

namespace GdiplusBackend::BoxReduction {

namespace {

constexpr std::size_t anyFactor = 0;

/// A factor that is known here is unrolled: small blocks are many, and loops of two turns are slow.
template <std::size_t samples, std::size_t knownFactor, typename Sum>
void addPixels(const std::uint16_t* __restrict columns, const BlockRow& row, Sum* __restrict blockSums) {
    const std::size_t factor = knownFactor == anyFactor ? row.factor : knownFactor;
    for (std::size_t block = 0; block < row.blocks; ++block, blockSums += samples)
        for (std::size_t pixel = 0; pixel < factor; ++pixel, columns += samples)
            for (std::size_t sample = 0; sample < samples; ++sample)
                blockSums[sample] += columns[sample];
}

template <std::size_t samples, typename Sum>
void addByFactor(const std::uint16_t* columns, const BlockRow& row, Sum* blockSums) {
    if (row.factor == 2)
        addPixels<samples, 2>(columns, row, blockSums);
    else if (row.factor == 3)
        addPixels<samples, 3>(columns, row, blockSums);
    else if (row.factor == 4)
        addPixels<samples, 4>(columns, row, blockSums);
    else
        addPixels<samples, anyFactor>(columns, row, blockSums);
}

template <typename Sum>
void addBySamples(const std::uint16_t* columns, const BlockRow& row, Sum* blockSums) {
    if (row.samples == 4)
        addByFactor<4>(columns, row, blockSums);
    else if (row.samples == 3)
        addByFactor<3>(columns, row, blockSums);
    else
        addByFactor<1>(columns, row, blockSums);
}

} // namespace

void startColumns(std::span<const std::byte> row, std::uint16_t* columns) {
    for (std::size_t sample = 0; sample < row.size(); ++sample)
        columns[sample] = static_cast<std::uint16_t>(row[sample]);
}

void addToColumns(std::span<const std::byte> row, std::uint16_t* columns) {
    for (std::size_t sample = 0; sample < row.size(); ++sample)
        columns[sample] =
            static_cast<std::uint16_t>(columns[sample] + static_cast<std::uint16_t>(row[sample]));
}

void addToBlocks(const std::uint16_t* columns, const BlockRow& row, std::uint32_t* blockSums) {
    addBySamples(columns, row, blockSums);
}

void addToBlocks(const std::uint16_t* columns, const BlockRow& row, std::uint64_t* blockSums) {
    addBySamples(columns, row, blockSums);
}

// With another half added to the dividend no quotient lies nearer than 1 / (2 * pixels) to a whole number.
// For up to `maxPixelsInSmallBlock` pixels that is more than single precision loses on a quotient below 256.
void averageBlocks(std::span<const std::uint32_t> blockSums, std::uint64_t pixels, std::byte* averages) {
    const std::uint64_t wholeHalf = pixels / 2;
    const auto half = static_cast<float>(wholeHalf) + 0.5F;
    const float reciprocal = 1.0F / static_cast<float>(pixels);
    for (std::size_t block = 0; block < blockSums.size(); ++block) {
        const auto sum = static_cast<float>(static_cast<std::int32_t>(blockSums[block]));
        averages[block] = static_cast<std::byte>(static_cast<std::int32_t>((sum + half) * reciprocal));
    }
}

void averageBlocks(std::span<const std::uint64_t> blockSums, std::uint64_t pixels, std::byte* averages) {
    for (std::size_t block = 0; block < blockSums.size(); ++block)
        averages[block] = static_cast<std::byte>((blockSums[block] + pixels / 2) / pixels);
}

} // namespace GdiplusBackend::BoxReduction
