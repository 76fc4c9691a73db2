#pragma once

#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

/// What is left of the box for the drawing itself, so that its shadow lies in the box as well.
Area areaBesideShadow(const CalloutLook& look);

/// Draws the shadow of `picture`, a surface of the target's size in pixels, under the context's scale.
void paintShadow(cairo_t* context, cairo_surface_t* picture, const CalloutLook& look);

} // namespace KestoRenderLib
