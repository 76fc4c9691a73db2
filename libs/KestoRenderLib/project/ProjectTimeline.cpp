#include "KestoRenderLib/project/ProjectTimeline.h"

#include "KestoRenderLib/project/Box.h"
#include "KestoRenderLib/project/MediaPainter.h"
#include "KestoRenderLib/project/RenderBudget.h"
#include "KestoRenderLib/project/RenderObjects.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace KestoRenderLib {

namespace {

/// An edge beyond the range of integers stays at its end.
Rect edgesOf(const KestoMediaLib::Rect<int>& rect) {
    const auto end = [](int start, int length) {
        return static_cast<int>(std::clamp<std::int64_t>(
            std::int64_t{start} + length, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    };
    return {rect.x, rect.y, end(rect.x, rect.width), end(rect.y, rect.height)};
}

/// When frame `frame` is shown, in model time; nothing before the start.
std::optional<__int64> timeOf(__int64 frame, const boost::rational<unsigned long>& rate) {
    constexpr auto largest = static_cast<unsigned long>(std::numeric_limits<__int64>::max());
    if (frame < 0 || rate.numerator() == 0 || rate.numerator() > largest || rate.denominator() > largest)
        return std::nullopt;
    const KestoMediaLib::SafeRational framesPerSecond(static_cast<__int64>(rate.numerator()),
                                                      static_cast<__int64>(rate.denominator()));
    return KestoMediaLib::RationalUtil::toKestoTime(KestoMediaLib::SafeRational(frame) / framesPerSecond);
}

/// Canvas points are counted from the middle, which in an odd length is the left or upper edge of the pixel
/// in the middle: so whole canvases come to lie on whole pixels.
Affine middleToCanvasPoints(const Size& canvas) {
    return Affine::translation(canvas.width / 2.0 - canvas.width / 2,
                               canvas.height / 2.0 - canvas.height / 2);
}

Box canvasInCanvasPoints(const Size& canvas) {
    const int left = -(canvas.width / 2);
    const int top = -(canvas.height / 2);
    return {left * 1.0, top * 1.0, left + canvas.width * 1.0, top + canvas.height * 1.0};
}

} // namespace

ProjectTimeline::ProjectTimeline(boost::shared_ptr<const KestoMediaLib::Project> rendered,
                                 boost::shared_ptr<IDrawingManager> drawingManager,
                                 boost::shared_ptr<RenderObjectFactory> objectFactory,
                                 boost::shared_ptr<IRenderState> renderState)
    : project(std::move(rendered))
    , manager(std::move(drawingManager))
    , factory(std::move(objectFactory))
    , state(std::move(renderState))
    , view(toKestoMLRectInt(manager->size())) {}

void ProjectTimeline::setViewport(const KestoMediaLib::Rect<int>& viewport,
                                  const KestoMediaLib::TransformMatrix& canvasToViewport) {
    view = viewport;
    transform = canvasToViewport;
}

void ProjectTimeline::renderFrame(__int64 frame) {
    auto* target = dynamic_cast<GdiDrawingManager*>(manager.get());
    if (!target)
        return;
    const KestoRenderLib::Size size = target->size();
    target->setCurrentFrame(isWithinBudget(size) ? render(frame, size) : boost::shared_ptr<MetaBitmap>());
}

boost::shared_ptr<MetaBitmap> ProjectTimeline::render(__int64 frame, const KestoRenderLib::Size& size) {
    const Affine canvasToScreen = viewToScreen();
    const Rect canvas = nearestPixels(boundsOf(canvasInCanvasPoints(canvasSizeOf(*project)), canvasToScreen));
    const Rect inside = intersection(canvasRect, canvas);
    const Rect drawn = clipToCanvas ? intersection(edgesOf(view), inside) : edgesOf(view);
    Surface surface(size, drawn, takeReusableMemory());
    drawProject(surface, frame, canvasToScreen);
    if (!clipToCanvas && outsideOpacity < 255)
        surface.fadeOutside(inside, std::max(outsideOpacity, 0) / 255.0);
    auto result = surface.result();
    memory = surface.reusableMemory();
    return result;
}

void ProjectTimeline::drawProject(Surface& surface, __int64 frame, const Affine& canvasToScreen) {
    const auto time = timeOf(frame, project->frameRate());
    if (!time || isEmpty(surface.clip()))
        return;
    const Stage canvas = {.surface = surface,
                          .fromMiddle = canvasToScreen * middleToCanvasPoints(canvasSizeOf(*project)),
                          .everything = state->mediaToRender().empty()};
    const MediaPainter painter(factory->objects().sources(), state->mediaToRender());
    for (const auto& track : project->timeline()->mixer()->tracks())
        painter.drawTrack(*track, *time, canvas);
}

Affine ProjectTimeline::viewToScreen() const {
    return Affine::translation(view.x + static_cast<double>(view.width / 2),
                               view.y + static_cast<double>(view.height / 2)) *
           Affine::inPlane(transform);
}

/// A frame that somebody still holds is left alone.
boost::shared_ptr<MetaBitmap> ProjectTimeline::takeReusableMemory() {
    if (auto* target = dynamic_cast<GdiDrawingManager*>(manager.get()))
        target->setCurrentFrame({});
    auto reusable = std::move(memory);
    memory.reset();
    return reusable && reusable.unique() ? reusable : boost::shared_ptr<MetaBitmap>();
}

} // namespace KestoRenderLib
