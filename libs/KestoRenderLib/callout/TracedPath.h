#pragma once

#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

/// Replaces the current path by the part of it that a pen has drawn after `progress` of its length. 1 leaves
/// the path as it is.
void tracePath(cairo_t* context, double progress);

} // namespace KestoRenderLib
