#pragma once

#include "gdiplus/LoadError.h"

#include <cstdint>

namespace GdiplusBackend {

/// Against `SystemBackend::pixelBudget`: `OutOfMemory` with a message that names the size and the limit;
/// `GenericError` for a size below 1.
Result<void> checkPixelBudget(std::uint64_t width, std::uint64_t height);

} // namespace GdiplusBackend
