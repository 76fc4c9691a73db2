#pragma once

#include <cstdint>

namespace EngineBackend {

/// A positive whole number from the environment; `otherwise` without one.
std::int64_t positiveFromEnvironment(const char* name, std::int64_t otherwise);

} // namespace EngineBackend
