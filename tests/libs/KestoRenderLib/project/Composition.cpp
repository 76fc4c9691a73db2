#include "libs/KestoRenderLib/project/Composition.h"

#include <cstddef>
#include <cstring>

namespace RenderTests {

using namespace KestoMediaLib;
using namespace KestoRenderLib;

__int64 frames(int count) {
    return modelTimePerSecond / 10 * count;
}

std::uint32_t valueAt(const Frame& frame, int x, int y) {
    std::uint32_t value = 0x01234567;
    if (frame)
        std::memcpy(&value,
                    frame->GetPixels() + std::ptrdiff_t{y} * frame->GetStride() + std::ptrdiff_t{x} * 4,
                    sizeof value);
    return value;
}

std::string lettersOf(const Frame& frame) {
    std::string letters;
    for (int y = 0; frame && y < frame->GetHeight(); ++y) {
        for (int x = 0; x < frame->GetWidth(); ++x)
            switch (valueAt(frame, x, y)) {
            case 0:
                letters += '.';
                break;
            case red:
                letters += 'R';
                break;
            case green:
                letters += 'G';
                break;
            case blue:
                letters += 'B';
                break;
            case white:
                letters += 'W';
                break;
            case black:
                letters += 'K';
                break;
            default:
                letters += '?';
            }
        letters += '\n';
    }
    return letters;
}

boost::shared_ptr<ColorMedia> colored(std::uint32_t argb, int width, int height) {
    auto media = boost::make_shared<ColorMedia>(argb);
    media->setExtent({width * 1.0, height * 1.0});
    return lasting(media);
}

Frame rendered(const boost::shared_ptr<const Project>& project, __int64 frame) {
    const KestoRenderLib::Size canvas = {static_cast<int>(project->timeline()->attributeWidth()->value()),
                                         static_cast<int>(project->timeline()->attributeHeight()->value())};
    const auto manager = boost::make_shared<GdiDrawingManager>(RendererInfo(), true, canvas);
    const auto state = boost::make_shared<RenderState>();
    const auto factory = boost::make_shared<RenderObjectFactory>(manager, project, state, nullptr);
    WRTimeline::create(project, manager, factory, state)->renderFrame(frame);
    return manager->currentFrame();
}

Composition::Composition(int canvasWidth, int canvasHeight)
    : canvas{canvasWidth, canvasHeight}
    , model(boost::make_shared<ProjectModel>(boost::rational<unsigned long>(10)))
    , drawingManager(boost::make_shared<GdiDrawingManager>(RendererInfo(), true, KestoRenderLib::Size()))
    , renderState(boost::make_shared<RenderState>())
    , factory(boost::make_shared<RenderObjectFactory>(drawingManager, model, renderState, nullptr))
    , wrTimeline(WRTimeline::create(model, drawingManager, factory, renderState)) {
    model->editableTimeline()->setWidth(static_cast<float>(canvasWidth));
    model->editableTimeline()->setHeight(static_cast<float>(canvasHeight));
}

Composition& Composition::add(const boost::shared_ptr<Media>& media) {
    addTrack()->addMedia(media);
    return *this;
}

boost::shared_ptr<TrackModel> Composition::addTrack() {
    auto track = boost::make_shared<TrackModel>();
    model->editableTimeline()->editableMixer()->addTrack(track);
    return track;
}

Frame Composition::render(__int64 frame) {
    drawingManager->setSize(canvas);
    wrTimeline->setViewport(toKestoMLRectInt(canvas), TransformMatrix());
    wrTimeline->renderFrame(frame);
    return drawingManager->currentFrame();
}

boost::shared_ptr<GdiDrawingManager> Composition::manager() {
    return drawingManager;
}

WRTimeline& Composition::timeline() {
    return *wrTimeline;
}

} // namespace RenderTests
