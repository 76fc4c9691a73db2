#pragma once

#include "engine/StreamFacts.h"

namespace EngineBackend {

/// How many pixels a picture may have: 400 million, or what the environment variable KESTO_PIXEL_BUDGET said
/// at the first call.
std::int64_t pixelBudget();

/// False for an empty size, too.
bool isWithinPixelBudget(PictureSize size);

} // namespace EngineBackend
