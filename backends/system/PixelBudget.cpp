#include "system/PixelBudget.h"

#include "system/Environment.h"

namespace SystemBackend {

std::int64_t pixelBudget() {
    static const std::int64_t budget = positiveFromEnvironment("KESTO_PIXEL_BUDGET", 400'000'000);
    return budget;
}

} // namespace SystemBackend
