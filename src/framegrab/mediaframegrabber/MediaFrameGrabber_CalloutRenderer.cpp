#include "framegrab/mediaframegrabber/MediaFrameGrabber_CalloutRenderer.h"

#include "framegrab/CalloutDrawingSize.h"
#include "platform/KestoMediaLibTools.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace KestoThumbnailer {

namespace {

using KestoMediaLib::Callout;
using KestoMediaLib::VectorNode;
using KestoRenderLib::CalloutDrawer;
using KestoRenderLib::MetaBitmap;
using KestoRenderLib::Size;

boost::shared_ptr<const VectorNode> DrawingOf(const Callout* callout) {
    if (!callout)
        throw std::invalid_argument("MediaFrameGrabber: callout cannot be null");
    const auto attribute = callout->vectorNode();
    if (!attribute)
        throw std::invalid_argument("MediaFrameGrabber: vector node attribute cannot be null");
    auto node = attribute->value();
    if (!node)
        throw std::invalid_argument("MediaFrameGrabber: vector node cannot be null");
    return node;
}

bool IsArrow(const VectorNode& node) {
    const auto shape = node.shapeAttribute();
    return shape && shape->value() == "arrow";
}

bool DrawsItself(const VectorNode& node) {
    const std::string kind = node.kind();
    return kind == "TypeWinSVG" || kind == "MacSVG";
}

} // namespace

MediaFrameGrabber_CalloutRenderer::MediaFrameGrabber_CalloutRenderer(
    const boost::shared_ptr<const Callout>& drawn)
    : MediaFrameGrabber_CalloutRenderer(
          drawn,
          std::make_unique<CalloutDrawer>(drawn, boost::shared_ptr<KestoRenderLib::RenderObjectFactory>(),
                                          /*editing=*/false)) {}

MediaFrameGrabber_CalloutRenderer::MediaFrameGrabber_CalloutRenderer(
    boost::shared_ptr<const Callout> drawn, std::unique_ptr<CalloutDrawer> calloutDrawer)
    : callout(std::move(drawn))
    , vectorNode(DrawingOf(callout.get()))
    , drawer(std::move(calloutDrawer)) {
    if (!drawer)
        throw std::runtime_error("MediaFrameGrabber: CalloutDrawer could not be created");
}

boost::shared_ptr<MetaBitmap> MediaFrameGrabber_CalloutRenderer::frameAtTime(boost::rational<__int64>,
                                                                             bool keepOrientation, Size) {
    Size drawn = DrawingSize();
    drawer->AdjustDimensions(drawn, drawn);
    drawer->SetTime(DrawingTime());
    auto overlay = drawer->GenerateOverlay(drawn, {1.0F, 1.0F}, /*transparent=*/true, /*antialiased=*/true);
    if (overlay && !keepOrientation)
        overlay->FlipY();
    return overlay;
}

// Deliberate: unlike in a callout's thumbnail, an arrow of any kind stays as small as it is, and a line does
// not.
Size MediaFrameGrabber_CalloutRenderer::DrawingSize() const {
    const Size natural = NaturalSizeOf(*callout);
    return IsArrow(*vectorNode) ? natural : EnlargedToDrawWell(natural);
}

__int64 MediaFrameGrabber_CalloutRenderer::DrawingTime() const {
    return DrawsItself(*vectorNode) ? CalloutRendererDrawTime() : 0;
}

// Deliberate: unlike in a callout's thumbnail, the time to draw is a fraction, not a whole number.
__int64 MediaFrameGrabber_CalloutRenderer::CalloutRendererDrawTime() const {
    if (!KestoMediaLibTools::hasVectorNodeParam<double>(vectorNode, "DrawTime"))
        return 0;
    const std::string name = vectorNode->kind() == "MacSVG" ? "Visual" : "DrawPercentageFade";
    const KestoMediaLib::EdgeModificationStore& store = callout->edgeModifications();
    if (store.modifications(name).empty())
        return 0;
    return KestoMediaLib::RationalUtil::toKestoTime(store.time(name));
}

} // namespace KestoThumbnailer
