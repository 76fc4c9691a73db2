#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/image/GraphicsObject.h"

#include <new>

namespace GdiplusBackend {

/// Runs the body of a flat function: what it returns becomes the status, and memory that ran out too.
template <typename Body>
Gdiplus::GpStatus flat(Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return Gdiplus::OutOfMemory;
    } catch (...) {
        return Gdiplus::GenericError;
    }
}

template <typename T>
Gdiplus::GpStatus statusOf(const Result<T>& result) {
    return result ? Gdiplus::Ok : result.error().status;
}

inline BitmapObject& bitmapOf(Gdiplus::GpImage* image) {
    return *static_cast<BitmapObject*>(static_cast<Gdiplus::GpBitmap*>(image));
}

inline GraphicsObject& graphicsOf(Gdiplus::GpGraphics* graphics) {
    return *static_cast<GraphicsObject*>(graphics);
}

/// Whether `GdiplusStartup` was called more often than `GdiplusShutdown`.
bool isStarted();

/// Hands a new bitmap out.
template <typename Made>
Gdiplus::GpStatus handOut(Made made, Gdiplus::GpBitmap** bitmap) {
    if (!made)
        return made.error().status;
    *bitmap = made->release();
    return Gdiplus::Ok;
}

/// Whether a rectangle is not empty and lies inside the bitmap.
bool liesInside(const Gdiplus::Rect& area, const BitmapObject& bitmap);

} // namespace GdiplusBackend
