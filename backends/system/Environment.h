#pragma once

#include "platform/Export.h"

#include <cstdint>

namespace SystemBackend {

/// A positive whole number from the environment; `otherwise` without one. Not while somebody sets variables.
KESTO_EXPORT std::int64_t positiveFromEnvironment(const char* name, std::int64_t otherwise);

} // namespace SystemBackend
