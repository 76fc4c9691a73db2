#include "KestoRenderLib/AffinePaint.h"

#include "platform/Export.h"

#include <cairo.h>

#include <memory>

extern "C" KESTO_EXPORT KestoRenderLib::PaintThroughAffine kestoPaintThroughAffine;

namespace KestoRenderLib {

namespace {

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

struct ContextDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

/// Cairo's 32-bit format is premultiplied words, which lie in memory as B, G, R, A on little-endian machines.
Surface surfaceOver(const PaintedPixels& memory) {
    return Surface(cairo_image_surface_create_for_data(memory.pixels, CAIRO_FORMAT_ARGB32, memory.width,
                                                       memory.height, memory.stride));
}

/// The part's outline clips, and beyond the border the edge pixels repeat: so edges are smooth, and no edge
/// fades over a whole pixel.
bool paint(cairo_t* context, cairo_surface_t* picture, const AffinePaint& order) {
    const cairo_matrix_t matrix = {order.xx, order.yx, order.xy, order.yy, order.dx, order.dy};
    cairo_transform(context, &matrix);
    cairo_rectangle(context, order.partLeft, order.partTop, order.partWidth, order.partHeight);
    cairo_clip(context);
    cairo_set_source_surface(context, picture, 0, 0);
    cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
    cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_BILINEAR);
    cairo_paint_with_alpha(context, order.opacity);
    return cairo_status(context) == CAIRO_STATUS_SUCCESS;
}

} // namespace

} // namespace KestoRenderLib

bool kestoPaintThroughAffine(const KestoRenderLib::AffinePaint& paint) {
    const KestoRenderLib::Surface picture = KestoRenderLib::surfaceOver(paint.picture);
    const KestoRenderLib::Surface target = KestoRenderLib::surfaceOver(paint.target);
    const KestoRenderLib::Context context(cairo_create(target.get()));
    const bool painted = KestoRenderLib::paint(context.get(), picture.get(), paint);
    cairo_surface_flush(target.get());
    return painted;
}
