#pragma once

#include "engine/StreamFacts.h"

#include <cstdint>
#include <span>

namespace EngineBackend {

/// Writes 32-bit pixels of `size`, row by row without gaps, upright into `upright`, which has as many.
void turnPixels(std::span<const std::uint32_t> pixels, PictureSize size, const Orientation& orientation,
                std::span<std::uint32_t> upright);

} // namespace EngineBackend
