// Stands in for the renderer of projects: draws what the project's script says.

#include "platform/KestoRenderProject.h"
#include "support/renderer/RenderScript.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <utility>

namespace KestoRenderLib {

// NOLINTBEGIN(performance-unnecessary-value-param): callers know these by value

using TestSupport::RenderScript;
using TestSupport::TimelineCall;
using TestSupport::TimelineCallKind;

/// Weak, so that the parts of a pipeline go when their owner lets them go.
class RenderObjectFactory::Objects {
public:
    ~Objects() { script->recordLetGo("render object factory"); }

    boost::shared_ptr<RenderScript> script;
    boost::weak_ptr<const KestoMediaLib::Project> project;
    boost::weak_ptr<IDrawingManager> drawingManager;
    boost::weak_ptr<IRenderState> renderState;
    bool hasEffects = false;
};

RenderObjectFactory::RenderObjectFactory(boost::shared_ptr<IDrawingManager> drawingManager,
                                         boost::shared_ptr<const KestoMediaLib::Project> project,
                                         boost::shared_ptr<IRenderState> renderState,
                                         boost::shared_ptr<QRLVST::IVSTLibrary> effects)
    : made(boost::make_shared<Objects>()) {
    made->script = RenderScript::of(project.get());
    made->project = project;
    made->drawingManager = drawingManager;
    made->renderState = renderState;
    made->hasEffects = static_cast<bool>(effects);
}

RenderObjectFactory::~RenderObjectFactory() = default;

namespace {

class ScriptedTimeline final : public WRTimeline {
public:
    ScriptedTimeline(boost::shared_ptr<RenderScript> projectScript,
                     const boost::shared_ptr<IDrawingManager>& manager,
                     const boost::shared_ptr<IRenderState>& state)
        : script(std::move(projectScript))
        , drawingManager(manager)
        , renderState(state) {}

    ~ScriptedTimeline() override {
        if (renderState.expired())
            script->recordLetGo("render state");
        script->recordLetGo("timeline");
        if (!drawingManager.expired())
            script->recordLetGo("drawing manager"); // later than this, as it is still there
    }

    void setViewport(const KestoMediaLib::Rect<int>& rect,
                     const KestoMediaLib::TransformMatrix& matrix) override {
        shown = rect;
        transform = matrix;
        script->record(callOf(TimelineCallKind::SetViewport, 0));
    }

    KestoMediaLib::Rect<int> viewport() const override { return shown; }

    void renderFrame(__int64 frame) override {
        const TimelineCall pass = callOf(TimelineCallKind::RenderFrame, frame);
        script->record(pass);
        if (script->onRender)
            script->onRender(pass);
        draw(pass);
    }

private:
    TimelineCall callOf(TimelineCallKind kind, __int64 frame) const {
        const auto state = renderState.lock();
        const auto manager = drawingManager.lock();
        return {.kind = kind,
                .frame = frame,
                .viewport = shown,
                .transform = transform,
                .canvasRect = canvasRect,
                .clipToCanvas = clipToCanvas,
                .outsideOpacity = outsideOpacity,
                .media = state ? state->mediaToRender() : MediaList(),
                .drawingSize = manager ? manager->size() : Size(),
                .thread = std::this_thread::get_id()};
    }

    /// Over the last frame where it has the size, as a renderer may.
    void draw(const TimelineCall& pass) const {
        const auto target = boost::dynamic_pointer_cast<GdiDrawingManager>(drawingManager.lock());
        boost::shared_ptr<MetaBitmap> frame = target->currentFrame();
        if (script->rendersNothing)
            frame.reset();
        else if (!frame || !(frame->Size() == pass.drawingSize))
            frame = MetaBitmap::Create(pass.drawingSize, PixelFormat::Premultiplied32);
        if (frame && script->paint)
            script->paint(*frame, pass);
        else if (frame)
            TestSupport::fill(*frame, TestSupport::burntIn(pass.frame, pass.media.size()));
        target->setCurrentFrame(frame);
    }

    boost::shared_ptr<RenderScript> script;
    boost::weak_ptr<IDrawingManager> drawingManager;
    boost::weak_ptr<IRenderState> renderState;
    KestoMediaLib::Rect<int> shown;
    KestoMediaLib::TransformMatrix transform;
};

template <class T>
bool isTheSame(const boost::weak_ptr<T>& weak, const boost::shared_ptr<T>& strong) {
    return weak.lock() == strong;
}

} // namespace

boost::shared_ptr<WRTimeline> WRTimeline::create(boost::shared_ptr<const KestoMediaLib::Project> project,
                                                 boost::shared_ptr<IDrawingManager> drawingManager,
                                                 boost::shared_ptr<RenderObjectFactory> factory,
                                                 boost::shared_ptr<IRenderState> renderState) {
    const auto script = RenderScript::of(project.get());
    const RenderObjectFactory::Objects& objects = factory->objects();
    const auto manager = boost::dynamic_pointer_cast<GdiDrawingManager>(drawingManager);
    script->record(
        TestSupport::BuiltPipeline{.drawingManagerInfo = manager ? manager->rendererInfo() : RendererInfo(),
                                   .renderStateInfo = renderState->rendererInfo(),
                                   .drawingSize = drawingManager->size(),
                                   .hasEffects = objects.hasEffects,
                                   .isOfOnePiece = isTheSame(objects.project, project) &&
                                                   isTheSame(objects.drawingManager, drawingManager) &&
                                                   isTheSame(objects.renderState, renderState)});
    if (script->hasNoTimeline)
        return {};
    return boost::make_shared<ScriptedTimeline>(script, drawingManager, renderState);
}

// NOLINTEND(performance-unnecessary-value-param)

} // namespace KestoRenderLib
