#pragma once

#include "platform/KestoMediaGeometry.h"
#include "platform/KestoRenderProject.h"
#include "platform/Threading.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace TestSupport {

/// What a pipeline was built of.
struct BuiltPipeline {
    KestoRenderLib::RendererInfo drawingManagerInfo;
    KestoRenderLib::RendererInfo renderStateInfo;
    KestoRenderLib::Size drawingSize;
    bool hasEffects = false;
    /// Factory and timeline got the same project, drawing manager and render state.
    bool isOfOnePiece = false;
};

enum class TimelineCallKind { SetViewport, RenderFrame };

/// One call of a timeline, and how the pipeline stood when it came.
struct TimelineCall {
    TimelineCallKind kind = TimelineCallKind::SetViewport;
    __int64 frame = 0; ///< of `RenderFrame`
    KestoMediaLib::Rect<int> viewport;
    KestoMediaLib::TransformMatrix transform;
    KestoRenderLib::Rect canvasRect;
    bool clipToCanvas = false;
    std::int32_t outsideOpacity = 0;
    KestoRenderLib::MediaList media;
    KestoRenderLib::Size drawingSize;
    std::thread::id thread;
};

/// What the tests' renderer does with a project, and what was asked of it. Set the public members before the
/// first pipeline is built; any thread may ask and record.
class RenderScript {
public:
    /// Called first in each pass, with no lock held, on the thread that renders. A test may block here.
    std::function<void(const TimelineCall&)> onRender;
    /// Draws a frame in place of the usual one, which is `burntIn` all over.
    std::function<void(KestoRenderLib::MetaBitmap&, const TimelineCall&)> paint;
    bool rendersNothing = false;
    bool hasNoTimeline = false;

    std::vector<BuiltPipeline> pipelines() const KESTO_EXCLUDES(lock);
    std::vector<TimelineCall> calls() const KESTO_EXCLUDES(lock);
    /// The calls that rendered.
    std::vector<TimelineCall> passes() const KESTO_EXCLUDES(lock);
    std::vector<__int64> renderedFrames() const KESTO_EXCLUDES(lock);
    /// The parts of pipelines in the order in which they were let go.
    std::vector<std::string> partsLetGo() const KESTO_EXCLUDES(lock);

    void record(const BuiltPipeline& pipeline) KESTO_EXCLUDES(lock);
    void record(const TimelineCall& call) KESTO_EXCLUDES(lock);
    void recordLetGo(const std::string& part) KESTO_EXCLUDES(lock);

    /// That of a `TestProject`; for any other project that of the living `ScriptOfOtherProjects`, or a new
    /// one.
    static boost::shared_ptr<RenderScript> of(const KestoMediaLib::Project* project);

private:
    mutable Mutex lock;
    std::vector<BuiltPipeline> built KESTO_GUARDED_BY(lock);
    std::vector<TimelineCall> made KESTO_GUARDED_BY(lock);
    std::vector<std::string> letGo KESTO_GUARDED_BY(lock);
};

/// The script, as long as it lives, of projects that the test did not make. One at a time.
class ScriptOfOtherProjects {
public:
    ScriptOfOtherProjects();
    ~ScriptOfOtherProjects();
    ScriptOfOtherProjects(const ScriptOfOtherProjects&) = delete;
    ScriptOfOtherProjects& operator=(const ScriptOfOtherProjects&) = delete;

    RenderScript* operator->() const { return script.get(); }

private:
    boost::shared_ptr<RenderScript> script;
};

/// 0xAARRGGBB, opaque: red is the number of media that the pass was told, green and blue are the lower 16
/// bits of the frame number.
std::uint32_t burntIn(__int64 frame, std::size_t mediaCount = 0);
void fill(KestoRenderLib::MetaBitmap& bitmap, std::uint32_t argb);

} // namespace TestSupport
