#include "KestoRenderLib/project/RenderBudget.h"

#include "system/PixelBudget.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace KestoRenderLib {

namespace {

std::int32_t wholeLength(float length) {
    constexpr float longest = 1 << 30;
    return std::isfinite(length) ? static_cast<std::int32_t>(std::clamp(length, 0.0F, longest)) : 0;
}

} // namespace

bool isWithinBudget(const Size& size) {
    return size.width > 0 && size.height > 0 &&
           std::int64_t{size.width} * size.height <= SystemBackend::pixelBudget();
}

Size canvasSizeOf(const KestoMediaLib::Project& project) {
    const auto timeline = project.timeline();
    return {wholeLength(timeline->attributeWidth()->value()),
            wholeLength(timeline->attributeHeight()->value())};
}

} // namespace KestoRenderLib
