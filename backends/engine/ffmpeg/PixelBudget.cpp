#include "engine/ffmpeg/PixelBudget.h"

#include "system/PixelBudget.h"

#include <cstdint>

namespace EngineBackend {

bool isWithinPixelBudget(PictureSize size) {
    // A row of B, G, R, A has to be counted in an int.
    constexpr int longestSide = 1 << 28;
    return size.width > 0 && size.height > 0 && size.width <= longestSide && size.height <= longestSide &&
           std::int64_t{size.width} * size.height <= SystemBackend::pixelBudget();
}

} // namespace EngineBackend
