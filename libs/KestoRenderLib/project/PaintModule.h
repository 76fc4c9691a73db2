#pragma once

#include "KestoRenderLib/AffinePaint.h"

namespace KestoRenderLib {

/// The entry point of `kesto_paint.so`, which lies in the folder `KestoThumbnailer` beside this library, or
/// in that of a program's tree that has this code linked into itself. The first call loads it, for good; null
/// when it is missing. Any thread.
PaintThroughAffine* paintThroughAffineFunction();

} // namespace KestoRenderLib
