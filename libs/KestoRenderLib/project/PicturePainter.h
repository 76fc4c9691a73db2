#pragma once

#include "KestoRenderLib/project/Affine.h"
#include "KestoRenderLib/project/Box.h"
#include "KestoRenderLib/project/PictureSource.h"
#include "KestoRenderLib/project/Surface.h"

namespace KestoRenderLib {

/// How a picture is put on a surface.
struct Placement {
    Affine map;         ///< from the picture's pixels to the surface's
    Box part;           ///< what is shown of it, in its pixels
    double opacity = 1; ///< from 0 to 1
};

/// Draws a picture source-over. It is not asked for where nothing would show, and at no larger size than
/// needed. What can't be had or drawn leaves a hole. The process must have started GDI+.
void paintPicture(Surface& surface, IPictureSource& source, const Placement& placement);

} // namespace KestoRenderLib
