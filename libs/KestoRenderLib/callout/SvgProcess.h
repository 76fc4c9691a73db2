#pragma once

#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

/// As `paintSvg`, for any document: one that is not plain is drawn by the program `kesto-svg`, beside this
/// module, which is ended when it takes too long. False also for a document for which that has happened
/// before, or at which the program has died.
bool paintAnySvg(cairo_t* context, const CalloutPaint& paint, const Area& area);

} // namespace KestoRenderLib
