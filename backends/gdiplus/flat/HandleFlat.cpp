#include "gdiplus/flat/FlatGuard.h"
#include "gdiplus/flat/GdiHandle.h"
#include "gdiplus/pixels/Composite.h"
#include "gdiplus/pixels/ConvertPixels.h"

#include "platform/Gdi.h"
#include "platform/GdiplusFlat.h"

using namespace GdiplusBackend;

namespace {

using Gdiplus::ARGB;

/// A new 32-bit bottom-up handle; null when there is no memory for it.
HBITMAP createHandle(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0);
}

/// Premultiplied pixels into the handle's memory, over a background unless that is black or has no alpha.
void writeOver(const ConstPixelView& picture, const PixelView& target, ARGB background) {
    PixelView canvas = target;
    canvas.format = PixelFormat32bppPARGB;
    if (background >> 24 == 0 || (background & 0xFFFFFF) == 0) {
        convertPixels(picture, 0, 0, canvas);
        return;
    }
    // Only the background's colour counts, not how transparent it is.
    fillOver(background | 0xFF000000, canvas, 0, 0, canvas.width, canvas.height);
    sourceOver(picture, canvas, 0, 0);
}

} // namespace

namespace Gdiplus::DllExports {

GpStatus GdipCreateHBITMAPFromBitmap(GpBitmap* bitmap, HBITMAP* handle, ARGB background) {
    if (!bitmap || !handle)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& object = bitmapOf(bitmap);
        if (object.lock())
            return WrongState;
        const auto pixels = object.pixels();
        if (!pixels)
            return pixels.error().status;
        HBITMAP made = createHandle(object.width(), object.height());
        if (!made)
            return OutOfMemory;
        writeOver(*pixels, pixelsOf(made), background);
        *handle = made;
        return Ok;
    });
}

GpStatus GdipCreateBitmapFromHBITMAP(HBITMAP handle, HPALETTE, GpBitmap** bitmap) {
    if (!bitmap)
        return InvalidParameter;
    if (!isStarted())
        return GdiplusNotInitialized;
    return flat([&] {
        const PixelView pixels = pixelsOf(handle);
        if (!pixels.top)
            return InvalidParameter;
        auto made = BitmapObject::create(pixels.width, pixels.height, pixels.format);
        if (!made)
            return made.error().status;
        if (!pixels.palette.empty())
            if (auto colored = (*made)->setPalette(pixels.palette); !colored)
                return colored.error().status;
        convertPixels(pixels, 0, 0, *(*made)->pixels());
        return handOut(std::move(made), bitmap);
    });
}

} // namespace Gdiplus::DllExports
