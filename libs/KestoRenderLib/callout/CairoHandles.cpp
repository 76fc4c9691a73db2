#include "KestoRenderLib/callout/CairoHandles.h"

#include <algorithm>

namespace KestoRenderLib {

Area inset(const Area& area, double across, double down) {
    const double left = std::min(across, area.width / 2);
    const double top = std::min(down, area.height / 2);
    return {area.x + left, area.y + top, area.width - 2 * left, area.height - 2 * top};
}

/// Cairo's 32-bit format is premultiplied words, which lie in memory as B, G, R, A on little-endian machines.
CairoOwned<cairo_surface_t> surfaceOver(const PaintedPixels& memory) {
    return CairoOwned<cairo_surface_t>(cairo_image_surface_create_for_data(
        memory.pixels, CAIRO_FORMAT_ARGB32, memory.width, memory.height, memory.stride));
}

void setSource(cairo_t* context, std::uint32_t argb, double opacity) {
    cairo_set_source_rgba(context, (argb >> 16 & 255) / 255.0, (argb >> 8 & 255) / 255.0,
                          (argb & 255) / 255.0, alphaOf(argb) * opacity);
}

} // namespace KestoRenderLib
