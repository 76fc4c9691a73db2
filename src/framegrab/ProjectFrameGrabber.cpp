#include "framegrab/ProjectFrameGrabber.h"

#include "framegrab/FrameGrabberUtil.h"
#include "framegrab/Truncated.h"
#include "platform/KestoMediaGeometry.h"
#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderProject.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <cmath>
#include <cstdint>
#include <utility>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::Point;
using KestoMediaLib::TransformMatrix;
using KestoRenderLib::GdiDrawingManager;
using KestoRenderLib::KestoRenderLibException;
using KestoRenderLib::MetaBitmap;
using KestoRenderLib::RendererInfo;
using KestoRenderLib::Size;

constexpr int opaque = 255;

RendererInfo InfoFor(bool offScreen) {
    return {.windowHandle = 0,
            .offScreen = offScreen,
            .deviceIndex = 0,
            .quality = 2,
            .sampleCount = 1,
            .highQualityScaling = true};
}

Size CanvasSizeOf(const KestoMediaLib::Project& project) {
    const auto timeline = project.timeline();
    return {Truncated<std::int32_t>(timeline->attributeWidth()->value()),
            Truncated<std::int32_t>(timeline->attributeHeight()->value())};
}

template <class Number>
double QuotientOf(const boost::rational<Number>& fraction) {
    return static_cast<double>(fraction.numerator()) / static_cast<double>(fraction.denominator());
}

__int64 FrameNumberAt(const boost::rational<__int64>& time, const KestoMediaLib::Project& project) {
    return Truncated<__int64>(std::floor(QuotientOf(project.frameRate()) * QuotientOf(time)));
}

/// Of that size, with the origin in the middle; an odd length has its larger half right of it and below.
KestoRenderLib::Rect AroundOrigin(const Size& size) {
    const int left = -(size.width / 2);
    const int top = -(size.height / 2);
    return {left, top, left + size.width, top + size.height};
}

/// From the viewport's middle to its corner as the origin.
KestoRenderLib::Rect OnScreen(const KestoRenderLib::Rect& rect, const KestoMediaLib::Rect<int>& viewport) {
    const int across = viewport.width / 2;
    const int down = viewport.height / 2;
    return {rect.left + across, rect.top + down, rect.right + across, rect.bottom + down};
}

/// Carries `source` onto `output`. A source without width or height gives one that carries nothing anywhere.
TransformMatrix Carrying(const KestoMediaLib::Rect<double>& source,
                         const KestoMediaLib::Rect<double>& output) {
    const TransformMatrix scale =
        TransformMatrix::scale(output.width / source.width, output.height / source.height, 1.0);
    const Point offset = Point(output.x, output.y, 0.0) - scale * Point(source.x, source.y, 0.0);
    return TransformMatrix::translate(offset) * scale;
}

} // namespace

ProjectFrameGrabber::ProjectFrameGrabber(boost::shared_ptr<const KestoMediaLib::Project> rendered)
    : project(std::move(rendered)) {
    if (!project)
        throw KestoRenderLibException("Invalid project");
    CreatePipeline();
    if (!drawingManager || !timeline || !renderState || !renderObjectFactory)
        throw KestoRenderLibException("Invalid renderable timeline");
}

// The pipeline is let go in the reverse order of its members.
ProjectFrameGrabber::~ProjectFrameGrabber() = default;

void ProjectFrameGrabber::CreatePipeline() {
    renderState = boost::make_shared<KestoRenderLib::RenderState>();
    drawingManager =
        boost::make_shared<GdiDrawingManager>(InfoFor(/*offScreen=*/true), /*offScreen=*/true, Size{0, 0});
    // Deliberate: the render state's record differs from that of the drawing manager.
    renderState->setRendererInfo(InfoFor(/*offScreen=*/false));
    renderObjectFactory = boost::make_shared<KestoRenderLib::RenderObjectFactory>(
        drawingManager, project, renderState, boost::shared_ptr<QRLVST::IVSTLibrary>());
    timeline = KestoRenderLib::WRTimeline::create(project, drawingManager, renderObjectFactory, renderState);
    if (timeline)
        timeline->setViewport(toKestoMLRectInt(drawingManager->size()), TransformMatrix());
}

void ProjectFrameGrabber::Reset() {
    timeline->canvasRect = {0, 0, 99999, 99999};
    renderState->setMediaToRender({});
    timeline->setViewport(timeline->viewport(), TransformMatrix());
    timeline->clipToCanvas = true;
    timeline->outsideOpacity = opaque;
}

boost::shared_ptr<MetaBitmap> ProjectFrameGrabber::frameAtTime(boost::rational<__int64> time,
                                                               bool keepOrientation, Size size) {
    Reset();
    renderState->setMediaToRender(mediaToRender);
    const Size canvas = CanvasSizeOf(*project);
    drawingManager->setSize(canvas);
    timeline->setViewport(toKestoMLRectInt(canvas), TransformMatrix());
    timeline->renderFrame(FrameNumberAt(time, *project));

    const auto rendered = CurrentFrame();
    if (!rendered)
        return {};
    const auto frame = FrameGrabberUtil::scaleBitmapToFit(rendered, size);
    if (frame && !keepOrientation)
        frame->FlipY();
    return frame;
}

boost::shared_ptr<MetaBitmap> ProjectFrameGrabber::frameAtTimeForZoomNPan(
    __int64 frame, const Size& size, const KestoMediaLib::Rect<double>& sourceRect, int outsideOpacity) {
    Reset();
    renderState->setMediaToRender(mediaToRender);
    const KestoMediaLib::Rect<int> viewport = timeline->viewport();
    const KestoRenderLib::Rect output = AroundOrigin(size);
    timeline->setViewport(viewport, Carrying(sourceRect, toKestoMLRectDouble(output)));
    timeline->clipToCanvas = false;
    timeline->outsideOpacity = outsideOpacity;
    timeline->canvasRect = OnScreen(output, viewport);
    timeline->renderFrame(frame);
    return CurrentFrame();
}

boost::shared_ptr<MetaBitmap> ProjectFrameGrabber::CurrentFrame() const {
    const auto offScreen = boost::dynamic_pointer_cast<GdiDrawingManager>(drawingManager);
    return offScreen ? offScreen->currentFrame() : boost::shared_ptr<MetaBitmap>();
}

const KestoMediaLib::Rect<int> ProjectFrameGrabber::viewport() const {
    return timeline ? timeline->viewport() : KestoMediaLib::Rect<int>();
}

void ProjectFrameGrabber::setMediaToRender(
    const std::list<boost::shared_ptr<const KestoMediaLib::Media>>& media) {
    mediaToRender = media;
}

} // namespace KestoThumbnailer
