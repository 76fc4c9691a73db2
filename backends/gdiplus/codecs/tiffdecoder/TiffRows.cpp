#include "gdiplus/codecs/tiffdecoder/TiffRows.h"

#include "gdiplus/codecs/tiffdecoder/TiffBlocks.h"
#include "gdiplus/codecs/tiffdecoder/TiffSamples.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace GdiplusBackend {

namespace {

/// libtiff's conversion into its 32-bit raster.
class LibraryConversion {
public:
    explicit LibraryConversion(const TiffHandle& tiffHandle)
        : handle(tiffHandle) {}
    ~LibraryConversion() {
        if (started)
            TIFFRGBAImageEnd(&image);
    }
    LibraryConversion(const LibraryConversion&) = delete;
    LibraryConversion& operator=(const LibraryConversion&) = delete;

    Result<void> start() {
        std::array<char, 1024> reason = {};
        started = TIFFRGBAImageBegin(&image, handle.get(), /*stop=*/1, reason.data()) != 0;
        if (!started)
            return handle.failure(reason.data());
        // Both alike: rows stay in the order in which they are stored.
        image.orientation = ORIENTATION_TOPLEFT;
        image.req_orientation = ORIENTATION_TOPLEFT;
        return {};
    }

    Result<void> read(std::span<std::uint32_t> raster, int top, int rows) {
        image.row_offset = top;
        if (!TIFFRGBAImageGet(&image, raster.data(), image.width, static_cast<std::uint32_t>(rows)))
            return handle.failure("TIFF pixels can't be converted");
        return {};
    }

private:
    const TiffHandle& handle;
    TIFFRGBAImage image = {};
    bool started = false;
};

void putRasterRow(std::span<const std::uint32_t> raster, std::span<std::byte> row) {
    std::byte* out = row.data();
    for (const std::uint32_t pixel : raster) {
        *out++ = static_cast<std::byte>(TIFFGetB(pixel));
        *out++ = static_cast<std::byte>(TIFFGetG(pixel));
        *out++ = static_cast<std::byte>(TIFFGetR(pixel));
    }
}

/// Rows that libtiff unpacks together.
int rowsTogether(TIFF* file, const TiffShape& shape) {
    std::uint32_t rows = 0;
    TIFFGetFieldDefaulted(file, TIFFIsTiled(file) ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, &rows);
    return static_cast<int>(std::clamp(rows, 1U, static_cast<std::uint32_t>(shape.height)));
}

} // namespace

Result<void> decodeStrips(const TiffHandle& handle, const TiffShape& shape, RowSink& sink) {
    const std::uint64_t rowBytes = TIFFScanlineSize64(handle.get());
    if (rowBytes < shape.packedRowBytes())
        return damaged("TIFF: a row's size does not fit its samples");
    if (rowBytes > mostTiffBytesAtOnce())
        return tooLarge("TIFF: one row is larger than a whole picture may be");
    std::vector<std::byte> packed(rowBytes);
    TiffSamples samples(shape);
    for (int y = 0; y < shape.height; ++y) {
        if (TIFFReadScanline(handle.get(), packed.data(), static_cast<std::uint32_t>(y), 0) < 0)
            return handle.failure("a TIFF strip can't be decoded");
        sink.putRow(samples.convert(packed));
    }
    return handle.checkComplete();
}

Result<void> decodeBlocks(const TiffHandle& handle, const TiffShape& shape, RowSink& sink) {
    auto blocks = TiffBlocks::of(handle, shape);
    if (!blocks)
        return tl::unexpected(blocks.error());
    TiffSamples samples(shape);
    for (int top = 0; top < shape.height;) {
        if (auto read = blocks->read(handle, top); !read)
            return read;
        const int rows = std::min(blocks->height(), shape.height - top);
        for (int y = 0; y < rows; ++y)
            sink.putRow(samples.convert(blocks->packedRow(y)));
        top += rows;
    }
    return handle.checkComplete();
}

Result<void> decodeByLibrary(const TiffHandle& handle, const TiffShape& shape, RowSink& sink) {
    LibraryConversion conversion(handle);
    if (auto started = conversion.start(); !started)
        return started;
    const int together = rowsTogether(handle.get(), shape);
    const auto width = static_cast<std::size_t>(shape.width);
    std::vector<std::uint32_t> raster(width * static_cast<std::size_t>(together));
    std::vector<std::byte> row(width * 3);
    for (int top = 0; top < shape.height; top += together) {
        const int rows = std::min(together, shape.height - top);
        if (auto read = conversion.read(raster, top, rows); !read)
            return read;
        for (int y = 0; y < rows; ++y) {
            putRasterRow(std::span(raster).subspan(width * static_cast<std::size_t>(y), width), row);
            sink.putRow(row);
        }
    }
    return handle.checkComplete();
}

} // namespace GdiplusBackend
