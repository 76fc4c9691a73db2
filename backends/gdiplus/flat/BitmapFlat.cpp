#include "gdiplus/flat/DibMemory.h"
#include "gdiplus/flat/FlatGuard.h"
#include "gdiplus/flat/StreamBytes.h"
#include "gdiplus/pixels/ConvertPixels.h"

#include "platform/GdiplusFlat.h"

#include <cstdint>
#include <cstdlib>

using namespace GdiplusBackend;

namespace {

/// What can be drawn into, and the three indexed formats.
bool isKnownFormat(PixelFormat format) {
    return format == PixelFormat1bppIndexed || format == PixelFormat4bppIndexed ||
           format == PixelFormat8bppIndexed || canConvert(PixelFormat32bppARGB, format);
}

Gdiplus::GpStatus openBitmap(const WCHAR* filename, ColorManagement management, Gdiplus::GpBitmap** bitmap) {
    if (!bitmap || !filename)
        return Gdiplus::InvalidParameter;
    if (!isStarted())
        return Gdiplus::GdiplusNotInitialized;
    return flat([&] { return handOut(BitmapObject::open(filename, management), bitmap); });
}

/// A pixel that may be read or written now.
Result<PixelView> pixelsAt(BitmapObject& bitmap, INT x, INT y) {
    if (bitmap.lock())
        return tl::unexpected(LoadError{Gdiplus::WrongState, "the bitmap is locked"});
    if (x < 0 || y < 0 || x >= bitmap.width() || y >= bitmap.height())
        return tl::unexpected(LoadError{Gdiplus::InvalidParameter, "the place is outside the bitmap"});
    return bitmap.pixels();
}

} // namespace

bool GdiplusBackend::liesInside(const Gdiplus::Rect& area, const BitmapObject& bitmap) {
    return area.X >= 0 && area.Y >= 0 && area.Width > 0 && area.Height > 0 &&
           area.Width <= bitmap.width() - area.X && area.Height <= bitmap.height() - area.Y;
}

namespace Gdiplus::DllExports {

GpStatus GdipCreateBitmapFromScan0(INT width, INT height, INT stride, PixelFormat format, BYTE* scan0,
                                   GpBitmap** bitmap) {
    if (!bitmap || width <= 0 || height <= 0 || !isKnownFormat(format))
        return InvalidParameter;
    if (!isStarted())
        return GdiplusNotInitialized;
    return flat([&] {
        if (!scan0)
            return handOut(BitmapObject::create(width, height, format), bitmap);
        const auto rowDistance = static_cast<std::size_t>(std::abs(std::int64_t{stride}));
        if (rowDistance % 4 != 0 || rowDistance < bytesPerRow(width, format))
            return InvalidParameter;
        *bitmap =
            BitmapObject::overMemory({reinterpret_cast<std::byte*>(scan0), stride, width, height, format})
                .release();
        return Ok;
    });
}

GpStatus GdipCreateBitmapFromGdiDib(const BITMAPINFO* info, VOID* bits, GpBitmap** bitmap) {
    if (!info || !bits || !bitmap)
        return InvalidParameter;
    if (!isStarted())
        return GdiplusNotInitialized;
    return flat([&] {
        const auto layout = layoutOf(*info);
        if (!layout)
            return layout.error().status;
        *bitmap = BitmapObject::overMemory(viewOf(*layout, bits)).release();
        return Ok;
    });
}

GpStatus GdipCreateBitmapFromFile(const WCHAR* filename, GpBitmap** bitmap) {
    return openBitmap(filename, ColorManagement::Ignored, bitmap);
}

GpStatus GdipCreateBitmapFromFileICM(const WCHAR* filename, GpBitmap** bitmap) {
    return openBitmap(filename, ColorManagement::ToSrgb, bitmap);
}

GpStatus GdipCreateBitmapFromStream(IStream* stream, GpBitmap** bitmap) {
    if (!bitmap || !stream)
        return InvalidParameter;
    if (!isStarted())
        return GdiplusNotInitialized;
    return flat([&] {
        auto bytes = bytesOf(*stream);
        if (!bytes)
            return bytes.error().status;
        const auto picture = EncodedPicture::open(fromMemory(std::move(*bytes)), ColorManagement::Ignored);
        if (!picture)
            return picture.error().status;
        *bitmap = BitmapObject::over(*picture).release();
        return Ok;
    });
}

GpStatus GdipCloneBitmapAreaI(INT x, INT y, INT width, INT height, PixelFormat format, GpBitmap* source,
                              GpBitmap** clone) {
    if (!source || !clone)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& bitmap = bitmapOf(source);
        const Rect area(x, y, width, height);
        if (!liesInside(area, bitmap) || !canConvert(bitmap.traits().format, format))
            return OutOfMemory;
        return handOut(bitmap.clone(area, format), clone);
    });
}

GpStatus GdipBitmapLockBits(GpBitmap* bitmap, const GpRect* rect, UINT flags, PixelFormat format,
                            BitmapData* lockedData) {
    constexpr UINT knownFlags = ImageLockModeRead | ImageLockModeWrite;
    if (!bitmap || !lockedData || (flags & ~knownFlags) != 0)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& object = bitmapOf(bitmap);
        if (object.lock())
            return WrongState;
        const Rect area = rect ? *rect : Rect(0, 0, object.width(), object.height());
        if (!liesInside(area, object))
            return InvalidParameter;
        const auto pixels = object.pixels();
        if (!pixels)
            return pixels.error().status;
        auto lock = BitmapLock::open(*pixels, area, flags, format);
        if (!lock)
            return lock.error().status;
        object.lock() = std::move(*lock);
        const PixelView& memory = object.lock()->memory();
        lockedData->Width = static_cast<UINT>(area.Width);
        lockedData->Height = static_cast<UINT>(area.Height);
        lockedData->Stride = static_cast<INT>(memory.stride);
        lockedData->PixelFormat = format;
        lockedData->Scan0 = memory.top;
        lockedData->Reserved = 0;
        return Ok;
    });
}

GpStatus GdipBitmapUnlockBits(GpBitmap* bitmap, BitmapData* lockedData) {
    if (!bitmap || !lockedData)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& object = bitmapOf(bitmap);
        if (!object.lock())
            return Win32Error;
        const auto pixels = object.pixels();
        if (pixels)
            object.lock()->close(*pixels);
        object.lock().reset();
        return statusOf(pixels);
    });
}

GpStatus GdipBitmapGetPixel(GpBitmap* bitmap, INT x, INT y, ARGB* color) {
    if (!bitmap || !color)
        return InvalidParameter;
    return flat([&] {
        const auto pixels = pixelsAt(bitmapOf(bitmap), x, y);
        if (pixels)
            readArgb(*pixels, x, y, 1, color);
        return statusOf(pixels);
    });
}

GpStatus GdipBitmapSetPixel(GpBitmap* bitmap, INT x, INT y, ARGB color) {
    if (!bitmap)
        return InvalidParameter;
    return flat([&] {
        const auto pixels = pixelsAt(bitmapOf(bitmap), x, y);
        if (!pixels)
            return pixels.error().status;
        if (!canConvert(PixelFormat32bppARGB, pixels->format))
            return InvalidParameter;
        writeArgb(*pixels, x, y, 1, &color);
        return Ok;
    });
}

} // namespace Gdiplus::DllExports
