#include "production/GdiplusBitmapThumbnailingHelper.h"

namespace KestoThumbnailer {

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::LoadErrorImage(const std::wstring&) {
    return nullptr;
}

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GetThumbnailForOffline(const std::wstring& path) {
    return LoadErrorImage(path);
}

// FIXME: callouts are not shown.
Gdiplus::Bitmap*
GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout(boost::shared_ptr<const KestoMediaLib::Callout>, int,
                                                        int) {
    return nullptr;
}

} // namespace KestoThumbnailer
