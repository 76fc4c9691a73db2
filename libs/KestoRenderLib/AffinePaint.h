#pragma once

namespace KestoRenderLib {

/// Premultiplied B, G, R, A rows from the top, `stride` bytes apart, a multiple of 4.
struct PaintedPixels {
    unsigned char* pixels = nullptr;
    int stride = 0;
    int width = 0;
    int height = 0;
};

/// A part of a picture that is drawn source-over through any affine map, with smooth edges.
struct AffinePaint {
    PaintedPixels picture; ///< only read
    double partLeft = 0;   ///< what is shown of it, in its pixels
    double partTop = 0;
    double partWidth = 0;
    double partHeight = 0;
    double xx = 1; ///< from its pixels to the target's: x' = xx * x + xy * y + dx, y' = yx * x + yy * y + dy
    double yx = 0;
    double xy = 0;
    double yy = 1;
    double dx = 0;
    double dy = 0;
    double opacity = 1; ///< from 0 to 1
    PaintedPixels target;
};

/// The one entry point of the painting module. False, with nothing drawn or only a part, for a map that
/// cannot be inverted, a picture or target of more than 32767 pixels in a direction, or without memory. Any
/// thread.
using PaintThroughAffine = bool(const AffinePaint& paint);

constexpr const char* paintThroughAffineName = "kestoPaintThroughAffine";

} // namespace KestoRenderLib
