#pragma once

#include "platform/Export.h"

#include <cstdint>

namespace SystemBackend {

/// The most pixels that one picture may have: 400 million, or what the environment variable
/// KESTO_PIXEL_BUDGET says, read once for the whole process. Any thread.
KESTO_EXPORT std::int64_t pixelBudget();

} // namespace SystemBackend
