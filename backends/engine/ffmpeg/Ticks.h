#pragma once

#include "engine/StreamFacts.h"

#include <cstdint>

namespace EngineBackend {

/// The last tick at or before `time`; held at a large number of ticks either way. `timeBase` is positive and
/// each of its numbers fits into 32 bits, as in every stream.
std::int64_t ticksAt(Rational time, Rational timeBase);

/// The time of a tick; held at the ends of the range.
Rational secondsOf(std::int64_t ticks, Rational timeBase);

} // namespace EngineBackend
