#include "platform/System.h"
#include "production/FitsInside.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/ImageOrientation.h"
#include "production/PdfPage.h"
#include "scheduling/imagefile/ImageHelper.h"

#include <memory>

namespace KestoThumbnailer {

namespace {

std::unique_ptr<Gdiplus::Bitmap> Load(const std::wstring& path) {
    std::unique_ptr<Gdiplus::Bitmap> bitmap;
    if (HasPdfExtension(path))
        bitmap.reset(GetThumbnailForPdf(path));
    else
        bitmap.reset(Gdiplus::Bitmap::FromFile(path.c_str(), /*useEmbeddedColorManagement=*/TRUE));
    if (bitmap && bitmap->GetLastStatus() != Gdiplus::Ok)
        bitmap.reset();
    return bitmap;
}

void MakeCompatibleWithGDI(std::unique_ptr<Gdiplus::Bitmap>& bitmap) {
    Gdiplus::Bitmap* replaced = bitmap.release();
    ImageHelper::MakeBitmapCompatibleWithGDI(replaced);
    bitmap.reset(replaced);
}

/// A bitmap from a file decodes its pixels late, and drawing does not tell whether that worked: without this
/// question a damaged file would end as a blank thumbnail.
bool HasDecodedPixels(Gdiplus::Bitmap& bitmap) {
    return bitmap.ForceValidation() == Gdiplus::Ok;
}

} // namespace

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GetThumbnailForImage(const std::wstring& path, int width,
                                                                       int height) {
    if (path.empty() || GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return nullptr;
    std::unique_ptr<Gdiplus::Bitmap> bitmap = Load(path);
    if (!bitmap)
        return nullptr;
    (void)bitmap->RotateFlip(ReadOrientation(bitmap.get())); // a picture that can't be turned stays as it is
    MakeCompatibleWithGDI(bitmap);
    if (!bitmap)
        return nullptr;

    if (FitsInside(*bitmap, width, height))
        return HasDecodedPixels(*bitmap) ? bitmap.release() : nullptr;
    std::unique_ptr<Gdiplus::Bitmap> thumbnail(GenerateThumbnailBitmap(bitmap.get(), width, height));
    return HasDecodedPixels(*bitmap) ? thumbnail.release() : nullptr;
}

} // namespace KestoThumbnailer
