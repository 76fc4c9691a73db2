#include "engine/ffmpeg/PixelBudget.h"

#include "engine/ffmpeg/Environment.h"

namespace EngineBackend {

std::int64_t pixelBudget() {
    static const std::int64_t budget = positiveFromEnvironment("KESTO_PIXEL_BUDGET", 400'000'000);
    return budget;
}

bool isWithinPixelBudget(PictureSize size) {
    // A row of B, G, R, A has to be counted in an int.
    constexpr int longestSide = 1 << 28;
    return size.width > 0 && size.height > 0 && size.width <= longestSide && size.height <= longestSide &&
           std::int64_t{size.width} * size.height <= pixelBudget();
}

} // namespace EngineBackend
