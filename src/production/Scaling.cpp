#include "production/FitWithinBounds.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/MakeBitmap.h"

#include <memory>

namespace KestoThumbnailer {

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GenerateThumbnailBitmap(Gdiplus::Bitmap* source, int width,
                                                                          int height) {
    if (!source)
        return nullptr;
    const int sourceWidth = static_cast<int>(source->GetWidth());
    const int sourceHeight = static_cast<int>(source->GetHeight());
    if (sourceWidth < 1 || sourceHeight < 1)
        return nullptr;
    int thumbnailWidth = sourceWidth;
    int thumbnailHeight = sourceHeight;
    FitWithinBounds(thumbnailWidth, thumbnailHeight, width, height);

    const PixelFormat own = source->GetPixelFormat();
    std::unique_ptr<Gdiplus::Bitmap> thumbnail =
        MakeBitmap(thumbnailWidth, thumbnailHeight, IsIndexedPixelFormat(own) ? PixelFormat32bppARGB : own);
    if (!thumbnail)
        return nullptr;
    Gdiplus::Graphics graphics(thumbnail.get());
    if (graphics.GetLastStatus() != Gdiplus::Ok)
        return nullptr;
    // Deliberate: the default interpolation stands here, and the outcome of the drawing is nobody's concern.
    graphics.DrawImage(source, Gdiplus::Rect(0, 0, thumbnailWidth, thumbnailHeight), 0, 0, sourceWidth,
                       sourceHeight, Gdiplus::UnitPixel);
    return thumbnail.release();
}

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::ScaleToGetThumbnail(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it by value
    boost::shared_ptr<KestoRenderLib::MetaBitmap> bitmap, int width, int height) {
    if (!bitmap)
        return nullptr;
    const int frameWidth = bitmap->GetWidth();
    const int frameHeight = bitmap->GetHeight();
    const std::unique_ptr<Gdiplus::Bitmap> canvas = MakeBitmap(frameWidth, frameHeight, PixelFormat32bppARGB);
    const boost::shared_ptr<Gdiplus::Bitmap> frame = bitmap->AsGdiplusBitmap();
    if (!canvas || !frame)
        return nullptr;

    Gdiplus::Graphics graphics(canvas.get());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.Clear(Gdiplus::Color(255, 0, 0, 0)); // a transparent frame ends on black
    const auto fullWidth = static_cast<Gdiplus::REAL>(frameWidth);
    const auto fullHeight = static_cast<Gdiplus::REAL>(frameHeight);
    graphics.DrawImage(frame.get(), Gdiplus::RectF(0, 0, fullWidth, fullHeight), 0, 0, fullWidth, fullHeight,
                       Gdiplus::UnitPixel);
    return GenerateThumbnailBitmap(canvas.get(), width, height);
}

} // namespace KestoThumbnailer
