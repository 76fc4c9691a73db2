#pragma once

#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

/// The look's text inside of `area`; what does not fit there even so is cut off.
void paintText(cairo_t* context, const CalloutLook& look, const Area& area, bool antialiased);

} // namespace KestoRenderLib
