#include "support/renderer/RenderScript.h"

#include "support/renderer/TestProject.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>

namespace TestSupport {

namespace {

Mutex otherScriptLock;
boost::shared_ptr<RenderScript> otherScript KESTO_GUARDED_BY(otherScriptLock);

} // namespace

std::vector<BuiltPipeline> RenderScript::pipelines() const {
    const MutexLock held(lock);
    return built;
}

std::vector<TimelineCall> RenderScript::calls() const {
    const MutexLock held(lock);
    return made;
}

std::vector<TimelineCall> RenderScript::passes() const {
    const MutexLock held(lock);
    std::vector<TimelineCall> rendering;
    std::copy_if(made.begin(), made.end(), std::back_inserter(rendering),
                 [](const TimelineCall& call) { return call.kind == TimelineCallKind::RenderFrame; });
    return rendering;
}

std::vector<__int64> RenderScript::renderedFrames() const {
    std::vector<__int64> frames;
    for (const TimelineCall& pass : passes())
        frames.push_back(pass.frame);
    return frames;
}

std::vector<std::string> RenderScript::partsLetGo() const {
    const MutexLock held(lock);
    return letGo;
}

void RenderScript::record(const BuiltPipeline& pipeline) {
    const MutexLock held(lock);
    built.push_back(pipeline);
}

void RenderScript::record(const TimelineCall& call) {
    const MutexLock held(lock);
    made.push_back(call);
}

void RenderScript::recordLetGo(const std::string& part) {
    const MutexLock held(lock);
    letGo.push_back(part);
}

boost::shared_ptr<RenderScript> RenderScript::of(const KestoMediaLib::Project* project) {
    if (const auto* scripted = dynamic_cast<const TestProject*>(project))
        return scripted->script;
    const MutexLock held(otherScriptLock);
    return otherScript ? otherScript : boost::make_shared<RenderScript>();
}

ScriptOfOtherProjects::ScriptOfOtherProjects()
    : script(boost::make_shared<RenderScript>()) {
    const MutexLock held(otherScriptLock);
    otherScript = script;
}

ScriptOfOtherProjects::~ScriptOfOtherProjects() {
    const MutexLock held(otherScriptLock);
    otherScript.reset();
}

std::uint32_t burntIn(__int64 frame, std::size_t mediaCount) {
    return 0xFF000000U | (static_cast<std::uint32_t>(mediaCount & 0xFFU) << 16) |
           static_cast<std::uint32_t>(static_cast<std::uint64_t>(frame) & 0xFFFFU);
}

void fill(KestoRenderLib::MetaBitmap& bitmap, std::uint32_t argb) {
    // Premultiplied, and opaque, so that the value is the pixel: B, G, R, A in memory.
    for (int y = 0; y < bitmap.GetHeight(); ++y) {
        auto* row = reinterpret_cast<std::uint32_t*>(bitmap.GetPixels() +
                                                     static_cast<std::ptrdiff_t>(y) * bitmap.GetStride());
        std::fill_n(row, bitmap.GetWidth(), argb);
    }
}

} // namespace TestSupport
