#include "gdiplus/pixels/RotateFlip.h"

#include "gdiplus/pixels/ConvertPixels.h"

#include <algorithm>
#include <cstring>

namespace GdiplusBackend {

namespace {

/// Where the target's pixels come from: pixel (x, y) is source pixel `origin` + x * `right` + y * `down`.
struct Walk {
    struct Step {
        int x;
        int y;
    };
    Step origin;
    Step right;
    Step down;
};

Walk walkFor(Gdiplus::RotateFlipType type, int sourceWidth, int sourceHeight) {
    const int lastX = sourceWidth - 1;
    const int lastY = sourceHeight - 1;
    Walk walk = {{0, 0}, {1, 0}, {0, 1}};
    switch (type & 3) {
    case 1: // a quarter clockwise: the target's first row is the source's first column from below
        walk = {{0, lastY}, {0, -1}, {1, 0}};
        break;
    case 2:
        walk = {{lastX, lastY}, {-1, 0}, {0, -1}};
        break;
    case 3:
        walk = {{lastX, 0}, {0, 1}, {-1, 0}};
        break;
    default:
        break;
    }
    if ((type & 4) != 0) {
        const int lastColumn = (swapsSides(type) ? sourceHeight : sourceWidth) - 1;
        walk.origin = {walk.origin.x + lastColumn * walk.right.x, walk.origin.y + lastColumn * walk.right.y};
        walk.right = {-walk.right.x, -walk.right.y};
    }
    return walk;
}

template <std::size_t Bytes>
void turnWholeBytes(const ConstPixelView& source, const Walk& walk, const PixelView& target) {
    const std::ptrdiff_t pixel = Bytes;
    const std::ptrdiff_t right = walk.right.x * pixel + walk.right.y * source.stride;
    const std::ptrdiff_t down = walk.down.x * pixel + walk.down.y * source.stride;
    const std::byte* origin = source.row(walk.origin.y) + walk.origin.x * pixel;
    // In square tiles both pictures stay in the cache, also when one is walked by columns.
    constexpr int tile = 32;
    for (int top = 0; top < target.height; top += tile)
        for (int left = 0; left < target.width; left += tile)
            for (int y = top; y < std::min(top + tile, target.height); ++y) {
                const std::byte* from = origin + y * down + left * right;
                std::byte* to = target.row(y) + left * pixel;
                for (int x = left; x < std::min(left + tile, target.width); ++x, from += right, to += pixel)
                    std::memcpy(to, from, Bytes);
            }
}

void turnIndices(const ConstPixelView& source, const Walk& walk, const PixelView& target) {
    for (int y = 0; y < target.height; ++y)
        for (int x = 0; x < target.width; ++x)
            writeIndex(target, x, y,
                       readIndex(source, walk.origin.x + x * walk.right.x + y * walk.down.x,
                                 walk.origin.y + x * walk.right.y + y * walk.down.y));
}

} // namespace

Result<PixelBuffer> rotateFlip(const ConstPixelView& picture, Gdiplus::RotateFlipType type) {
    const bool swapped = swapsSides(type);
    auto turned = PixelBuffer::create(swapped ? picture.height : picture.width,
                                      swapped ? picture.width : picture.height, picture.format,
                                      {picture.palette.begin(), picture.palette.end()});
    if (!turned)
        return turned;
    const Walk walk = walkFor(type, picture.width, picture.height);
    const PixelView target = turned->view();
    switch (GetPixelFormatSize(picture.format)) {
    case 8:
        turnWholeBytes<1>(picture, walk, target);
        break;
    case 16:
        turnWholeBytes<2>(picture, walk, target);
        break;
    case 24:
        turnWholeBytes<3>(picture, walk, target);
        break;
    case 32:
        turnWholeBytes<4>(picture, walk, target);
        break;
    default:
        turnIndices(picture, walk, target);
    }
    return turned;
}

} // namespace GdiplusBackend
