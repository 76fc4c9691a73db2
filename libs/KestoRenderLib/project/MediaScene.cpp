#include "KestoRenderLib/project/MediaScene.h"

#include "KestoRenderLib/project/FrameSource.h"
#include "KestoRenderLib/project/PicturePainter.h"
#include "KestoRenderLib/project/RenderBudget.h"

#include "KestoMediaLib/MediaSpan.h"

#include <algorithm>
#include <cmath>

namespace KestoRenderLib {

namespace {

/// A length of a file that nobody looked at, and one that makes no sense, is that of the picture.
double extentOf(float length) {
    return std::isfinite(length) && length > 0 ? length : 0;
}

Size wholePixels(double width, double height) {
    return sizeOf(touchedPixels({0, 0, width, height}));
}

Rect everythingOf(const Size& size) {
    return {0, 0, size.width, size.height};
}

} // namespace

MediaScene::MediaScene(const Stage& stage, const KestoMediaLib::VisualMedia& media, __int64 time)
    : around(stage)
    , placement(KestoMediaLib::placementOf(media)) {
    const KestoMediaLib::MediaSpan span = KestoMediaLib::spanOf(media);
    content = KestoMediaLib::contentTimeAt(span, time);
    animation = KestoMediaLib::animationTimeAt(span, time);
    extentX = extentOf(media.width(animation));
    extentY = extentOf(media.height(animation));
    opacity = stage.opacity * KestoMediaLib::opacityAt(placement, animation);
}

MediaScene::Area MediaScene::areaOf(double width, double height) const {
    const auto matrix = KestoMediaLib::placementMatrix(placement, animation, width, height);
    const auto left = KestoMediaLib::croppedArea(placement, animation, width, height);
    return {around.fromMiddle * Affine::inPlane(matrix),
            {left.x, left.y, left.x + left.width, left.y + left.height}};
}

bool MediaScene::isInSight() const {
    if (!(opacity > 0))
        return false;
    if (extentX == 0 || extentY == 0)
        return true;
    return !isEmpty(coveredPixels());
}

double MediaScene::zoom() const {
    const Affine map = areaOf(extentX, extentY).map;
    return std::max(map.lengthAcross(), map.lengthDown());
}

Rect MediaScene::coveredPixels() const {
    const Area area = areaOf(extentX, extentY);
    return intersection(touchedPixels(boundsOf(area.shown, area.map)), around.surface.clip());
}

void MediaScene::paint(IPictureSource& source) const {
    paintThrough(around.surface, Affine(), opacity, source);
}

void MediaScene::paintOnto(Surface& surface, int left, int top, IPictureSource& source) const {
    paintThrough(surface, Affine::translation(-left, -top), 1, source);
}

void MediaScene::paintThrough(Surface& surface, const Affine& outer, double faded,
                              IPictureSource& source) const {
    const Size size = source.size();
    if (size.width < 1 || size.height < 1)
        return;
    const double width = extentX > 0 ? extentX : size.width;
    const double height = extentY > 0 ? extentY : size.height;
    const Area area = areaOf(width, height);
    const double across = size.width / width;
    const double down = size.height / height;
    paintPicture(surface, source,
                 {outer * area.map * Affine::scaling(1 / across, 1 / down),
                  {area.shown.left * across, area.shown.top * down, area.shown.right * across,
                   area.shown.bottom * down},
                  faded});
}

bool MediaScene::isCropped(const Area& area) const {
    return area.shown.left > 0 || area.shown.top > 0 || area.shown.right < extentX ||
           area.shown.bottom < extentY;
}

Stage MediaScene::inside(Surface& surface, const Affine& map, double childOpacity) const {
    return {surface, map * Affine::translation(extentX / 2, extentY / 2), childOpacity, around.everything,
            around.depth + 1};
}

void MediaScene::paintInside(const std::function<void(const Stage&)>& draw) const {
    if (!(opacity > 0))
        return;
    const Area area = areaOf(extentX, extentY);
    if (isCropped(area))
        paintThroughFrame(area, draw);
    else if (opacity < 1)
        paintThroughLayer(area, draw);
    else
        draw(inside(around.surface, area.map, opacity));
}

/// Media that overlap inside must not shine through each other, so they are composed before they are faded.
void MediaScene::paintThroughLayer(const Area& area, const std::function<void(const Stage&)>& draw) const {
    const Rect& clip = around.surface.clip();
    const Size size = sizeOf(clip);
    if (!isWithinBudget(size))
        return;
    Surface layer(size, everythingOf(size), {});
    draw(inside(layer, Affine::translation(-clip.left, -clip.top) * area.map, 1));
    if (!layer.isBlank())
        if (const auto frame = layer.result())
            around.surface.put(frame, clip.left, clip.top, opacity);
}

/// What is cropped is composed in the media's own pixels, where the crop is a rectangle however the media is
/// turned.
void MediaScene::paintThroughFrame(const Area& area, const std::function<void(const Stage&)>& draw) const {
    const Size size = wholePixels(extentX, extentY);
    if (!isWithinBudget(size))
        return;
    Surface frame(size, everythingOf(size), {});
    draw(inside(frame, Affine(), 1));
    if (frame.isBlank())
        return;
    FrameSource source(frame.result());
    paintPicture(around.surface, source, {area.map, area.shown, opacity});
}

} // namespace KestoRenderLib
