#pragma once

#include "platform/Gdiplus.h"

#include <memory>

namespace TestSupport {

/// Keeps GDI+ started as long as it lives.
class GdiplusUser {
public:
    GdiplusUser() {
        const Gdiplus::GdiplusStartupInput input;
        Gdiplus::GdiplusStartup(&token, &input, nullptr);
    }
    ~GdiplusUser() { Gdiplus::GdiplusShutdown(token); }
    GdiplusUser(const GdiplusUser&) = delete;
    GdiplusUser& operator=(const GdiplusUser&) = delete;

private:
    ULONG_PTR token = 0;
};

/// 0xAARRGGBB, not premultiplied. A pixel that can't be read is 0x01234567.
inline Gdiplus::ARGB pixelOf(Gdiplus::Bitmap& bitmap, int x, int y) {
    Gdiplus::Color color(0x01234567U);
    bitmap.GetPixel(x, y, &color);
    return color.GetValue();
}

} // namespace TestSupport
