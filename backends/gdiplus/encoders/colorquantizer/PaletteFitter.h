#pragma once

#include "gdiplus/encoders/colorquantizer/ColorHistogram.h"

#include <cstddef>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// At most `size` opaque colours that stand for the pixels of `bins` with little squared error; fewer when
/// there are fewer bins. `bins` has at least one.
std::vector<Gdiplus::ARGB> fitPalette(std::span<const ColorBin> bins, std::size_t size);

} // namespace GdiplusBackend
