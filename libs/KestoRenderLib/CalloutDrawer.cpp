#include "platform/CalloutDrawer.h"

#include <utility>

namespace KestoRenderLib {

CalloutDrawer::CalloutDrawer(boost::shared_ptr<const KestoMediaLib::Callout> drawn,
                             boost::shared_ptr<RenderObjectFactory>, bool)
    : callout(std::move(drawn)) {}

void CalloutDrawer::AdjustDimensions(Size& size, Size& adjusted) {
    adjusted = size;
}

void CalloutDrawer::SetTime(__int64 modelTime) {
    time = modelTime;
}

// FIXME: no kind of callout is drawn yet.
boost::shared_ptr<MetaBitmap> CalloutDrawer::GenerateOverlay(const Size&, const SizeF&, bool, bool) {
    return {};
}

} // namespace KestoRenderLib
