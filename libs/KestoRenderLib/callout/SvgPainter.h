#pragma once

#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

/// The look's SVG, as large as fits into `area`, in its middle, drawn as far as `look.progress`. Nothing that
/// the document refers to outside of itself is loaded. False for a document that can't be drawn.
bool paintSvg(cairo_t* context, const CalloutLook& look, const Area& area, bool antialiased);

} // namespace KestoRenderLib
