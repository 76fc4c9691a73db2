#include "production/MakeBitmap.h"

namespace KestoThumbnailer {

std::unique_ptr<Gdiplus::Bitmap> MakeBitmap(int width, int height, PixelFormat format) {
    std::unique_ptr<Gdiplus::Bitmap> bitmap(new Gdiplus::Bitmap(width, height, 0, format, nullptr));
    if (bitmap && bitmap->GetLastStatus() != Gdiplus::Ok)
        bitmap.reset();
    return bitmap;
}

} // namespace KestoThumbnailer
