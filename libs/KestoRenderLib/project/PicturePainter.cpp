#include "KestoRenderLib/project/PicturePainter.h"

#include "KestoRenderLib/project/PaintModule.h"
#include "KestoRenderLib/project/SoftEdges.h"

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

double snapped(double edge) {
    return isNear(edge, std::round(edge)) ? std::round(edge) : edge;
}

Box snapped(const Box& box) {
    return {snapped(box.left), snapped(box.top), snapped(box.right), snapped(box.bottom)};
}

bool isWhole(const Box& box) {
    return box.left == std::round(box.left) && box.top == std::round(box.top) &&
           box.right == std::round(box.right) && box.bottom == std::round(box.bottom);
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

/// The source's picture, made smaller than it is, with the placement to match.
struct Reduced {
    boost::shared_ptr<MetaBitmap> picture;
    Affine map;
    Box part;
};

/// Draws one picture, the way that its placement asks for.
class Painter {
public:
    Painter(Surface& target, IPictureSource& pictures, const Placement& wanted)
        : surface(target)
        , source(pictures)
        , placement(wanted)
        , size(pictures.size())
        , bounds(snapped(boundsOf(wanted.part, wanted.map))) {}

    void paint() {
        if (!isVisible())
            return;
        if (isTurned() || isThin())
            paintThroughAffine();
        else if (isShrunkWhole())
            putAtFinalSize();
        else
            drawScaled();
    }

private:
    Rect visiblePixels() const { return intersection(touchedPixels(bounds), surface.clip()); }

    bool isVisible() const {
        return size.width > 0 && size.height > 0 && placement.opacity > 0 && placement.map.isFinite() &&
               placement.part.width() > 0 && placement.part.height() > 0 && !isEmpty(visiblePixels());
    }

    bool isTurned() const {
        return !isNear(placement.map.xy * placement.part.height(), 0) ||
               !isNear(placement.map.yx * placement.part.width(), 0);
    }

    /// Too thin for edges that are told from the inside.
    bool isThin() const { return !isWhole(bounds) && (bounds.width() < 2 || bounds.height() < 2); }

    bool isShrunkWhole() const {
        return isWhole(bounds) && placement.map.xx > 0 && placement.map.yy > 0 &&
               isWholePicture(placement.part, size) && bounds.width() >= 1 && bounds.width() <= size.width &&
               bounds.height() >= 1 && bounds.height() <= size.height;
    }

    void putAtFinalSize() {
        const Rect target = nearestPixels(bounds);
        if (const auto picture = source.picture(sizeOf(target)))
            surface.put(picture, target.left, target.top, placement.opacity);
    }

    /// The picture with `oversampling` times the pixels in each direction that will be seen of it, at most.
    Reduced reduced(double oversampling) const {
        const Size wanted = {reducedLength(size.width, placement.map.lengthAcross() * oversampling),
                             reducedLength(size.height, placement.map.lengthDown() * oversampling)};
        const double across = static_cast<double>(wanted.width) / size.width;
        const double down = static_cast<double>(wanted.height) / size.height;
        return {source.picture(wanted),
                placement.map * Affine::scaling(1 / across, 1 / down),
                {placement.part.left * across, placement.part.top * down, placement.part.right * across,
                 placement.part.bottom * down}};
    }

    /// By the kernels of GDI+, which average where they shrink; only what is visible is computed.
    void drawScaled() {
        const Reduced shown = reduced(2);
        if (!shown.picture)
            return;
        if (isWhole(bounds) && placement.opacity >= 1) {
            if (const auto window = surface.window())
                drawInto(*window, shown, surface.clip());
            return;
        }
        const Rect visible = visiblePixels();
        if (const auto layer = MetaBitmap::Create(sizeOf(visible), PixelFormat::Premultiplied32)) {
            drawInto(*layer, shown, visible);
            softenEdges(*layer, visible, bounds);
            surface.put(layer, visible.left, visible.top, placement.opacity);
        }
    }

    /// `target` shows the surface's pixels in `area`.
    void drawInto(const MetaBitmap& target, const Reduced& shown, const Rect& area) const {
        const bool mirrored = placement.map.xx < 0;
        const bool upsideDown = placement.map.yy < 0;
        const double x = (mirrored ? bounds.right : bounds.left) - area.left;
        const double y = (upsideDown ? bounds.bottom : bounds.top) - area.top;
        const Gdiplus::RectF into(static_cast<float>(x), static_cast<float>(y),
                                  static_cast<float>(mirrored ? -bounds.width() : bounds.width()),
                                  static_cast<float>(upsideDown ? -bounds.height() : bounds.height()));
        const auto bitmap = target.AsGdiplusBitmap();
        Gdiplus::Graphics graphics(bitmap.get());
        graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
        graphics.DrawImage(shown.picture->AsGdiplusBitmap().get(), into, static_cast<float>(shown.part.left),
                           static_cast<float>(shown.part.top), static_cast<float>(shown.part.width()),
                           static_cast<float>(shown.part.height()), Gdiplus::UnitPixel);
    }

    void paintThroughAffine() {
        const auto function = paintThroughAffineFunction();
        if (!function)
            return;
        const Reduced shown = reduced(1);
        const auto window = shown.picture ? surface.window() : boost::shared_ptr<MetaBitmap>();
        if (window)
            (void)function(orderFor(shown, *window)); // what can't be painted is a hole
    }

    AffinePaint orderFor(const Reduced& shown, const MetaBitmap& window) const {
        const Affine map = Affine::translation(-surface.clip().left, -surface.clip().top) * shown.map;
        return {.picture = pixelsOf(*shown.picture),
                .partLeft = shown.part.left,
                .partTop = shown.part.top,
                .partWidth = shown.part.width(),
                .partHeight = shown.part.height(),
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
    Box bounds; ///< of what is shown, on the surface
};

} // namespace

void paintPicture(Surface& surface, IPictureSource& source, const Placement& placement) {
    Painter(surface, source, placement).paint();
}

} // namespace KestoRenderLib
