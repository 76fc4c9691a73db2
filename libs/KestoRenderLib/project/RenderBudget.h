#pragma once

#include "platform/KestoMediaModel.h"
#include "platform/KestoRenderLib.h"

namespace KestoRenderLib {

/// Whether a frame of that size may be made: positive, and of no more pixels than a picture may have, which
/// are 400 million or what the environment variable KESTO_PIXEL_BUDGET says, read once.
bool isWithinBudget(const Size& size);

/// Of the project's canvas, in whole pixels; what is no size counts as 0.
Size canvasSizeOf(const KestoMediaLib::Project& project);

} // namespace KestoRenderLib
