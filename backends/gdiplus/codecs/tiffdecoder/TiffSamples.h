#pragma once

#include "gdiplus/codecs/tiffdecoder/TiffShape.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// Turns rows of packed samples into `Bgr24` or `Bgra32`.
class TiffSamples {
public:
    explicit TiffSamples(const TiffShape& tiffShape);

    /// `packed` has `TiffShape::packedRowBytes` bytes: 16-bit samples in the machine's byte order, others
    /// from the highest bit on. The result is valid until the next call.
    std::span<const std::byte> convert(std::span<const std::byte> packed);

private:
    std::span<const std::byte> toEightBits(std::span<const std::byte> packed);
    void unpackBits(std::span<const std::byte> packed);
    void putColour(const std::byte* samples, std::byte* pixel) const;

    const TiffShape& shape;
    std::size_t colourSamples;
    std::vector<std::byte> scaled; ///< for depths other than 8 and 16: a value's 8 bits, or the index itself
    std::vector<std::byte> narrow;
    std::vector<std::byte> row;
};

} // namespace GdiplusBackend
