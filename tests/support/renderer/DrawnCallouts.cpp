#include "support/renderer/DrawnCallouts.h"

#include "support/renderer/RenderScript.h"

#include <atomic>
#include <utility>

namespace TestSupport {

namespace {

std::atomic<DrawnCallouts*> living = nullptr; // callouts are drawn only while their test waits for it

} // namespace

DrawnCallouts::DrawnCallouts() {
    living = this;
}

DrawnCallouts::~DrawnCallouts() {
    living = nullptr;
}

DrawnCallouts* DrawnCallouts::current() {
    return living;
}

std::vector<DrawnCallout> DrawnCallouts::drawn() const {
    const MutexLock held(lock);
    return overlays;
}

std::vector<AdjustedSize> DrawnCallouts::adjusted() const {
    const MutexLock held(lock);
    return sizes;
}

void DrawnCallouts::record(const DrawnCallout& callout) {
    const MutexLock held(lock);
    overlays.push_back(callout);
}

void DrawnCallouts::record(const AdjustedSize& size) {
    const MutexLock held(lock);
    sizes.push_back(size);
}

} // namespace TestSupport

namespace KestoRenderLib {

using TestSupport::DrawnCallouts;

CalloutDrawer::CalloutDrawer(boost::shared_ptr<const KestoMediaLib::Callout> drawn,
                             // NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it by value
                             boost::shared_ptr<RenderObjectFactory>, bool)
    : callout(std::move(drawn)) {}

void CalloutDrawer::AdjustDimensions(Size& size, Size& adjusted) {
    DrawnCallouts* script = DrawnCallouts::current();
    if (script)
        script->record(TestSupport::AdjustedSize{.natural = size, .isOneObject = &size == &adjusted});
    if (script && script->adjust)
        size = script->adjust(size);
    adjusted = size;
}

void CalloutDrawer::SetTime(__int64 modelTime) {
    time = modelTime;
}

boost::shared_ptr<MetaBitmap> CalloutDrawer::GenerateOverlay(const Size& size, const SizeF& scale,
                                                             bool transparent, bool antialiased) {
    DrawnCallouts* script = DrawnCallouts::current();
    if (!script)
        return {};
    const TestSupport::DrawnCallout overlay{.callout = callout,
                                            .time = time,
                                            .size = size,
                                            .scale = scale,
                                            .transparent = transparent,
                                            .antialiased = antialiased};
    script->record(overlay);
    if (script->draw)
        return script->draw(overlay);
    auto frame = MetaBitmap::Create(size, PixelFormat::Premultiplied32);
    if (frame)
        TestSupport::fill(*frame, TestSupport::burntIn(time));
    return frame;
}

} // namespace KestoRenderLib
