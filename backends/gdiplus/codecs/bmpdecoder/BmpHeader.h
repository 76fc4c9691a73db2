#pragma once

#include "gdiplus/codecs/ByteSource.h"

#include <array>

namespace GdiplusBackend {

/// What stands before the pixels of a BMP file. Its values fit together.
struct BmpHeader {
    enum class Coding { Plain, RunLength4, RunLength8 };
    enum class RowOrder { BottomUp, TopDown };

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    RowOrder order = RowOrder::BottomUp;
    int bitsPerPixel = 0; ///< 1, 2, 4, 8, 16, 24 or 32
    Coding coding = Coding::Plain;
    std::array<std::uint32_t, 3> masks = {}; ///< red, green, blue; for 16 and 32 bits
    std::vector<Gdiplus::ARGB> palette;      ///< for up to 8 bits as many entries as an index can name
    std::uint32_t pixelsPerMetreX = 0;       ///< 0: not stated
    std::uint32_t pixelsPerMetreY = 0;
    std::uint64_t pixels = 0; ///< where they start

    std::size_t rowBytes() const {
        return (std::size_t{width} * static_cast<std::size_t>(bitsPerPixel) + 7) / 8;
    }
    /// From row to row in the file.
    std::size_t stride() const { return (rowBytes() + 3) & ~std::size_t{3}; }
};

/// Whether a file that starts with "BM" goes on as a picture does. The signature alone would take text for
/// one.
bool looksLikeBmp(std::span<const std::byte> head);

/// `UnknownImageFormat` for JPEG or PNG in the guise of BMP, and for OS/2's own codings.
Result<BmpHeader> readBmpHeader(const ByteSource& source);

} // namespace GdiplusBackend
