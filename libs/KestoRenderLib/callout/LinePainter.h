#pragma once

#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

/// A line or arrow from start to end, of which `look.progress` is drawn. Ends inside of the area are laid so
/// that line and heads lie in it as well.
void paintLine(cairo_t* context, const CalloutLook& look, const Area& area);

/// The look's dashes, for a pen of that width.
void setDashes(cairo_t* context, CalloutLook::Dash dash, double width);

} // namespace KestoRenderLib
