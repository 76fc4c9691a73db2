#include "KestoRenderLib/project/RenderBudget.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace KestoRenderLib {

namespace {

constexpr std::int64_t defaultBudget = 400'000'000;

std::int64_t budgetFromEnvironment() {
    const char* text = std::getenv("KESTO_PIXEL_BUDGET"); // NOLINT(concurrency-mt-unsafe): read once
    if (!text)
        return defaultBudget;
    std::int64_t value = 0;
    const char* end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, value);
    return error == std::errc{} && rest == end && value > 0 ? value : defaultBudget;
}

std::int32_t wholeLength(float length) {
    constexpr float longest = 1 << 30;
    return std::isfinite(length) ? static_cast<std::int32_t>(std::clamp(length, 0.0F, longest)) : 0;
}

} // namespace

bool isWithinBudget(const Size& size) {
    static const std::int64_t budget = budgetFromEnvironment();
    return size.width > 0 && size.height > 0 && std::int64_t{size.width} * size.height <= budget;
}

Size canvasSizeOf(const KestoMediaLib::Project& project) {
    const auto timeline = project.timeline();
    return {wholeLength(timeline->attributeWidth()->value()),
            wholeLength(timeline->attributeHeight()->value())};
}

} // namespace KestoRenderLib
