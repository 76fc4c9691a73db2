#include "gdiplus/flat/DibMemory.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace GdiplusBackend {

namespace {

const std::byte* bytesOf(const BITMAPINFO& info) {
    return reinterpret_cast<const std::byte*>(&info);
}

/// From the plain header to the longest one that is published. Its size says where the palette starts.
bool isKnownHeader(const BITMAPINFOHEADER& header) {
    constexpr DWORD longest = 124;
    return header.biSize >= sizeof header && header.biSize <= longest && header.biSize % 4 == 0;
}

Gdiplus::PixelFormat maskedFormat(const BITMAPINFO& info) {
    // Behind the plain header; the longer headers have them at the same place, as their first fields.
    std::array<DWORD, 3> masks;
    std::memcpy(masks.data(), bytesOf(info) + sizeof info.bmiHeader, sizeof masks);
    if (info.bmiHeader.biBitCount == 32)
        return masks == std::array<DWORD, 3>{0xFF0000, 0xFF00, 0xFF} ? PixelFormat32bppRGB
                                                                     : PixelFormatUndefined;
    if (masks == std::array<DWORD, 3>{0xF800, 0x07E0, 0x001F})
        return PixelFormat16bppRGB565;
    return masks == std::array<DWORD, 3>{0x7C00, 0x03E0, 0x001F} ? PixelFormat16bppRGB555
                                                                 : PixelFormatUndefined;
}

Gdiplus::PixelFormat formatOf(const BITMAPINFO& info) {
    const BITMAPINFOHEADER& header = info.bmiHeader;
    const bool hasMasks = header.biCompression == BI_BITFIELDS;
    if (hasMasks && (header.biBitCount == 16 || header.biBitCount == 32))
        return maskedFormat(info);
    if (header.biCompression != BI_RGB)
        return PixelFormatUndefined;
    switch (header.biBitCount) {
    case 1:
        return PixelFormat1bppIndexed;
    case 4:
        return PixelFormat4bppIndexed;
    case 8:
        return PixelFormat8bppIndexed;
    case 16:
        return PixelFormat16bppRGB555;
    case 24:
        return PixelFormat24bppRGB;
    case 32:
        return PixelFormat32bppRGB;
    default:
        return PixelFormatUndefined;
    }
}

std::vector<Gdiplus::ARGB> paletteOf(const BITMAPINFO& info) {
    const std::size_t most = std::size_t{1} << info.bmiHeader.biBitCount;
    const std::size_t stated = info.bmiHeader.biClrUsed;
    std::vector<Gdiplus::ARGB> palette(stated == 0 ? most : std::min(stated, most));
    std::memcpy(palette.data(), bytesOf(info) + info.bmiHeader.biSize, palette.size() * sizeof(RGBQUAD));
    for (Gdiplus::ARGB& color : palette)
        color |= 0xFF000000;
    return palette;
}

} // namespace

Result<DibLayout> layoutOf(const BITMAPINFO& info) {
    const BITMAPINFOHEADER& header = info.bmiHeader;
    const bool makesSense = isKnownHeader(header) && header.biWidth > 0 && header.biHeight != 0 &&
                            header.biHeight != std::numeric_limits<LONG>::min() && header.biPlanes == 1;
    DibLayout layout;
    layout.format = makesSense ? formatOf(info) : PixelFormatUndefined;
    layout.width = header.biWidth;
    if (layout.format == PixelFormatUndefined || alignedStride(layout.width, layout.format) > longestStride)
        return tl::unexpected(
            LoadError{Gdiplus::InvalidParameter, "this kind of device-independent bitmap is not known"});
    layout.height = std::abs(header.biHeight);
    layout.rowBytes = alignedStride(layout.width, layout.format);
    layout.isBottomUp = header.biHeight > 0;
    if (IsIndexedPixelFormat(layout.format))
        layout.palette = paletteOf(info);
    return layout;
}

PixelView viewOf(const DibLayout& layout, VOID* bits) {
    const auto rowBytes = static_cast<std::ptrdiff_t>(layout.rowBytes);
    PixelView view;
    view.top = static_cast<std::byte*>(bits);
    view.stride = rowBytes;
    view.width = layout.width;
    view.height = layout.height;
    view.format = layout.format;
    view.palette = layout.palette;
    if (layout.isBottomUp) {
        view.top += rowBytes * (layout.height - 1);
        view.stride = -rowBytes;
    }
    return view;
}

} // namespace GdiplusBackend
