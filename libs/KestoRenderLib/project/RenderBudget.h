#pragma once

#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderLib.h"

namespace KestoRenderLib {

/// Whether a frame of that size may be made: positive, and within `SystemBackend::pixelBudget`.
bool isWithinBudget(const Size& size);

/// Of the project's canvas, in whole pixels; what is no size counts as 0.
Size canvasSizeOf(const KestoMediaLib::Project& project);

} // namespace KestoRenderLib
