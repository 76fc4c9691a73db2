#include "engine/ffmpeg/TurnPixels.h"

#include <algorithm>
#include <cstddef>

namespace EngineBackend {

namespace {

/// Where pixel (x, y) goes to: index `origin + x * perColumn + y * perRow`.
struct Walk {
    std::ptrdiff_t origin;
    std::ptrdiff_t perColumn;
    std::ptrdiff_t perRow;
};

Walk walkOf(PictureSize size, const Orientation& orientation) {
    const std::ptrdiff_t width = size.width;
    const std::ptrdiff_t height = size.height;
    Walk walk = {};
    switch (orientation.quarterTurnsClockwise) {
    case 1:
        walk = {height - 1, height, -1};
        break;
    case 2:
        walk = {width * height - 1, -1, -width};
        break;
    case 3:
        walk = {(width - 1) * height, -height, 1};
        break;
    default:
        walk = {0, 1, width};
        break;
    }
    if (orientation.isMirrored)
        walk = {walk.origin + (width - 1) * walk.perColumn, -walk.perColumn, walk.perRow};
    return walk;
}

} // namespace

void turnPixels(std::span<const std::uint32_t> pixels, PictureSize size, const Orientation& orientation,
                std::span<std::uint32_t> upright) {
    // Blocks keep the rows of both sides in the cache.
    constexpr int side = 16;
    const Walk walk = walkOf(size, orientation);
    for (int top = 0; top < size.height; top += side)
        for (int left = 0; left < size.width; left += side)
            for (int y = top; y < std::min(top + side, size.height); ++y)
                for (int x = left; x < std::min(left + side, size.width); ++x)
                    upright[static_cast<std::size_t>(walk.origin + x * walk.perColumn + y * walk.perRow)] =
                        pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) +
                               static_cast<std::size_t>(x)];
}

} // namespace EngineBackend
