#include "production/PdfPage.h"

#include "platform/PageRasterLib.h"
#include "production/PathExtension.h"
#include "scheduling/imagefile/TextConversion.h"

#include <memory>

namespace KestoThumbnailer {

namespace {

constexpr int firstPage = 1;

bool DrawFirstPage(const PageRasterLib::Pdf& document, int width, int height, Gdiplus::Bitmap& bitmap) {
    Gdiplus::BitmapData locked;
    if (bitmap.LockBits(nullptr, Gdiplus::ImageLockModeWrite, bitmap.GetPixelFormat(), &locked) !=
        Gdiplus::Ok)
        return false;
    const bool drawn = document.Rasterize(width, height, firstPage, locked.Scan0, locked.Stride);
    bitmap.UnlockBits(&locked);
    return drawn;
}

} // namespace

bool HasPdfExtension(const std::wstring& path) {
    std::wstring extension;
    return ExtensionOf(path.c_str(), &extension) && LowerAscii(extension) == L"pdf";
}

Gdiplus::Bitmap* GetThumbnailForPdf(const std::wstring& path) {
    const PageRasterLib::Pdf document(Utf8FromWide(path));
    int width = 0;
    int height = 0;
    if (!document.DefaultDimensions(firstPage, width, height))
        return nullptr;
    std::unique_ptr<Gdiplus::Bitmap> bitmap(new Gdiplus::Bitmap(width, height, PixelFormat32bppPARGB));
    if (!bitmap || !DrawFirstPage(document, width, height, *bitmap))
        return nullptr;
    return bitmap.release();
}

} // namespace KestoThumbnailer
