#include "KestoRenderLib/project/CalloutOnStage.h"

#include "KestoRenderLib/project/CalloutEffects.h"
#include "KestoRenderLib/project/FrameSource.h"
#include "KestoRenderLib/project/MediaScene.h"

#include "KestoMediaLib/CalloutMedia.h"
#include "KestoMediaLib/CalloutParams.h"
#include "platform/CalloutDrawer.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace KestoRenderLib {

namespace {

using KestoMediaLib::Callout;
using KestoMediaLib::VectorDrawing;
using KestoMediaLib::VectorNode;

/// Beyond these a callout is enlarged after it was drawn.
constexpr double longestOverlay = 8192;
constexpr double mostOverlayPixels = 32.0 * 1024 * 1024;

constexpr KestoMediaLib::ArgbColor usualDarkness = 0x99000000;

/// At 1 pixel at least and without more than a frame may have, for the drawer to correct.
Size calloutSize(const MediaScene& scene) {
    const auto length = [](double extent) {
        return static_cast<std::int32_t>(std::clamp(std::round(extent), 1.0, 32767.0));
    };
    return {length(scene.width()), length(scene.height())};
}

float overlayScale(const MediaScene& scene, const Size& size) {
    const double longest = longestOverlay / std::max(size.width, size.height);
    const double most =
        std::sqrt(mostOverlayPixels / (static_cast<double>(size.width) * static_cast<double>(size.height)));
    return static_cast<float>(std::min({scene.zoom(), longest, most}));
}

FrameSource drawn(const MediaScene& scene, const boost::shared_ptr<const Callout>& callout) {
    CalloutDrawer drawer(callout, {}, /*editing=*/false);
    Size size = calloutSize(scene);
    drawer.AdjustDimensions(size, size);
    drawer.SetTime(KestoMediaLib::RationalUtil::toKestoTime(scene.animationTime()));
    const float scale = overlayScale(scene, size);
    return FrameSource(
        drawer.GenerateOverlay(size, {scale, scale}, /*transparent=*/true, /*antialiased=*/true));
}

/// A callout in the place of another one.
boost::shared_ptr<const Callout> standIn(const MediaScene& scene, const std::string& shape,
                                         const std::string& style, VectorDrawing::Params params) {
    const auto media = boost::make_shared<KestoMediaLib::CalloutMedia>(
        boost::make_shared<VectorDrawing>("remix", shape, style, std::move(params)));
    media->setExtent({scene.width(), scene.height()});
    return media;
}

bool hasParam(const VectorNode& node, const std::string& name) {
    return node.param(name).has_value();
}

/// A spotlight is round as long as nobody asks for corners.
std::string outlineOf(const VectorNode& node) {
    return node.shapeAttribute()->value() == "spotlight" && !hasParam(node, "CornerRadius") ? "ellipse"
                                                                                            : "rectangle";
}

/// Opaque where the callout acts.
boost::shared_ptr<MetaBitmap> maskOf(const MediaScene& scene, const VectorNode& node, const Rect& area) {
    if (isEmpty(area))
        return {};
    VectorDrawing::Params params = {{"FillColor", __int64{0xFFFFFFFF}}, {"BorderWidth", 0.0}};
    if (const auto corner = node.param("CornerRadius"))
        params.emplace("CornerRadius", *corner);
    FrameSource source = drawn(scene, standIn(scene, outlineOf(node), "plain", std::move(params)));
    const Size size = sizeOf(area);
    Surface layer(size, {0, 0, size.width, size.height}, {});
    scene.paintOnto(layer, area.left, area.top, source);
    return layer.result();
}

/// Border and text of a callout that acts on what is below, and the fill of a blur box that has one.
void paintFrame(const MediaScene& scene, const VectorNode& node, const std::string& style) {
    VectorDrawing::Params params;
    for (const KestoMediaLib::CalloutParam& known : KestoMediaLib::calloutParams())
        if (const auto param = node.param(std::string(known.name)))
            params.emplace(known.name, *param);
    if (node.shapeAttribute()->value() == "spotlight") {
        params["FillColor"] = __int64{0};
        params.erase("Text");
    }
    params.emplace("FillColor", __int64{0});
    if (!params.contains("BorderColor"))
        params["BorderWidth"] = 0.0;
    FrameSource source = drawn(scene, standIn(scene, outlineOf(node), style, std::move(params)));
    scene.paint(source);
}

double blurRadius(const MediaScene& scene, const VectorNode& node) {
    const double usual = std::clamp(std::min(scene.width(), scene.height()) / 8, 4.0, 24.0);
    const double radius = KestoMediaLib::paramOr<double>(node, "BlurRadius", usual);
    return std::isfinite(radius) ? std::clamp(radius, 0.0, 500.0) * scene.zoom() : 0;
}

void paintBlurBox(const MediaScene& scene, const VectorNode& node) {
    Surface& surface = scene.stage().surface;
    const Rect area = scene.coveredPixels();
    const auto mask = surface.isBlank() ? boost::shared_ptr<MetaBitmap>() : maskOf(scene, node, area);
    const auto window = mask ? surface.window() : boost::shared_ptr<MetaBitmap>();
    if (window)
        blurThroughMask(*window, surface.clip(), *mask, area,
                        static_cast<int>(std::lround(std::min(blurRadius(scene, node), 2000.0))),
                        scene.fading());
}

void paintSpotlight(const MediaScene& scene, const VectorNode& node) {
    Surface& surface = scene.stage().surface;
    const Rect area = scene.coveredPixels();
    const auto mask = maskOf(scene, node, area);
    if (const auto window = surface.window())
        coverAroundMask(*window, surface.clip(), mask.get(), area,
                        KestoMediaLib::colorParamOr(node, "FillColor", usualDarkness), scene.fading());
}

std::string valueOf(const boost::shared_ptr<const KestoMediaLib::Attribute<std::string>>& attribute) {
    return attribute ? attribute->value() : std::string();
}

} // namespace

void paintCallout(const MediaScene& scene, const boost::shared_ptr<const Callout>& callout) {
    const auto attribute = callout->vectorNode();
    const auto node = attribute ? attribute->value() : nullptr;
    if (!node || !(scene.fading() > 0))
        return;
    const bool acts = node->kind() == "remix";
    const std::string shape = acts ? valueOf(node->shapeAttribute()) : std::string();
    // What lies around a spotlight is dark wherever it is itself.
    if (shape == "spotlight")
        paintSpotlight(scene, *node);
    if (!scene.isInSight())
        return;
    if (shape == "blur-box")
        paintBlurBox(scene, *node);
    if (shape == "spotlight" || shape == "blur-box")
        return paintFrame(scene, *node, valueOf(node->styleAttribute()));
    FrameSource source = drawn(scene, callout);
    scene.paint(source);
}

} // namespace KestoRenderLib
