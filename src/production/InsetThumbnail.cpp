#include "production/InsetThumbnail.h"

#include "production/FitsInside.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"

#include <memory>

namespace KestoThumbnailer {

namespace {

int WidthOf(const Gdiplus::Bitmap& bitmap) {
    return static_cast<int>(bitmap.GetWidth());
}

int HeightOf(const Gdiplus::Bitmap& bitmap) {
    return static_cast<int>(bitmap.GetHeight());
}

std::unique_ptr<Gdiplus::Bitmap> CloneWhole(Gdiplus::Bitmap& bitmap) {
    return std::unique_ptr<Gdiplus::Bitmap>(
        bitmap.Clone(0, 0, WidthOf(bitmap), HeightOf(bitmap), PixelFormat32bppPARGB));
}

// Deliberate: the inset fills the quarter whatever its own shape, and the default interpolation stands.
void DrawIntoLastQuarter(Gdiplus::Bitmap& onto, Gdiplus::Bitmap& inset) {
    const int halfWidth = WidthOf(onto) / 2;
    const int halfHeight = HeightOf(onto) / 2;
    const Gdiplus::Rect quarter(WidthOf(onto) - halfWidth, HeightOf(onto) - halfHeight, halfWidth,
                                halfHeight);
    Gdiplus::Graphics(&onto).DrawImage(&inset, quarter, 0, 0, WidthOf(inset), HeightOf(inset),
                                       Gdiplus::UnitPixel);
}

} // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): callers know them by value
Gdiplus::Bitmap* ComposeInsetThumbnail(boost::shared_ptr<Gdiplus::Bitmap> base,
                                       boost::shared_ptr<Gdiplus::Bitmap> inset, int width, int height) {
    // NOLINTEND(performance-unnecessary-value-param)
    if (!base && !inset)
        return nullptr;
    std::unique_ptr<Gdiplus::Bitmap> whole = CloneWhole(base ? *base : *inset);
    if (!whole)
        return nullptr;
    if (base && inset)
        DrawIntoLastQuarter(*whole, *inset);
    if (FitsInside(*whole, width, height))
        return whole.release();
    return GdiplusBitmapThumbnailingHelper::GenerateThumbnailBitmap(whole.get(), width, height);
}

} // namespace KestoThumbnailer
