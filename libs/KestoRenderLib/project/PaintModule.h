#pragma once

#include "KestoRenderLib/AffinePaint.h"

namespace KestoRenderLib {

/// The entry point of `kesto_paint.so`, loaded by the first call; null when it is missing. Any thread.
PaintThroughAffine* paintThroughAffineFunction();

} // namespace KestoRenderLib
