#pragma once

#include "KestoRenderLib/AffinePaint.h"

#include "svg/CairoOwned.h"

#include <cairo.h>

#include <cstdint>

namespace KestoRenderLib {

using SvgBackend::CairoOwned;

/// A rectangle by its corner and size.
struct Area {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double right() const { return x + width; }
    double bottom() const { return y + height; }
    double centerX() const { return x + width / 2; }
    double centerY() const { return y + height / 2; }
    bool isEmpty() const { return !(width > 0 && height > 0); }
};

/// What is left of `area` within these margins; of one that is too small, its middle.
Area inset(const Area& area, double across, double down);

/// Over the memory, without copying.
CairoOwned<cairo_surface_t> surfaceOver(const PaintedPixels& memory);

/// `argb` is not premultiplied.
void setSource(cairo_t* context, std::uint32_t argb, double opacity = 1);

inline double alphaOf(std::uint32_t argb) {
    return (argb >> 24) / 255.0;
}

inline std::uint32_t opaque(std::uint32_t argb) {
    return argb | 0xFF000000U;
}

/// Draws what `draw` draws as one picture of that opacity, so that its parts do not shine through each other.
template <class Draw>
void paintFaded(cairo_t* context, double opacity, const Draw& draw) {
    if (!(opacity > 0))
        return;
    if (opacity >= 1)
        return draw();
    cairo_push_group(context);
    draw();
    cairo_pop_group_to_source(context);
    cairo_paint_with_alpha(context, opacity);
}

} // namespace KestoRenderLib
