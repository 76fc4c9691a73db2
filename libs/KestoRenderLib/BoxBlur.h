#pragma once

namespace KestoRenderLib {

/// Rows of bytes from the top, `channels` to a pixel, `stride` bytes apart.
struct BlurredPixels {
    unsigned char* pixels = nullptr;
    int stride = 0;
    int width = 0;
    int height = 0;
    int channels = 1;
};

/// What lies beyond the edge: nothing, or the pixel at it again and again.
enum class BlurEdge { Empty, Repeated };

/// Blurs in place, by three averages in each direction, which come near a Gaussian of a standard deviation of
/// half the radius. No pixel reaches further than `radius`. Premultiplied pixels stay valid: no channel
/// overtakes another. Throws std::bad_alloc.
void boxBlur(const BlurredPixels& picture, int radius, BlurEdge edge);

} // namespace KestoRenderLib
