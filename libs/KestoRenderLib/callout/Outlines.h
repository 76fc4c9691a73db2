#pragma once

#include "KestoRenderLib/callout/CairoHandles.h"

namespace KestoRenderLib {

struct CalloutLook;

// Each appends closed outlines to the current path, clockwise from the upper left.

/// Corners are no rounder than half of the shorter side.
void addRoundedRectangle(cairo_t* context, const Area& area, double radius);

/// None for an empty area.
void addEllipse(cairo_t* context, const Area& area);

/// A body with rounded corners and a tail that starts at the side nearest to the point that it points at.
void addSpeechBubble(cairo_t* context, const CalloutLook& look, const Area& body);

/// The body of a speech bubble that lies, with its tail, inside `area`.
Area bubbleBody(const CalloutLook& look, const Area& area);

/// A thick arrow that fills `area` and points the way from start to end, to the nearest of right, left, up
/// and down.
void addBlockArrow(cairo_t* context, const CalloutLook& look, const Area& area);

/// The part of such an arrow in which text stands.
Area blockArrowText(const CalloutLook& look, const Area& area);

} // namespace KestoRenderLib
