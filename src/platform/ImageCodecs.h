#pragma once

#include "platform/Export.h"

#include <string>
#include <vector>

namespace Gdiplus {

/// The kinds of picture files that can be opened here, by name: those that are always there, and of the
/// optional ones those whose module is installed. No module is loaded to find out. Not a published function,
/// but an addition of this library's own. Any thread.
KESTO_EXPORT std::vector<std::string> AvailableImageDecoders();

} // namespace Gdiplus
