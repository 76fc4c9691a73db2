#pragma once

#include "gdiplus/LoadError.h"

#include <cstdint>

namespace GdiplusBackend {

/// The most pixels that one picture or bitmap may have: 400 million, or what the environment variable
/// KESTO_PIXEL_BUDGET says, read once.
std::uint64_t pixelBudget();

/// `OutOfMemory` with a message that names the size and the limit; `GenericError` for a size below 1.
Result<void> checkPixelBudget(std::uint64_t width, std::uint64_t height);

} // namespace GdiplusBackend
