#include "production/FitsInside.h"

namespace KestoThumbnailer {

bool FitsInside(const Gdiplus::Bitmap& bitmap, int width, int height) {
    return width >= 1 && height >= 1 && bitmap.GetWidth() <= static_cast<UINT>(width) &&
           bitmap.GetHeight() <= static_cast<UINT>(height);
}

} // namespace KestoThumbnailer
