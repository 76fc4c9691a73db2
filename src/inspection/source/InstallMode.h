#pragma once

#include <cstdint>

/// 1 when the registry says so, which chooses the second family of source filters; else 0. Reads the registry
/// with each call. Any thread.
std::int32_t IsInstallModeOne();
