#pragma once

#include "KestoRenderLib/CalloutLook.h"

namespace KestoRenderLib {

/// The entry point of `kesto_callout.so`, loaded by the first call; null when it is missing. Any thread.
DrawCallout* drawCalloutFunction();

} // namespace KestoRenderLib
