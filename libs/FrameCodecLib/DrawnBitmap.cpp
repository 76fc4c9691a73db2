#include "FrameCodecLib/DrawnBitmap.h"

#include "system/PixelBudget.h"

#include <cstddef>
#include <cstdint>

namespace FrameCodecLib {

namespace {

constexpr int bytesPerPixel = 4;

} // namespace

DrawnBitmap::DrawnBitmap(int frameWidth, int frameHeight)
    : width(frameWidth)
    , height(frameHeight)
    , pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * bytesPerPixel) {}

std::unique_ptr<DrawnBitmap> DrawnBitmap::draw(Gdiplus::Bitmap& picture, int width, int height) {
    std::unique_ptr<DrawnBitmap> drawn(new DrawnBitmap(width, height));
    Gdiplus::Bitmap target(width, height, drawn->GetStride(), PixelFormat32bppPARGB, drawn->pixels.data());
    Gdiplus::Graphics graphics(&target);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.DrawImage(&picture, Gdiplus::Rect(0, 0, width, height), 0, 0,
                       static_cast<int>(picture.GetWidth()), static_cast<int>(picture.GetHeight()),
                       Gdiplus::UnitPixel);
    if (picture.ForceValidation() != Gdiplus::Ok || graphics.GetLastStatus() != Gdiplus::Ok)
        return nullptr;
    return drawn;
}

int DrawnBitmap::GetStride() const {
    return width * bytesPerPixel;
}

bool OutputSize::set(int wantedWidth, int wantedHeight) {
    const bool isDisplaySize = wantedWidth == 0 && wantedHeight == 0;
    if (!isDisplaySize && (wantedWidth < 1 || wantedHeight < 1 ||
                           std::int64_t{wantedWidth} * wantedHeight > SystemBackend::pixelBudget()))
        return false;
    width = wantedWidth;
    height = wantedHeight;
    return true;
}

} // namespace FrameCodecLib
