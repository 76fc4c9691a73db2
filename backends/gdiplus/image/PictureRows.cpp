#include "gdiplus/image/PictureRows.h"

#include "gdiplus/pixels/ConvertPixels.h"
#include "gdiplus/pixels/Premultiply.h"

#include <algorithm>
#include <cstring>

namespace GdiplusBackend {

namespace {

/// One row as a picture, so that the conversions apply to it.
template <typename Byte>
BasicPixelView<Byte> asPicture(Byte* row, int width, Gdiplus::PixelFormat format,
                               std::span<const Gdiplus::ARGB> palette = {}) {
    return {row, 0, width, 1, format, palette};
}

bool isIndexed(RowLayout layout) {
    return bitsPerPixel(layout) <= 8;
}

void premultiplyRow(const std::byte* from, std::byte* to, int count) {
    for (int i = 0; i < count; ++i, from += 4, to += 4) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, from, 4);
        pixel = premultiplyArgb(pixel);
        std::memcpy(to, &pixel, 4);
    }
}

} // namespace

FullSizeRows::FullSizeRows(RowLayout rowLayout, std::span<const Gdiplus::ARGB> rowPalette,
                           const ColorTransform* transform, const PixelView& picture)
    : layout(rowLayout)
    , palette(rowPalette)
    , colors(isIndexed(rowLayout) ? nullptr : transform)
    , target(picture) {
    if (colors)
        managed.resize(bytesPerRow(picture.width, pixelFormatOf(rowLayout)));
}

void FullSizeRows::putRow(std::span<const std::byte> row) {
    Gdiplus::PixelFormat format = pixelFormatOf(layout);
    const std::byte* pixels = row.data();
    if (colors) {
        std::copy(row.begin(), row.end(), managed.begin());
        pixels = managed.data();
        if (layout == RowLayout::Cmyk32) {
            colors->applyCmyk(managed.data(), target.width);
            format = PixelFormat32bppRGB;
        } else {
            colors->applyRgb(managed.data(), target.width, bitsPerPixel(layout) / 8);
        }
    }
    convertPixels(asPicture(pixels, target.width, format, palette), 0, 0,
                  asPicture(target.row(nextRow), target.width, target.format));
    ++nextRow;
}

ShrunkRows::ShrunkRows(const Source& rows, const ColorTransform* transform, const PixelView& picture)
    : source(rows)
    , colors(transform)
    , target(picture) {
    const bool plainInks = source.layout == RowLayout::Cmyk32 && !colors;
    if (isIndexed(source.layout) || source.layout == RowLayout::Bgra32 || plainInks)
        expanded.resize(static_cast<std::size_t>(source.width) * 4);
    if (source.boxX > 1 || source.boxY > 1)
        reducer.emplace(source.width, source.height, source.layout == RowLayout::Bgr24 ? 3 : 4, source.boxX,
                        source.boxY, [this](std::span<const std::byte> row) { store(row); });
}

std::span<const std::byte> ShrunkRows::averageable(std::span<const std::byte> row) {
    if (expanded.empty())
        return row;
    if (source.layout == RowLayout::Bgra32)
        premultiplyRow(row.data(), expanded.data(), source.width);
    else
        convertPixels(asPicture(row.data(), source.width, pixelFormatOf(source.layout), source.palette), 0, 0,
                      asPicture(expanded.data(), source.width, target.format));
    return expanded;
}

void ShrunkRows::putRow(std::span<const std::byte> row) {
    if (reducer)
        reducer->putRow(averageable(row));
    else
        store(averageable(row));
}

void ShrunkRows::store(std::span<const std::byte> row) {
    std::byte* out = target.row(nextRow++);
    switch (source.layout) {
    case RowLayout::Bits1:
    case RowLayout::Bits4:
    case RowLayout::Index8:
        std::copy(row.begin(), row.end(), out); // managed in the palette already
        break;
    case RowLayout::Bgr24:
    case RowLayout::Bgrx32:
        storeRgb(row, out);
        break;
    case RowLayout::Bgra32:
        storePremultiplied(row, out);
        break;
    case RowLayout::Cmyk32:
        std::copy(row.begin(), row.end(), out);
        if (colors)
            colors->applyCmyk(out, target.width);
        break;
    }
}

void ShrunkRows::storeRgb(std::span<const std::byte> row, std::byte* out) {
    convertPixels(asPicture(row.data(), target.width, pixelFormatOf(source.layout)), 0, 0,
                  asPicture(out, target.width, PixelFormat32bppRGB));
    if (colors)
        colors->applyRgb(out, target.width, 4);
}

void ShrunkRows::storePremultiplied(std::span<const std::byte> row, std::byte* out) const {
    if (!colors) {
        std::copy(row.begin(), row.end(), out);
        return;
    }
    convertPixels(asPicture(row.data(), target.width, PixelFormat32bppPARGB), 0, 0,
                  asPicture(out, target.width, PixelFormat32bppARGB));
    colors->applyRgb(out, target.width, 4);
    premultiplyRow(out, out, target.width);
}

} // namespace GdiplusBackend
