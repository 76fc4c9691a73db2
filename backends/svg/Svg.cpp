#include "svg/Svg.h"

#include "svg/PlainSvg.h"
#include "svg/SvgPainter.h"
#include "svg/SvgProcess.h"

#include <new>

namespace SvgBackend {

namespace {

bool isPlain(const SvgDocument& document, int width, int height) {
    return isPlainSvg(document.original(), static_cast<double>(width) * height);
}

void paintPicture(cairo_t* context, cairo_surface_t* picture) {
    cairo_save(context);
    cairo_identity_matrix(context);
    cairo_set_source_surface(context, picture, 0, 0);
    cairo_paint(context);
    cairo_restore(context);
}

Result<SvgPicture> drawnHere(const SvgDocument& document, const SvgPlace& place, int width, int height) {
    SvgPicture picture;
    picture.surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    if (cairo_surface_status(picture.surface.get()) == CAIRO_STATUS_NO_MEMORY)
        throw std::bad_alloc();
    const CairoOwned<cairo_t> context(cairo_create(picture.surface.get()));
    if (const auto drawn = paintHere(context.get(), document, place); !drawn)
        return tl::unexpected(drawn.error());
    cairo_surface_flush(picture.surface.get());
    return picture;
}

} // namespace

Result<SvgSize> measureSvg(std::string_view text) {
    return isPlain({text}, 0, 0) ? measureHere(text) : measureApart(text);
}

Result<SvgPicture> drawSvg(const SvgDocument& document, int width, int height) {
    const SvgPlace place = {.area = {0, 0, static_cast<double>(width), static_cast<double>(height)},
                            .isKnownClear = true};
    if (isPlain(document, width, height))
        return drawnHere(document, place, width, height);
    cairo_matrix_t matrix;
    cairo_matrix_init_identity(&matrix);
    auto exchange = drawApart(document, place, matrix, width, height);
    if (!exchange)
        return tl::unexpected(exchange.error());
    CairoOwned<cairo_surface_t> surface = exchange->picture();
    return SvgPicture{std::move(*exchange), std::move(surface)};
}

Result<void> paintSvg(cairo_t* context, const SvgDocument& document, const cairo_rectangle_t& area) {
    cairo_surface_t* const target = cairo_get_target(context);
    const int width = cairo_image_surface_get_width(target);
    const int height = cairo_image_surface_get_height(target);
    const SvgPlace place = {.area = area, .isInTheMiddle = true};
    if (isPlain(document, width, height))
        return paintHere(context, document, place);
    cairo_matrix_t matrix;
    cairo_get_matrix(context, &matrix);
    const auto exchange = drawApart(document, place, matrix, width, height);
    if (!exchange)
        return tl::unexpected(exchange.error());
    paintPicture(context, exchange->picture().get());
    return {};
}

} // namespace SvgBackend
