#pragma once

#include "gdiplus/image/BitmapObject.h"
#include "gdiplus/image/DrawGeometry.h"

namespace GdiplusBackend {

/// What stands behind a `GpGraphics`: draws into one bitmap. One thread at a time.
class GraphicsObject : public Gdiplus::GpGraphics {
public:
    /// The bitmap's format `isDrawable`, and it outlives this object.
    explicit GraphicsObject(BitmapObject& bitmap)
        : target(bitmap) {}

    Gdiplus::InterpolationMode interpolationMode() const { return mode; }
    /// Modes that stand for another one read back as that.
    void setInterpolationMode(Gdiplus::InterpolationMode value);

    // Each is `WrongState` while the bitmap or the picture is locked. Colours are not premultiplied.

    /// Replaces every pixel.
    Result<void> clear(Gdiplus::ARGB color);
    /// Source-over of what lies inside the bitmap.
    Result<void> fill(Gdiplus::ARGB color, const Gdiplus::Rect& area);
    /// Source-over of `picture`, which may be the bitmap itself: then as it was before.
    Result<void> draw(BitmapObject& picture, const DrawAxis& horizontal, const DrawAxis& vertical);
    /// At (x, y), scaled by the ratio of the two resolutions.
    Result<void> draw(BitmapObject& picture, int x, int y);

private:
    Result<PixelView> openTarget();
    Result<void> drawDecoded(BitmapObject& picture, const PaintedAxis& across, const PaintedAxis& down,
                             const PixelView& canvas);

    BitmapObject& target;
    Gdiplus::InterpolationMode mode = Gdiplus::InterpolationModeBilinear;
};

} // namespace GdiplusBackend
