#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace GdiplusBackend::BoxReduction {

/// As many rows of bytes as a sum of 16 bits holds.
constexpr int maxRowsInColumns = 65535 / 255;
/// Up to this many pixels in a block its sums may have 32 bits.
constexpr int maxPixelsInSmallBlock = 4096;

/// `blocks` blocks side by side, each `factor` pixels wide.
struct BlockRow {
    std::size_t blocks = 0;
    std::size_t factor = 0;
    std::size_t samples = 0; ///< per pixel: 1, 3 or 4
};

/// The sums of each sample over the rows of a block: its first row starts them, the others are added.
void startColumns(std::span<const std::byte> row, std::uint16_t* columns);
void addToColumns(std::span<const std::byte> row, std::uint16_t* columns);

/// Adds the columns of each block to its sums, one for each sample.
void addToBlocks(const std::uint16_t* columns, const BlockRow& row, std::uint32_t* blockSums);
void addToBlocks(const std::uint16_t* columns, const BlockRow& row, std::uint64_t* blockSums);

/// Divides by `pixels`, rounding to nearest, halves up.
void averageBlocks(std::span<const std::uint32_t> blockSums, std::uint64_t pixels, std::byte* averages);
void averageBlocks(std::span<const std::uint64_t> blockSums, std::uint64_t pixels, std::byte* averages);

} // namespace GdiplusBackend::BoxReduction
