#pragma once

#include "engine/StreamFacts.h"

#include <cstdint>
#include <optional>
#include <span>

namespace EngineBackend {

/// The sample aspect ratio of the first sequence parameter set in `avcC`, a decoder configuration record
/// (ISO/IEC 14496-15, 5.3.3.1); 1 where the set leaves it open. Nothing when the record can't be read.
std::optional<Rational> sampleAspectOfAvcC(std::span<const std::uint8_t> avcC);

} // namespace EngineBackend
