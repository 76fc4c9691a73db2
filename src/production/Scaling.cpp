#include "production/FitWithinBounds.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/MakeBitmap.h"

#include <memory>

namespace KestoThumbnailer {

namespace {

/// Null when the source has no size, or without memory.
std::unique_ptr<Gdiplus::Bitmap> FittedInto(Gdiplus::Bitmap& source, int width, int height,
                                            PixelFormat format) {
    const int sourceWidth = static_cast<int>(source.GetWidth());
    const int sourceHeight = static_cast<int>(source.GetHeight());
    if (sourceWidth < 1 || sourceHeight < 1)
        return nullptr;
    int thumbnailWidth = sourceWidth;
    int thumbnailHeight = sourceHeight;
    FitWithinBounds(thumbnailWidth, thumbnailHeight, width, height);

    std::unique_ptr<Gdiplus::Bitmap> thumbnail = MakeBitmap(thumbnailWidth, thumbnailHeight, format);
    if (!thumbnail)
        return nullptr;
    Gdiplus::Graphics graphics(thumbnail.get());
    if (graphics.GetLastStatus() != Gdiplus::Ok)
        return nullptr;
    // Deliberate: the default interpolation stands here, and the outcome of the drawing is nobody's concern.
    graphics.DrawImage(&source, Gdiplus::Rect(0, 0, thumbnailWidth, thumbnailHeight), 0, 0, sourceWidth,
                       sourceHeight, Gdiplus::UnitPixel);
    return thumbnail;
}

} // namespace

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GenerateThumbnailBitmap(Gdiplus::Bitmap* source, int width,
                                                                          int height) {
    if (!source)
        return nullptr;
    const PixelFormat own = source->GetPixelFormat();
    return FittedInto(*source, width, height, IsIndexedPixelFormat(own) ? PixelFormat32bppARGB : own)
        .release();
}

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::ScaleToGetThumbnail(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it by value
    boost::shared_ptr<KestoRenderLib::MetaBitmap> bitmap, int width, int height) {
    if (!bitmap)
        return nullptr;
    // A transparent frame ends on black: over black, premultiplied colours stay what they are. So its memory
    // is looked at without its alpha, instead of being drawn onto a black canvas of the same size.
    Gdiplus::Bitmap overBlack(bitmap->GetWidth(), bitmap->GetHeight(), bitmap->GetStride(),
                              PixelFormat32bppRGB, bitmap->GetPixels());
    if (overBlack.GetLastStatus() != Gdiplus::Ok)
        return nullptr;
    return FittedInto(overBlack, width, height, PixelFormat32bppARGB).release();
}

} // namespace KestoThumbnailer
