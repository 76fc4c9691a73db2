#include "framegrab/CalloutDrawingSize.h"
#include "platform/CalloutDrawer.h"
#include "production/CalloutKind.h"
#include "production/FitWithinBounds.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"
#include "production/MakeBitmap.h"

#include <cstdint>
#include <memory>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::Callout;
using KestoRenderLib::Size;
using CalloutPointer = boost::shared_ptr<const Callout>;

boost::shared_ptr<KestoRenderLib::MetaBitmap> DrawOverlay(const CalloutPointer& callout) {
    KestoRenderLib::CalloutDrawer drawer(callout, {}, /*editing=*/false);
    Size size = NaturalSizeOf(*callout);
    if (!IsRemixArrow(callout) && !IsTypeWinLine(callout))
        size = EnlargedToDrawWell(size);
    drawer.AdjustDimensions(size, size);
    drawer.SetTime(IsTypeWinSVG(callout) ? CalloutFadeTime(callout) : 0);
    return drawer.GenerateOverlay(size, {1.0F, 1.0F}, /*transparent=*/true, /*antialiased=*/true);
}

/// Truncated toward zero.
int ShareOf(int length, int numerator, int denominator) {
    return static_cast<int>(std::int64_t{length} * numerator / denominator);
}

/// Where the overlay is drawn on a bitmap of that size; it may run off the edges.
Gdiplus::Rect PlaceOn(int width, int height, const CalloutPointer& callout) {
    Gdiplus::Rect place(0, 0, width, height);
    if (IsRemixArrow(callout)) {
        place.Width = ShareOf(width, 5, 4);
        place.X = ShareOf(width, -3, 8);
    }
    // Deliberate: no drawing has both shapes, so only one that changes in between comes here.
    if (IsRemixText(callout) && IsBoldTextArrow(callout))
        place = {ShareOf(width, 1, 4), ShareOf(height, 1, 4), ShareOf(width, 5, 4), ShareOf(height, 5, 4)};
    return place;
}

} // namespace

Gdiplus::Bitmap* GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it by value
    boost::shared_ptr<const KestoMediaLib::Callout> callout, int width, int height) {
    if (!callout)
        return nullptr;
    const boost::shared_ptr<KestoRenderLib::MetaBitmap> overlay = DrawOverlay(callout);
    if (!overlay)
        return nullptr;
    const boost::shared_ptr<Gdiplus::Bitmap> picture = overlay->AsGdiplusBitmap();
    int fittedWidth = overlay->GetWidth();
    int fittedHeight = overlay->GetHeight();
    FitWithinBounds(fittedWidth, fittedHeight, width, height);
    std::unique_ptr<Gdiplus::Bitmap> thumbnail = MakeBitmap(fittedWidth, fittedHeight, PixelFormat32bppARGB);
    if (!picture || !thumbnail)
        return nullptr;

    Gdiplus::Graphics graphics(thumbnail.get());
    graphics.Clear(Gdiplus::Color(0, 0, 0, 0));
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQuality);
    graphics.DrawImage(picture.get(), PlaceOn(fittedWidth, fittedHeight, callout), 0, 0, overlay->GetWidth(),
                       overlay->GetHeight(), Gdiplus::UnitPixel);
    return thumbnail.release();
}

} // namespace KestoThumbnailer
