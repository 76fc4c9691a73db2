#pragma once

#include "KestoRenderLib/project/Box.h"

namespace KestoRenderLib {

/// Makes the edges of a drawn rectangle smooth. `layer` shows the surface's pixels in `area` and holds what
/// was drawn of `box`, which is at least 2 pixels wide and high: the pixels whose middle lies inside it.
/// Pixels that `box` covers in part come out as the nearest drawn ones, faded by that part.
///
///     box           |------...
///     drawn     |   ###|###|        a column less than half covered was left out
///     after     |  :###|###|
void softenEdges(MetaBitmap& layer, const Rect& area, const Box& box);

} // namespace KestoRenderLib
