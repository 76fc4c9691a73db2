#include "KestoRenderLib/callout/Shadow.h"

#include "KestoRenderLib/BoxBlur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace KestoRenderLib {

namespace {

CairoOwned<cairo_surface_t> alphaOf(cairo_surface_t* picture) {
    const int width = cairo_image_surface_get_width(picture);
    const int height = cairo_image_surface_get_height(picture);
    CairoOwned<cairo_surface_t> mask(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
    if (cairo_surface_status(mask.get()) != CAIRO_STATUS_SUCCESS)
        return mask;
    cairo_surface_flush(picture);
    cairo_surface_flush(mask.get());
    for (int y = 0; y < height; ++y) {
        const unsigned char* source =
            cairo_image_surface_get_data(picture) +
            static_cast<std::ptrdiff_t>(cairo_image_surface_get_stride(picture)) * y;
        unsigned char* target = cairo_image_surface_get_data(mask.get()) +
                                static_cast<std::ptrdiff_t>(cairo_image_surface_get_stride(mask.get())) * y;
        for (int x = 0; x < width; ++x)
            target[x] = source[x * 4 + 3];
    }
    return mask;
}

} // namespace

Area areaBesideShadow(const CalloutLook& look) {
    const Area box = {0, 0, look.width, look.height};
    if (!look.hasShadow)
        return box;
    const auto room = [&](double offset, double side) {
        return std::clamp(look.shadowBlur + offset, 0.0, side * 0.25);
    };
    const double left = room(-look.shadowX, box.width);
    const double top = room(-look.shadowY, box.height);
    return {left, top, box.width - left - room(look.shadowX, box.width),
            box.height - top - room(look.shadowY, box.height)};
}

void paintShadow(cairo_t* context, cairo_surface_t* picture, const CalloutLook& look) {
    const CairoOwned<cairo_surface_t> mask = alphaOf(picture);
    if (cairo_surface_status(mask.get()) != CAIRO_STATUS_SUCCESS)
        return;
    double across = look.shadowX;
    double down = look.shadowY;
    double radius = look.shadowBlur;
    double unused = 0;
    cairo_user_to_device_distance(context, &across, &down);
    cairo_user_to_device_distance(context, &radius, &unused);
    boxBlur({cairo_image_surface_get_data(mask.get()), cairo_image_surface_get_stride(mask.get()),
             cairo_image_surface_get_width(mask.get()), cairo_image_surface_get_height(mask.get()), 1},
            static_cast<int>(std::lround(std::min(radius, 32767.0))), BlurEdge::Empty);
    cairo_surface_mark_dirty(mask.get());
    cairo_save(context);
    cairo_identity_matrix(context);
    setSource(context, look.shadow);
    cairo_mask_surface(context, mask.get(), std::round(across), std::round(down));
    cairo_restore(context);
}

} // namespace KestoRenderLib
