#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/pixels/PixelView.h"

namespace GdiplusBackend {

enum class Kernel {
    Nearest,
    Linear,
    Cubic, ///< Keys (1981), a = -1/2
};

enum class Opacity {
    Opaque,      ///< the fourth byte is not read; it comes out as 255
    Transparent, ///< premultiplied alpha
};

/// A rectangle in pixels whose borders may lie between pixels. Widths and heights are positive.
struct Region {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

struct ScaleRequest {
    /// `32bppPARGB`, or `32bppRGB` for opaque pixels. Pixels beyond its border repeat the edge.
    ConstPixelView source;
    /// The part of `source` that becomes the whole target.
    Region region;
    Kernel kernel = Kernel::Linear;
    Opacity opacity = Opacity::Opaque;
};

/// Fills `target` (same memory layout as the source). Linear and cubic kernels widen when they shrink, so
/// that every source pixel of the region counts; samples are taken around pixel centres. A direction that
/// shrinks by 4 or more is averaged over blocks of pixels first. Equal sizes at a whole offset give an exact
/// copy. `InvalidParameter` for a picture or a region without extent and for a region that reaches more than
/// 65536 pixels beyond the source; `OutOfMemory` when memory runs out. Any thread, any number at once.
Result<void> scale(const ScaleRequest& request, const PixelView& target);

} // namespace GdiplusBackend
