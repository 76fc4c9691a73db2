#include "platform/AnimatedGif.h"
#include "production/FitWithinBounds.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/MakeBitmap.h"

namespace KestoThumbnailer {

namespace {

using KestoRenderLib::MetaBitmap;

boost::shared_ptr<MetaBitmap> FrameOf(FrameCodecLib::WICAnimatedGIFLoader& gif, double time) {
    // Deliberate: the start is shown by the second frame.
    return MetaBitmap::CreateReferenceToFrameCodecLibBitmap(time == 0.0 ? gif.GetFrameAtIndex(1)
                                                                        : gif.GetFrameAtTime(time));
}

} // namespace

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GetThumbnailForAnimatedGIF(const std::wstring& path,
                                                                             double time, int width,
                                                                             int height) {
    FrameCodecLib::WICAnimatedGIFLoader gif(path);
    if (!gif.valid)
        return nullptr;
    const boost::shared_ptr<MetaBitmap> frame = FrameOf(gif, time);
    if (!frame)
        return nullptr;
    int fittedWidth = frame->GetWidth();
    int fittedHeight = frame->GetHeight();
    FitWithinBounds(fittedWidth, fittedHeight, width, height);
    std::unique_ptr<Gdiplus::Bitmap> thumbnail = MakeBitmap(fittedWidth, fittedHeight, PixelFormat32bppARGB);
    const boost::shared_ptr<Gdiplus::Bitmap> picture = frame->AsGdiplusBitmap();
    if (!thumbnail || !picture)
        return nullptr;

    Gdiplus::Graphics graphics(thumbnail.get());
    const Gdiplus::SolidBrush background(gif.GetGdiplusBackgroundColor());
    graphics.FillRectangle(&background, 0, 0, fittedWidth, fittedHeight);
    // Deliberate: the default interpolation stands here.
    graphics.DrawImage(picture.get(), Gdiplus::Rect(0, 0, fittedWidth, fittedHeight), 0, 0, frame->GetWidth(),
                       frame->GetHeight(), Gdiplus::UnitPixel);
    return thumbnail.release();
}

} // namespace KestoThumbnailer
