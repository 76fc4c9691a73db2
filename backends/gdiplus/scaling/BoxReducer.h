#pragma once

#include "gdiplus/codecs/PictureDecoder.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace GdiplusBackend {

namespace BoxReduction {
struct BlockRow;
}

/// Averages blocks of `factorX` by `factorY` pixels as rows arrive from the top, so that a large picture is
/// shrunk without ever being whole in memory. Works on any layout of whole bytes whose samples may be
/// averaged (premultiplied, not indexed). Sums are exact and rounded to nearest; the last block of a row or
/// column averages what is left of it.
class BoxReducer {
public:
    /// `samples` bytes a pixel (1, 3 or 4). `output` gets each finished row of
    /// `reducedLength(width, factorX)` pixels; there are `reducedLength(height, factorY)` of them.
    BoxReducer(int width, int height, int samples, int factorX, int factorY,
               std::function<void(std::span<const std::byte>)> output);

    /// Takes the next row, `width` pixels.
    void putRow(std::span<const std::byte> row);

private:
    std::size_t sampleCount(int pixels) const;
    BoxReduction::BlockRow wholeBlocks() const;
    void addColumnsToBlocks();
    void emitRow();

    int width;
    int height;
    int samples;
    int factorX;
    int factorY;
    std::function<void(std::span<const std::byte>)> output;
    std::vector<std::uint16_t> columns;   ///< sums of the last `rowsInColumns` rows
    std::vector<std::uint32_t> smallSums; ///< one for each sample of a finished row; empty for large blocks
    std::vector<std::uint64_t> largeSums; ///< the same for large blocks
    std::vector<std::byte> finished;
    int rowsTaken = 0;
    int rowsInBlock = 0;
    int rowsInColumns = 0;
};

} // namespace GdiplusBackend
