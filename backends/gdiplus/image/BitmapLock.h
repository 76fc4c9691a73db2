#pragma once

#include "gdiplus/pixels/PixelBuffer.h"

namespace GdiplusBackend {

/// A rectangle of a bitmap that is open to the caller: the bitmap's own memory, or a converted copy that goes
/// back when it is closed.
class BitmapLock {
public:
    /// The rectangle lies inside `bitmap`. `InvalidParameter` for a format that can't be had.
    static Result<BitmapLock> open(const PixelView& bitmap, const Gdiplus::Rect& area, UINT mode,
                                   Gdiplus::PixelFormat format);

    const PixelView& memory() const { return shown; }
    /// Brings what was written in a converted copy back into `bitmap`.
    void close(const PixelView& bitmap);

private:
    Gdiplus::Rect area;
    UINT mode = 0;
    PixelBuffer copy; ///< empty when the bitmap's memory itself is open
    PixelView shown;
};

} // namespace GdiplusBackend
