#pragma once

#include "KestoRenderLib/CalloutLook.h"

namespace KestoRenderLib {

/// As `DrawCallout`. Throws std::bad_alloc.
bool paintCallout(const CalloutPaint& paint);

} // namespace KestoRenderLib
