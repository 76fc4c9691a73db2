#pragma once

#include "platform/GdiplusBitmap.h"

namespace Gdiplus {

using DllExports::GdiplusShutdown;
using DllExports::GdiplusStartup;

class Brush : public GdiplusBase {
public:
    virtual ~Brush() { DllExports::GdipDeleteBrush(nativeBrush); }

protected:
    friend class Graphics;
    Brush() = default;

    GpBrush* nativeBrush = nullptr;
};

class SolidBrush : public Brush {
public:
    explicit SolidBrush(const Color& color) {
        GpSolidFill* native = nullptr;
        SetStatus(DllExports::GdipCreateSolidFill(color.GetValue(), &native));
        nativeBrush = native;
    }
};

class Graphics : public GdiplusBase {
public:
    /// Draws into `image`, which must outlive this object.
    explicit Graphics(Image* image) {
        SetStatus(
            DllExports::GdipGetImageGraphicsContext(image ? image->nativeImage : nullptr, &nativeGraphics));
    }
    ~Graphics() { DllExports::GdipDeleteGraphics(nativeGraphics); }

    static Graphics* FromImage(Image* image) { return new Graphics(image); }

    Status SetInterpolationMode(InterpolationMode mode) {
        return SetStatus(DllExports::GdipSetInterpolationMode(nativeGraphics, mode));
    }
    InterpolationMode GetInterpolationMode() const {
        InterpolationMode mode = InterpolationModeInvalid;
        SetStatus(DllExports::GdipGetInterpolationMode(nativeGraphics, &mode));
        return mode;
    }

    Status Clear(const Color& color) {
        return SetStatus(DllExports::GdipGraphicsClear(nativeGraphics, color.GetValue()));
    }
    Status FillRectangle(const Brush* brush, INT x, INT y, INT width, INT height) {
        return SetStatus(DllExports::GdipFillRectangleI(nativeGraphics, brush ? brush->nativeBrush : nullptr,
                                                        x, y, width, height));
    }
    Status DrawImage(Image* image, INT x, INT y) {
        return SetStatus(
            DllExports::GdipDrawImageI(nativeGraphics, image ? image->nativeImage : nullptr, x, y));
    }
    Status DrawImage(Image* image, const RectF& target, REAL srcX, REAL srcY, REAL srcWidth, REAL srcHeight,
                     Unit unit) {
        return SetStatus(DllExports::GdipDrawImageRectRect(
            nativeGraphics, image ? image->nativeImage : nullptr, target.X, target.Y, target.Width,
            target.Height, srcX, srcY, srcWidth, srcHeight, unit, nullptr, nullptr, nullptr));
    }
    Status DrawImage(Image* image, const Rect& target, INT srcX, INT srcY, INT srcWidth, INT srcHeight,
                     Unit unit) {
        return SetStatus(DllExports::GdipDrawImageRectRectI(
            nativeGraphics, image ? image->nativeImage : nullptr, target.X, target.Y, target.Width,
            target.Height, srcX, srcY, srcWidth, srcHeight, unit, nullptr, nullptr, nullptr));
    }

private:
    GpGraphics* nativeGraphics = nullptr;
};

} // namespace Gdiplus
