#pragma once

#include "KestoRenderLib/project/Affine.h"
#include "KestoRenderLib/project/Surface.h"

namespace KestoRenderLib {

/// Where media are drawn: the canvas, or the inside of another media.
struct Stage {
    Surface& surface;
    Affine fromMiddle;      ///< from points, counted from the stage's middle, to the surface's pixels
    double opacity = 1;     ///< of all that is drawn
    bool everything = true; ///< false: only media that are asked for
    int depth = 0;          ///< how many media lie around it
};

} // namespace KestoRenderLib
