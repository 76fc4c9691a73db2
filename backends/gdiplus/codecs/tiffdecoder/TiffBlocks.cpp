#include "gdiplus/codecs/tiffdecoder/TiffBlocks.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>

namespace GdiplusBackend {

Result<TiffBlocks> TiffBlocks::of(const TiffHandle& handle, const TiffShape& shape) {
    TiffBlocks blocks;
    if (const auto measured = blocks.measure(handle, shape); !measured)
        return tl::unexpected(measured.error());
    blocks.units.resize(blocks.planes * blocks.unitsAcross * blocks.unitBytes());
    blocks.planeRows.resize(blocks.planes * blocks.planeRowBytes());
    blocks.row.resize(blocks.planes > 1 ? blocks.planeRows.size() : 0);
    return blocks;
}

Result<void> TiffBlocks::measure(const TiffHandle& handle, const TiffShape& shape) {
    TIFF* file = handle.get();
    kind = TIFFIsTiled(file) ? Unit::Tile : Unit::Strip;
    std::uint32_t width = static_cast<std::uint32_t>(shape.width);
    std::uint32_t height = 0;
    if (kind == Unit::Tile)
        TIFFGetField(file, TIFFTAG_TILEWIDTH, &width);
    TIFFGetFieldDefaulted(file, kind == Unit::Tile ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, &height);
    if (width == 0 || height == 0 || (kind == Unit::Tile && width % 16 != 0)) // TIFF 6.0, section 15
        return damaged("TIFF: a tile's width is not a multiple of 16");
    unitWidth = width;
    unitHeight = kind == Unit::Tile ? height : std::min(height, static_cast<std::uint32_t>(shape.height));
    unitsAcross = (static_cast<std::uint64_t>(shape.width) + width - 1) / width;
    planes = shape.separatePlanes ? static_cast<std::uint64_t>(shape.samplesPerPixel) : 1;
    sampleBytes = static_cast<std::size_t>(shape.bitsPerSample) / 8;

    const auto samplesTogether = static_cast<std::uint64_t>(shape.samplesPerPixel) / planes;
    unitRowBytes = (unitWidth * samplesTogether * static_cast<std::uint64_t>(shape.bitsPerSample) + 7) / 8;
    if (unitRowBytes > mostTiffBytesAtOnce() / planes / unitsAcross / unitHeight)
        return tooLarge("TIFF: a row of tiles or strips is larger than a whole picture may be");
    const std::uint64_t libraryRowBytes =
        kind == Unit::Tile ? TIFFTileRowSize64(file) : TIFFScanlineSize64(file);
    if (libraryRowBytes != unitRowBytes)
        return damaged("TIFF: a row's size does not fit its samples");
    return {};
}

std::ptrdiff_t TiffBlocks::readUnit(const TiffHandle& handle, std::uint64_t plane, std::uint64_t unit,
                                    int top) {
    TIFF* file = handle.get();
    const auto x = static_cast<std::uint32_t>(unit * unitWidth);
    const auto y = static_cast<std::uint32_t>(top);
    const auto size = static_cast<tmsize_t>(unitBytes());
    const auto sample = static_cast<std::uint16_t>(plane);
    return kind == Unit::Tile
               ? TIFFReadEncodedTile(file, TIFFComputeTile(file, x, y, 0, sample), unitAt(plane, unit), size)
               : TIFFReadEncodedStrip(file, TIFFComputeStrip(file, y, sample), unitAt(plane, unit), size);
}

Result<void> TiffBlocks::read(const TiffHandle& handle, int top) {
    for (std::uint64_t plane = 0; plane < planes; ++plane)
        for (std::uint64_t unit = 0; unit < unitsAcross; ++unit)
            if (readUnit(handle, plane, unit, top) < 0)
                return handle.failure("a TIFF tile or strip can't be decoded");
    return {};
}

std::span<const std::byte> TiffBlocks::packedRow(int y) {
    for (std::uint64_t plane = 0; plane < planes; ++plane)
        for (std::uint64_t unit = 0; unit < unitsAcross; ++unit)
            std::memcpy(planeRows.data() + plane * planeRowBytes() + unit * unitRowBytes,
                        unitAt(plane, unit) + static_cast<std::uint64_t>(y) * unitRowBytes, unitRowBytes);
    if (planes == 1)
        return planeRows;
    interleave();
    return row;
}

void TiffBlocks::interleave() {
    const std::size_t pixelBytes = planes * sampleBytes;
    const std::size_t pixels = row.size() / pixelBytes;
    for (std::size_t plane = 0; plane < planes; ++plane) {
        const std::byte* from = planeRows.data() + plane * planeRowBytes();
        std::byte* to = row.data() + plane * sampleBytes;
        for (std::size_t pixel = 0; pixel < pixels; ++pixel)
            std::memcpy(to + pixel * pixelBytes, from + pixel * sampleBytes, sampleBytes);
    }
}

} // namespace GdiplusBackend
