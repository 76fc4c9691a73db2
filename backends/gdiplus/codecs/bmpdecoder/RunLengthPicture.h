#pragma once

#include "gdiplus/codecs/bmpdecoder/BmpHeader.h"

namespace GdiplusBackend {

/// A run-length coded BMP picture, unpacked: its rows come last one first, so it has to be held whole. Pixels
/// that the coding skips are of palette entry 0, those outside the picture are dropped.
class RunLengthPicture {
public:
    /// `Aborted` for a file without the end mark.
    static Result<RunLengthPicture> read(const BmpHeader& header, const ByteSource& source);

    /// `y` counts from the top.
    std::span<const std::byte> row(std::uint32_t y) const {
        return std::span(indices).subspan(y * rowBytes, rowBytes);
    }

private:
    class Reader;

    explicit RunLengthPicture(const BmpHeader& header)
        : rowBytes(header.rowBytes())
        , indices(rowBytes * header.height) {}

    std::size_t rowBytes;
    std::vector<std::byte> indices;
};

} // namespace GdiplusBackend
