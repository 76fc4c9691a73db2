#include "gdiplus/codecs/PixelBudget.h"

#include "system/PixelBudget.h"

#include <fmt/format.h>

namespace GdiplusBackend {

Result<void> checkPixelBudget(std::uint64_t width, std::uint64_t height) {
    if (width == 0 || height == 0)
        return damaged("a picture needs a positive size");
    constexpr std::uint64_t longestSide = 1U << 30;
    const auto budget = static_cast<std::uint64_t>(SystemBackend::pixelBudget());
    if (width > longestSide || height > longestSide || width > budget / height)
        return tooLarge(fmt::format("{} x {} pixels are more than the budget of {}", width, height, budget));
    return {};
}

} // namespace GdiplusBackend
