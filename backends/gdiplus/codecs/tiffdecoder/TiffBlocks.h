#pragma once

#include "gdiplus/codecs/tiffdecoder/TiffHandle.h"
#include "gdiplus/codecs/tiffdecoder/TiffShape.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// The tiles or strips, of all planes, that lie side by side across the picture, unpacked.
///
///     plane 0   [tile][tile][tile]     `unitsAcross` tiles, or one strip
///     plane 1   [tile][tile][tile]     further planes only where samples lie apart
class TiffBlocks {
public:
    static Result<TiffBlocks> of(const TiffHandle& handle, const TiffShape& shape);

    /// Rows of the picture in each full row of blocks.
    int height() const { return static_cast<int>(unitHeight); }
    /// Unpacks the blocks whose first row is `top`.
    Result<void> read(const TiffHandle& handle, int top);
    /// A row of the blocks at hand, its samples side by side. Valid until the next call.
    std::span<const std::byte> packedRow(int y);

private:
    enum class Unit { Strip, Tile };

    Result<void> measure(const TiffHandle& handle, const TiffShape& shape);
    std::uint64_t unitBytes() const { return unitRowBytes * unitHeight; }
    std::uint64_t planeRowBytes() const { return unitRowBytes * unitsAcross; }
    std::byte* unitAt(std::uint64_t plane, std::uint64_t unit) {
        return units.data() + (plane * unitsAcross + unit) * unitBytes();
    }
    std::ptrdiff_t readUnit(const TiffHandle& handle, std::uint64_t plane, std::uint64_t unit, int top);
    void interleave();

    Unit kind = Unit::Strip;
    std::uint64_t planes = 1;
    std::uint64_t unitsAcross = 1;
    std::uint64_t unitWidth = 0;
    std::uint64_t unitHeight = 0;
    std::uint64_t unitRowBytes = 0;
    std::size_t sampleBytes = 1;
    std::vector<std::byte> units;
    std::vector<std::byte> planeRows;
    std::vector<std::byte> row;
};

} // namespace GdiplusBackend
