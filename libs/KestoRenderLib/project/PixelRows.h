#pragma once

#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

// Rows of premultiplied pixels. `area` and places lie inside the frames, as the caller has seen to; opacities
// reach from 0 to 1. Frames do not share memory.

/// Draws all of `source` over the rectangle of its size at (x, y): source-over of Porter and Duff (1984),
/// each product rounded to nearest. What `x` and `y` leave outside of `target` is cut off.
void blendOver(const MetaBitmap& source, MetaBitmap& target, int x, int y, double opacity);

/// Puts `source` in place of what was there, cut likewise.
void copyInto(const MetaBitmap& source, MetaBitmap& target, int x, int y);

void clear(MetaBitmap& target, const Rect& area);

/// Multiplies all four channels.
void fade(MetaBitmap& target, const Rect& area, double opacity);

} // namespace KestoRenderLib
