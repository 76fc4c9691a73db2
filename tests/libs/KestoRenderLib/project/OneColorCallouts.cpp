#include "KestoMediaLib/KeyFrames.h"
#include "libs/KestoRenderLib/project/Composition.h"
#include "platform/CalloutDrawer.h"

#include <cstring>
#include <utility>

// A drawer in the place of the real one: each callout is a red area in its first half second and a green one
// after it, of an even width. One without a drawing draws nothing.
namespace KestoRenderLib {

CalloutDrawer::CalloutDrawer(boost::shared_ptr<const KestoMediaLib::Callout> drawn,
                             boost::shared_ptr<RenderObjectFactory>, bool)
    : callout(std::move(drawn)) {}

void CalloutDrawer::AdjustDimensions(Size& size, Size& adjusted) {
    adjusted = {size.width / 2 * 2, size.height};
}

void CalloutDrawer::SetTime(__int64 modelTime) {
    time = modelTime;
}

boost::shared_ptr<MetaBitmap> CalloutDrawer::GenerateOverlay(const Size& size, const SizeF&, bool, bool) {
    if (!callout->vectorNode() || !callout->vectorNode()->value())
        return {};
    auto overlay = MetaBitmap::Create(size, PixelFormat::Premultiplied32);
    const std::uint32_t color =
        time < KestoMediaLib::modelTimePerSecond / 2 ? RenderTests::red : RenderTests::green;
    for (int pixel = 0; overlay && pixel < size.width * size.height; ++pixel)
        std::memcpy(overlay->GetPixels() + std::ptrdiff_t{pixel} * 4, &color, sizeof color);
    return overlay;
}

} // namespace KestoRenderLib
