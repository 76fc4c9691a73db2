#pragma once

#include "gdiplus/codecs/pngdecoder/PngFilters.h"
#include "gdiplus/codecs/pngdecoder/PngSamples.h"
#include "gdiplus/codecs/pngdecoder/ZlibStream.h"

namespace GdiplusBackend {

/// Reads rows of equal length out of a PNG file's image data, unfiltered and reordered for a layout.
class PngRows {
public:
    PngRows(ZlibStream& imageData, const PngSamples& order, std::size_t bytesInRow, int bytesInPixel);

    /// The next row, for as long as none is asked for again.
    Result<std::span<const std::byte>> next();

private:
    ZlibStream& stream;
    const PngSamples& samples;
    std::size_t rowBytes;
    int bytesPerPixel;
    std::vector<std::byte> filtered; ///< the filter's number, then the row
    std::vector<std::byte> above;
    std::vector<std::byte> row;
};

/// Puts the seven passes of an interlaced picture (ISO/IEC 15948, 8.2) together; rows as `PngRows` gives
/// them.
class PngInterlacedRows {
public:
    static Result<PngInterlacedRows> read(ZlibStream& stream, const PngSamples& samples,
                                          const PngHeader& header);

    std::span<const std::byte> row(std::uint32_t y) const {
        return std::span(picture).subspan(y * rowBytes, rowBytes);
    }

private:
    explicit PngInterlacedRows(const PngHeader& header);
    void putPixels(std::span<const std::byte> passRow, std::uint32_t y, std::uint32_t x, std::uint32_t step,
                   std::uint32_t count);

    std::size_t bitsPerPixel;
    std::size_t rowBytes;
    std::vector<std::byte> picture;
};

/// Bytes that a file's image data unpacks to.
std::uint64_t unpackedBytes(const PngHeader& header);

} // namespace GdiplusBackend
