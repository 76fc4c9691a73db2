#include "gdiplus/flat/FlatGuard.h"
#include "gdiplus/pixels/Composite.h"

#include "platform/GdiplusFlat.h"

using namespace GdiplusBackend;

namespace {

/// What stands behind a `GpSolidFill`.
struct SolidFillObject : Gdiplus::GpSolidFill {
    explicit SolidFillObject(Gdiplus::ARGB argb)
        : color(argb) {}

    Gdiplus::ARGB color;
};

SolidFillObject& solidFillOf(Gdiplus::GpBrush* brush) {
    return *static_cast<SolidFillObject*>(static_cast<Gdiplus::GpSolidFill*>(brush));
}

} // namespace

namespace Gdiplus::DllExports {

GpStatus GdipGetImageGraphicsContext(GpImage* image, GpGraphics** graphics) {
    if (!image || !graphics)
        return InvalidParameter;
    return flat([&] {
        BitmapObject& bitmap = bitmapOf(image);
        if (!isDrawable(bitmap.traits().format))
            return OutOfMemory;
        *graphics = new GraphicsObject(bitmap);
        return Ok;
    });
}

GpStatus GdipDeleteGraphics(GpGraphics* graphics) {
    if (!graphics)
        return InvalidParameter;
    delete &graphicsOf(graphics);
    return Ok;
}

GpStatus GdipSetInterpolationMode(GpGraphics* graphics, InterpolationMode mode) {
    if (!graphics || mode < InterpolationModeDefault || mode > InterpolationModeHighQualityBicubic)
        return InvalidParameter;
    graphicsOf(graphics).setInterpolationMode(mode);
    return Ok;
}

GpStatus GdipGetInterpolationMode(GpGraphics* graphics, InterpolationMode* mode) {
    if (!graphics || !mode)
        return InvalidParameter;
    *mode = graphicsOf(graphics).interpolationMode();
    return Ok;
}

GpStatus GdipGraphicsClear(GpGraphics* graphics, ARGB color) {
    if (!graphics)
        return InvalidParameter;
    return flat([&] { return statusOf(graphicsOf(graphics).clear(color)); });
}

GpStatus GdipFillRectangleI(GpGraphics* graphics, GpBrush* brush, INT x, INT y, INT width, INT height) {
    if (!graphics || !brush)
        return InvalidParameter;
    return flat([&] {
        return statusOf(graphicsOf(graphics).fill(solidFillOf(brush).color, Rect(x, y, width, height)));
    });
}

GpStatus GdipDrawImageI(GpGraphics* graphics, GpImage* image, INT x, INT y) {
    if (!graphics || !image)
        return InvalidParameter;
    return flat([&] { return statusOf(graphicsOf(graphics).draw(bitmapOf(image), x, y)); });
}

GpStatus GdipDrawImageRectRect(GpGraphics* graphics, GpImage* image, REAL dstX, REAL dstY, REAL dstWidth,
                               REAL dstHeight, REAL srcX, REAL srcY, REAL srcWidth, REAL srcHeight,
                               GpUnit unit, const GpImageAttributes* attributes, DrawImageAbort callback,
                               VOID*) {
    if (!graphics || !image)
        return InvalidParameter;
    if (unit != UnitPixel || attributes || callback)
        return NotImplemented;
    return flat([&] {
        return statusOf(graphicsOf(graphics).draw(bitmapOf(image), {dstX, dstWidth, srcX, srcWidth},
                                                  {dstY, dstHeight, srcY, srcHeight}));
    });
}

GpStatus GdipDrawImageRectRectI(GpGraphics* graphics, GpImage* image, INT dstX, INT dstY, INT dstWidth,
                                INT dstHeight, INT srcX, INT srcY, INT srcWidth, INT srcHeight, GpUnit unit,
                                const GpImageAttributes* attributes, DrawImageAbort callback, VOID*) {
    if (!graphics || !image)
        return InvalidParameter;
    if (unit != UnitPixel || attributes || callback)
        return NotImplemented;
    const auto axis = [](INT dst, INT dstLength, INT src, INT srcLength) {
        return DrawAxis{dst * 1.0, dstLength * 1.0, src * 1.0, srcLength * 1.0};
    };
    return flat([&] {
        return statusOf(graphicsOf(graphics).draw(bitmapOf(image), axis(dstX, dstWidth, srcX, srcWidth),
                                                  axis(dstY, dstHeight, srcY, srcHeight)));
    });
}

GpStatus GdipCreateSolidFill(ARGB color, GpSolidFill** brush) {
    if (!brush)
        return InvalidParameter;
    return flat([&] {
        *brush = new SolidFillObject(color);
        return Ok;
    });
}

GpStatus GdipDeleteBrush(GpBrush* brush) {
    if (!brush)
        return InvalidParameter;
    delete &solidFillOf(brush);
    return Ok;
}

} // namespace Gdiplus::DllExports
