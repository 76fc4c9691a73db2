#pragma once

#include "platform/System.h"

namespace KestoRenderLib {

/// The entry point of a module, which lies in the folder `KestoThumbnailer` beside this library, or in that
/// of a program's tree that has this code linked into itself. The module is loaded for good; null when it is
/// missing. Any thread.
FARPROC renderModuleFunction(const wchar_t* module, const char* function);

} // namespace KestoRenderLib
