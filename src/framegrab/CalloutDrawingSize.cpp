#include "framegrab/CalloutDrawingSize.h"

#include "framegrab/Truncated.h"

#include <algorithm>
#include <cstdint>

namespace KestoThumbnailer {

using KestoRenderLib::Size;

Size NaturalSizeOf(const KestoMediaLib::Callout& callout) {
    const KestoMediaLib::SafeRational start(0);
    const auto scaleOf = [&](int component) { return callout.scale().at(component).valueAt(start); };
    return {Truncated<std::int32_t>(static_cast<double>(callout.width(start)) * scaleOf(0)),
            Truncated<std::int32_t>(static_cast<double>(callout.height(start)) * scaleOf(1))};
}

Size EnlargedToDrawWell(const Size& size) {
    constexpr int enough = 201;
    constexpr double shortestSide = 200.0;
    if (size.width >= enough && size.height >= enough)
        return size;
    // Deliberate: both lengths are truncated, so that the smaller side may end as 199.
    const double factor = std::max(shortestSide / size.width, shortestSide / size.height);
    return {Truncated<std::int32_t>(factor * size.width), Truncated<std::int32_t>(factor * size.height)};
}

} // namespace KestoThumbnailer
