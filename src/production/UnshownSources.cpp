#include "production/GdiplusBitmapThumbnailingHelper.h"

namespace KestoThumbnailer {

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::LoadErrorImage(const std::wstring&) {
    return nullptr;
}

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GetThumbnailForOffline(const std::wstring& path) {
    return LoadErrorImage(path);
}

} // namespace KestoThumbnailer
