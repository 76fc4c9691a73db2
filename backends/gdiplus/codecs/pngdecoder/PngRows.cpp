#include "gdiplus/codecs/pngdecoder/PngRows.h"

#include <algorithm>
#include <array>

namespace GdiplusBackend {

namespace {

/// The pixels of one pass lie at `x` + i * `stepX`, `y` + j * `stepY`.
struct Pass {
    std::uint32_t x;
    std::uint32_t y;
    std::uint32_t stepX;
    std::uint32_t stepY;

    std::uint32_t columns(const PngHeader& header) const { return count(header.width, x, stepX); }
    std::uint32_t rows(const PngHeader& header) const { return count(header.height, y, stepY); }

private:
    static std::uint32_t count(std::uint32_t length, std::uint32_t first, std::uint32_t step) {
        return length <= first ? 0 : (length - first - 1) / step + 1;
    }
};

constexpr std::array<Pass, 7> passes = {
    {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4}, {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}}};

int filterPixelBytes(const PngHeader& header) {
    return std::max(1, header.bitsPerPixel() / 8);
}

} // namespace

PngRows::PngRows(ZlibStream& imageData, const PngSamples& order, std::size_t bytesInRow, int bytesInPixel)
    : stream(imageData)
    , samples(order)
    , rowBytes(bytesInRow)
    , bytesPerPixel(bytesInPixel)
    , filtered(1 + bytesInRow + pngRowPadding)
    , above(bytesInRow + pngRowPadding)
    , row(bytesInRow + pngRowPadding) {}

Result<std::span<const std::byte>> PngRows::next() {
    if (Result<void> read = stream.read(std::span(filtered).first(1 + rowBytes)); !read)
        return tl::unexpected(read.error());
    const int filter = std::to_integer<int>(filtered[0]);
    if (filter > static_cast<int>(PngFilter::Paeth))
        return damaged("PNG: a row with an unknown filter");
    std::swap(above, row);
    const auto content = std::span(filtered).subspan(1, rowBytes);
    samples.reorder(content);
    undoFilter(static_cast<PngFilter>(filter), content, std::span(above).first(rowBytes),
               std::span(row).first(rowBytes), bytesPerPixel);
    return std::span<const std::byte>(row).first(rowBytes);
}

PngInterlacedRows::PngInterlacedRows(const PngHeader& header)
    : bitsPerPixel(static_cast<std::size_t>(header.bitsPerPixel()))
    , rowBytes(header.rowBytes(header.width))
    , picture(rowBytes * header.height) {}

Result<PngInterlacedRows> PngInterlacedRows::read(ZlibStream& stream, const PngSamples& samples,
                                                  const PngHeader& header) {
    PngInterlacedRows result(header);
    for (const Pass& pass : passes) {
        const std::uint32_t columns = pass.columns(header);
        if (columns == 0)
            continue;
        PngRows rows(stream, samples, header.rowBytes(columns), filterPixelBytes(header));
        for (std::uint32_t i = 0; i < pass.rows(header); ++i) {
            const auto row = rows.next();
            if (!row)
                return tl::unexpected(row.error());
            result.putPixels(*row, pass.y + i * pass.stepY, pass.x, pass.stepX, columns);
        }
    }
    return result;
}

void PngInterlacedRows::putPixels(std::span<const std::byte> passRow, std::uint32_t y, std::uint32_t x,
                                  std::uint32_t step, std::uint32_t count) {
    const auto out = std::span(picture).subspan(y * rowBytes, rowBytes);
    if (bitsPerPixel >= 8) {
        const std::size_t pixelBytes = bitsPerPixel / 8;
        for (std::size_t i = 0; i < count; ++i)
            std::copy_n(&passRow[i * pixelBytes], pixelBytes, &out[(x + i * step) * pixelBytes]);
        return;
    }
    const unsigned int mask = (1U << bitsPerPixel) - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t from = i * bitsPerPixel;
        const std::size_t to = (x + i * step) * bitsPerPixel;
        const unsigned int sample =
            std::to_integer<unsigned int>(passRow[from / 8]) >> (8 - bitsPerPixel - from % 8) & mask;
        out[to / 8] |= static_cast<std::byte>(sample << (8 - bitsPerPixel - to % 8));
    }
}

std::uint64_t unpackedBytes(const PngHeader& header) {
    if (!header.interlaced)
        return (std::uint64_t{1} + header.rowBytes(header.width)) * header.height;
    std::uint64_t total = 0;
    for (const Pass& pass : passes)
        if (const std::uint32_t columns = pass.columns(header); columns > 0)
            total += (std::uint64_t{1} + header.rowBytes(columns)) * pass.rows(header);
    return total;
}

} // namespace GdiplusBackend
