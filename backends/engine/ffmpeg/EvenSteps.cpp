#include "engine/ffmpeg/EvenSteps.h"

#include <algorithm>
#include <cstdlib>

namespace EngineBackend {

namespace {

/// Times are rounded to ticks, and so is what is guessed from them.
std::int64_t toleranceAfter(std::int64_t steps) {
    return 2 + steps / 2;
}

/// Beyond these, products might not fit. No real time comes near.
constexpr std::int64_t farthest = std::int64_t{1} << 50;
constexpr std::int64_t mostSteps = 1000;

bool isNear(std::int64_t ticks) {
    return ticks > -farthest && ticks < farthest;
}

} // namespace

void EvenSteps::add(std::int64_t ticks) {
    if (!isNear(ticks)) {
        count = -1;
        return;
    }
    const bool goesOn = count < 1 || std::abs(ticks - timeAfter(1)) <= toleranceAfter(1);
    if (count < 0 || ticks <= last) {
        first = ticks;
        count = 0;
    } else if (goesOn && count < mostSteps) {
        ++count;
    } else {
        first = last;
        count = 1;
    }
    last = ticks;
}

std::optional<std::int64_t> EvenSteps::next() const {
    return hasRule() ? std::optional(timeAfter(1)) : std::nullopt;
}

bool EvenSteps::mayMeet(std::int64_t start, std::int64_t end) const {
    if (!hasRule() || end <= start || !isNear(start) || !isNear(end))
        return true;
    const std::int64_t stepsToStart = (start - last) * count / (last - first);
    for (std::int64_t steps = std::max<std::int64_t>(stepsToStart - 1, 1);; ++steps) {
        const std::int64_t guess = timeAfter(steps);
        if (guess >= end + toleranceAfter(steps))
            return false;
        if (start <= guess + toleranceAfter(steps))
            return true;
    }
}

/// By all steps together, so that what rounding does to one of them does not add up.
std::int64_t EvenSteps::timeAfter(std::int64_t steps) const {
    return count > 0 ? last + steps * (last - first) / count : last;
}

} // namespace EngineBackend
