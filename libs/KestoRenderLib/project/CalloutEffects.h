#pragma once

#include "platform/KestoRenderProject.h"

#include <cstdint>

namespace KestoRenderLib {

// `shown` is memory for the surface's pixels from `shownAt`'s upper left corner on, and `mask` for those in
// `area`, of which its alpha counts.

/// Blurs what is shown where the mask is, as far as it is opaque and `opacity` says. `area` lies inside of
/// `shownAt`.
void blurThroughMask(MetaBitmap& shown, const Rect& shownAt, const MetaBitmap& mask, const Rect& area,
                     int radius, double opacity);

/// Lays a colour, not premultiplied, over all that is shown but where the mask is. An empty mask hides
/// nothing.
void coverAroundMask(MetaBitmap& shown, const Rect& shownAt, const MetaBitmap* mask, const Rect& area,
                     std::uint32_t argb, double opacity);

} // namespace KestoRenderLib
