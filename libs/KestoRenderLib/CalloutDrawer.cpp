#include "platform/CalloutDrawer.h"

#include "KestoRenderLib/CalloutLookReader.h"
#include "KestoRenderLib/CalloutModule.h"
#include "KestoRenderLib/project/RenderBudget.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

namespace KestoRenderLib {

namespace {

constexpr double longestSide = 16384;
constexpr double mostPixels = 64.0 * 1024 * 1024;
constexpr double longestDrawable = 32767; // Cairo's image surfaces

Size drawableSize(const Size& size) {
    const double width = std::max(size.width, 1);
    const double height = std::max(size.height, 1);
    const double factor =
        std::min({1.0, longestSide / std::max(width, height), std::sqrt(mostPixels / (width * height))});
    const auto length = [factor](double side) {
        return std::max(static_cast<std::int32_t>(side * factor), std::int32_t{1});
    };
    return {length(width), length(height)};
}

/// None for what is no size of a bitmap.
std::optional<Size> pixelsOf(const Size& size, const SizeF& scale) {
    const double width = std::round(static_cast<double>(size.width) * static_cast<double>(scale.width));
    const double height = std::round(static_cast<double>(size.height) * static_cast<double>(scale.height));
    if (size.width < 1 || size.height < 1 || !(scale.width > 0 && scale.height > 0) ||
        !(width <= longestDrawable && height <= longestDrawable))
        return std::nullopt;
    const Size pixels = {std::max(static_cast<std::int32_t>(width), std::int32_t{1}),
                         std::max(static_cast<std::int32_t>(height), std::int32_t{1})};
    return isWithinBudget(pixels) ? std::optional(pixels) : std::nullopt;
}

/// The callout's own box, made longer in one direction where `size` has another shape: so lengths and letters
/// keep their proportions, and a text has more room.
CalloutBox boxOf(const KestoMediaLib::Callout& callout, __int64 time, const Size& size) {
    const KestoMediaLib::SafeRational moment = KestoMediaLib::RationalUtil::toSeconds(time);
    const double width = static_cast<double>(callout.width(moment));
    const double height = static_cast<double>(callout.height(moment));
    const bool isSized = std::isfinite(width) && std::isfinite(height) && width > 0 && height > 0;
    const double unit = isSized ? std::min(size.width / width, size.height / height) : 1;
    return {size.width / unit, size.height / unit};
}

void fillWhite(MetaBitmap& bitmap) {
    std::memset(bitmap.GetPixels(), 255,
                static_cast<std::size_t>(bitmap.GetStride()) * static_cast<std::size_t>(bitmap.GetHeight()));
}

} // namespace

CalloutDrawer::CalloutDrawer(boost::shared_ptr<const KestoMediaLib::Callout> drawn,
                             // NOLINTNEXTLINE(performance-unnecessary-value-param): callers know it by value
                             boost::shared_ptr<RenderObjectFactory>, bool)
    : callout(std::move(drawn)) {}

void CalloutDrawer::AdjustDimensions(Size& size, Size& adjusted) {
    size = drawableSize(size);
    adjusted = size;
}

void CalloutDrawer::SetTime(__int64 modelTime) {
    time = modelTime;
}

boost::shared_ptr<MetaBitmap> CalloutDrawer::GenerateOverlay(const Size& size, const SizeF& scale,
                                                             bool transparent, bool antialiased) {
    const auto pixels = pixelsOf(size, scale);
    if (!callout || !pixels)
        return {};
    const auto look = readCalloutLook(callout, boxOf(*callout, time, size), time);
    DrawCallout* const draw = look ? drawCalloutFunction() : nullptr;
    auto overlay = draw ? MetaBitmap::Create(*pixels, PixelFormat::Premultiplied32) : nullptr;
    if (!overlay)
        return {};
    if (!transparent)
        fillWhite(*overlay);
    const bool drawn = draw(
        {.look = *look,
         .antialiased = antialiased,
         .target = {overlay->GetPixels(), overlay->GetStride(), overlay->GetWidth(), overlay->GetHeight()}});
    return drawn ? overlay : boost::shared_ptr<MetaBitmap>();
}

} // namespace KestoRenderLib
