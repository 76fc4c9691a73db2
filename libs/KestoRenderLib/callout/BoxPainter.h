#pragma once

#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

/// A shape with an inside: fill, border, and text in it. Until `look.progress` is 1 the border is drawn by a
/// pen that has come so far, and the rest fades in.
void paintBox(cairo_t* context, const CalloutLook& look, const Area& area, bool antialiased);

/// The fill all over the area, but for a hole inside of it, which may have a border.
void paintSpotlight(cairo_t* context, const CalloutLook& look, const Area& area);

} // namespace KestoRenderLib
