#include "platform/Gdiplus.h"
#include "platform/KestoRenderLib.h"

namespace KestoRenderLib {

bool MetaBitmapHelper::HighQualityScale(MetaBitmap* source, MetaBitmap* destination) {
    if (!source || !destination)
        return false;
    const auto from = source->AsGdiplusBitmap();
    const auto into = destination->AsGdiplusBitmap();
    if (from->GetLastStatus() != Gdiplus::Ok || into->GetLastStatus() != Gdiplus::Ok)
        return false;
    Gdiplus::Graphics graphics(into.get());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.Clear(Gdiplus::Color(0U)); // drawing blends, and over nothing it replaces
    graphics.DrawImage(from.get(), Gdiplus::Rect(0, 0, destination->GetWidth(), destination->GetHeight()), 0,
                       0, source->GetWidth(), source->GetHeight(), Gdiplus::UnitPixel);
    return graphics.GetLastStatus() == Gdiplus::Ok;
}

} // namespace KestoRenderLib
