#pragma once

#include "engine/StreamFacts.h"

namespace EngineBackend {

/// Whether a picture of that size may be made, by `SystemBackend::pixelBudget`; an empty one may not.
bool isWithinPixelBudget(PictureSize size);

} // namespace EngineBackend
