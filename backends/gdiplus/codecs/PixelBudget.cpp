#include "gdiplus/codecs/PixelBudget.h"

#include <fmt/format.h>

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace GdiplusBackend {

namespace {

constexpr std::uint64_t defaultBudget = 400'000'000;

std::uint64_t budgetFromEnvironment() {
    const char* text = std::getenv("KESTO_PIXEL_BUDGET"); // NOLINT(concurrency-mt-unsafe): read once
    if (!text)
        return defaultBudget;
    std::uint64_t value = 0;
    const char* end = text + std::strlen(text);
    const auto [rest, error] = std::from_chars(text, end, value);
    return error == std::errc{} && rest == end && value > 0 ? value : defaultBudget;
}

} // namespace

std::uint64_t pixelBudget() {
    static const std::uint64_t budget = budgetFromEnvironment();
    return budget;
}

Result<void> checkPixelBudget(std::uint64_t width, std::uint64_t height) {
    if (width == 0 || height == 0)
        return damaged("a picture needs a positive size");
    constexpr std::uint64_t longestSide = 1U << 30;
    if (width > longestSide || height > longestSide || width > pixelBudget() / height)
        return tooLarge(
            fmt::format("{} x {} pixels are more than the budget of {}", width, height, pixelBudget()));
    return {};
}

} // namespace GdiplusBackend
