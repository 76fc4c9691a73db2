#include "engine/ffmpeg/Ticks.h"

#include <algorithm>
#include <limits>

namespace EngineBackend {

namespace {

__extension__ using Wide = __int128;

/// Far beyond every stream, and far enough from the end to be added to.
constexpr Wide mostTicks = Wide{1} << 60;

} // namespace

std::int64_t ticksAt(Rational time, Rational timeBase) {
    const Wide numerator = Wide{time.numerator()} * timeBase.denominator();
    const Wide denominator = Wide{time.denominator()} * timeBase.numerator();
    Wide ticks = numerator / denominator;
    if (numerator % denominator < 0)
        --ticks;
    return static_cast<std::int64_t>(std::clamp(ticks, -mostTicks, mostTicks));
}

Rational secondsOf(std::int64_t ticks, Rational timeBase) {
    constexpr Wide most = std::numeric_limits<std::int64_t>::max();
    const Wide product = std::clamp(Wide{ticks} * timeBase.numerator(), -most, most);
    return {static_cast<std::int64_t>(product), timeBase.denominator()};
}

} // namespace EngineBackend
