#pragma once

#include "platform/Export.h"

namespace KestoThumbnailer {

/// "MAJOR.MINOR.PATCH" of the library that is loaded. Lives as long as the library.
KESTO_EXPORT const char* LibraryVersion();

} // namespace KestoThumbnailer
