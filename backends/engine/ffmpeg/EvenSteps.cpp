#include "engine/ffmpeg/EvenSteps.h"

#include <cstdlib>

namespace EngineBackend {

namespace {

/// Times are rounded to ticks.
constexpr std::int64_t tolerance = 2;

} // namespace

void EvenSteps::add(std::int64_t ticks) {
    const std::int64_t newStep = last ? ticks - *last : 0;
    isEven = step > 0 && std::abs(newStep - step) <= tolerance;
    step = newStep;
    last = ticks;
}

std::optional<std::int64_t> EvenSteps::next() const {
    return isEven && !isOver ? std::optional(*last + step) : std::nullopt;
}

bool EvenSteps::mayMeet(std::int64_t start, std::int64_t end) const {
    const auto guess = next();
    if (!guess || end <= start)
        return true;
    return start <= *guess + tolerance && end > *guess - tolerance;
}

} // namespace EngineBackend
