#include "KestoRenderLib/project/PicturePainter.h"

#include "KestoRenderLib/project/PaintModule.h"
#include "KestoRenderLib/project/PixelRows.h"

#include "platform/Gdiplus.h"

#include <algorithm>
#include <cmath>

namespace KestoRenderLib {

namespace {

/// What is nearer than this to a whole pixel is meant to be there: a 256th is where edges could first be told
/// apart in 8 bits.
constexpr double tolerance = 1.0 / 256;

bool isNear(double one, double other) {
    return std::abs(one - other) < tolerance;
}

bool isWhole(double value) {
    return isNear(value, std::round(value));
}

/// Whether rows stay rows and edges fall between pixels.
bool isOnGrid(const Affine& map, const Box& bounds, const Box& part) {
    const bool unturned = isNear(map.xy * part.height(), 0) && isNear(map.yx * part.width(), 0);
    return unturned && isWhole(bounds.left) && isWhole(bounds.top) && isWhole(bounds.right) &&
           isWhole(bounds.bottom);
}

bool isWholePicture(const Box& part, const Size& size) {
    return isNear(part.left, 0) && isNear(part.top, 0) && isNear(part.right, size.width) &&
           isNear(part.bottom, size.height);
}

int reducedLength(int length, double scale) {
    return scale < 1 ? std::clamp(static_cast<int>(std::ceil(length * scale)), 1, length) : length;
}

PaintedPixels pixelsOf(const MetaBitmap& frame) {
    return {frame.GetPixels(), frame.GetStride(), frame.GetWidth(), frame.GetHeight()};
}

/// One pass of drawing; the parts stand in the order in which they are tried.
class Painter {
public:
    Painter(Surface& target, IPictureSource& pictures, const Placement& wanted)
        : surface(target)
        , source(pictures)
        , placement(wanted)
        , size(pictures.size())
        , bounds(boundsOf(wanted.part, wanted.map)) {}

    void paint() {
        if (!isVisible())
            return;
        if (!isOnGrid(placement.map, bounds, placement.part))
            paintThroughAffine();
        else if (isShrunkWhole())
            putAtFinalSize();
        else
            drawScaled();
    }

private:
    bool isVisible() const {
        return size.width > 0 && size.height > 0 && placement.opacity > 0 && placement.map.isFinite() &&
               placement.part.width() > 0 && placement.part.height() > 0 &&
               !isEmpty(intersection(touchedPixels(bounds), surface.clip()));
    }

    bool isShrunkWhole() const {
        const Size shown = sizeOf(nearestPixels(bounds));
        return placement.map.xx > 0 && placement.map.yy > 0 && isWholePicture(placement.part, size) &&
               shown.width >= 1 && shown.width <= size.width && shown.height >= 1 &&
               shown.height <= size.height;
    }

    void putAtFinalSize() {
        const Rect target = nearestPixels(bounds);
        if (const auto picture = source.picture(sizeOf(target)))
            surface.put(picture, target.left, target.top, placement.opacity);
    }

    /// By the kernels of GDI+, which average where they shrink; only what is visible is computed.
    void drawScaled() {
        const auto picture = source.picture(size);
        if (!picture)
            return;
        const Rect visible = intersection(nearestPixels(bounds), surface.clip());
        if (placement.opacity >= 1) {
            if (const auto window = surface.window())
                drawInto(*window, *picture, surface.clip());
            return;
        }
        if (const auto layer = MetaBitmap::Create(sizeOf(visible), PixelFormat::Premultiplied32)) {
            drawInto(*layer, *picture, visible);
            surface.put(layer, visible.left, visible.top, placement.opacity);
        }
    }

    /// `target` shows the surface's pixels in `area`.
    void drawInto(const MetaBitmap& target, const MetaBitmap& picture, const Rect& area) const {
        const Box& part = placement.part;
        const Affine& map = placement.map;
        const auto bitmap = target.AsGdiplusBitmap();
        Gdiplus::Graphics graphics(bitmap.get());
        graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
        const Gdiplus::RectF into(
            static_cast<float>(std::round(map.xx * part.left + map.dx) - area.left),
            static_cast<float>(std::round(map.yy * part.top + map.dy) - area.top),
            static_cast<float>(std::round(map.xx * part.right + map.dx) - std::round(map.xx * part.left + map.dx)),
            static_cast<float>(std::round(map.yy * part.bottom + map.dy) - std::round(map.yy * part.top + map.dy)));
        graphics.DrawImage(picture.AsGdiplusBitmap().get(), into, static_cast<float>(part.left),
                           static_cast<float>(part.top), static_cast<float>(part.width()),
                           static_cast<float>(part.height()), Gdiplus::UnitPixel);
    }

    void paintThroughAffine() {
        const auto function = paintThroughAffineFunction();
        if (!function)
            return;
        const Size reduced = {reducedLength(size.width, placement.map.lengthAcross()),
                              reducedLength(size.height, placement.map.lengthDown())};
        const auto picture = source.picture(reduced);
        const auto window = picture ? surface.window() : boost::shared_ptr<MetaBitmap>();
        if (window)
            (void)function(orderFor(*picture, *window)); // what can't be painted is a hole
    }

    AffinePaint orderFor(const MetaBitmap& picture, const MetaBitmap& window) const {
        const double across = static_cast<double>(picture.GetWidth()) / size.width;
        const double down = static_cast<double>(picture.GetHeight()) / size.height;
        const Affine map = Affine::translation(-surface.clip().left, -surface.clip().top) * placement.map *
                           Affine::scaling(1 / across, 1 / down);
        return {.picture = pixelsOf(picture),
                .partLeft = placement.part.left * across,
                .partTop = placement.part.top * down,
                .partWidth = placement.part.width() * across,
                .partHeight = placement.part.height() * down,
                .xx = map.xx,
                .yx = map.yx,
                .xy = map.xy,
                .yy = map.yy,
                .dx = map.dx,
                .dy = map.dy,
                .opacity = placement.opacity,
                .target = pixelsOf(window)};
    }

    Surface& surface;
    IPictureSource& source;
    const Placement& placement;
    Size size;
    Box bounds;
};

} // namespace

void paintPicture(Surface& surface, IPictureSource& source, const Placement& placement) {
    Painter(surface, source, placement).paint();
}

} // namespace KestoRenderLib
