#include "svg/SvgPainter.h"

#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace SvgBackend {

namespace {

struct Deleter {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
    void operator()(GError* error) const { g_error_free(error); }
};
template <class T>
using Owned = std::unique_ptr<T, Deleter>;

constexpr double dotsPerInch = 96;
constexpr double defaultSide = 150;

const guint8* bytesOf(std::string_view text) {
    return reinterpret_cast<const guint8*>(text.data());
}

/// By the start of a gzip file (RFC 1952, 2.3.1), which librsvg would inflate without any bound.
bool isCompressed(std::string_view text) {
    return text.starts_with("\x1F\x8B");
}

/// Takes the error, which may be null.
tl::unexpected<SvgError> failed(GError* failure) {
    const Owned<GError> error(failure);
    return damaged(error ? error->message : "SVG");
}

/// Without a base, nothing but `data:` is ever resolved.
Result<Owned<RsvgHandle>> parse(const SvgDocument& document) {
    if (isCompressed(document.text))
        return damaged("SVG: it is compressed");
    GError* failure = nullptr;
    Owned<RsvgHandle> handle(
        rsvg_handle_new_from_data(bytesOf(document.text), document.text.size(), &failure));
    if (!handle)
        return failed(failure);
    rsvg_handle_set_dpi(handle.get(), dotsPerInch);
    const std::string_view sheet = document.stylesheet;
    if (!sheet.empty() && !rsvg_handle_set_stylesheet(handle.get(), bytesOf(sheet), sheet.size(), &failure))
        return failed(failure);
    return handle;
}

SvgSize sizeOf(RsvgHandle* handle) {
    SvgSize size;
    if (rsvg_handle_get_intrinsic_size_in_pixels(handle, &size.width, &size.height))
        return size;
    gboolean hasWidth = FALSE;
    gboolean hasHeight = FALSE;
    gboolean hasViewBox = FALSE;
    RsvgLength width = {};
    RsvgLength height = {};
    RsvgRectangle viewBox = {};
    rsvg_handle_get_intrinsic_dimensions(handle, &hasWidth, &width, &hasHeight, &height, &hasViewBox,
                                         &viewBox);
    size = hasViewBox ? SvgSize{viewBox.width, viewBox.height} : SvgSize{defaultSide, defaultSide};
    const double aspect = size.width / size.height;
    // One side alone keeps the view box's shape.
    if (hasWidth && width.unit == RSVG_UNIT_PX)
        return {width.length, hasViewBox ? width.length / aspect : size.height};
    if (hasHeight && height.unit == RSVG_UNIT_PX)
        return {hasViewBox ? height.length * aspect : size.width, height.length};
    return size;
}

/// Where the document is drawn when nothing is scaled: one without a view box has a size that is all it
/// knows, any other one fills what it gets.
RsvgRectangle viewportOf(RsvgHandle* handle, const cairo_rectangle_t& area) {
    gboolean hasViewBox = FALSE;
    rsvg_handle_get_intrinsic_dimensions(handle, nullptr, nullptr, nullptr, nullptr, &hasViewBox, nullptr);
    double width = 0;
    double height = 0;
    const bool isSized = rsvg_handle_get_intrinsic_size_in_pixels(handle, &width, &height) != FALSE;
    if (hasViewBox || !isSized || !std::isnormal(width) || !std::isnormal(height))
        return {0, 0, area.width, area.height};
    return {0, 0, width, height};
}

Result<void> render(cairo_t* context, RsvgHandle* handle, const RsvgRectangle& viewport) {
    GError* failure = nullptr;
    if (!rsvg_handle_render_document(handle, context, &viewport, &failure))
        return failed(failure);
    return {};
}

Result<void> renderInTheMiddle(cairo_t* context, RsvgHandle* handle, const cairo_rectangle_t& area) {
    const RsvgRectangle viewport = viewportOf(handle, area);
    const double scale = std::min(area.width / viewport.width, area.height / viewport.height);
    if (!std::isnormal(scale) || scale < 0)
        return damaged("SVG: a drawing needs a positive size");
    cairo_save(context);
    cairo_translate(context, area.x + area.width / 2 - viewport.width * scale / 2,
                    area.y + area.height / 2 - viewport.height * scale / 2);
    cairo_scale(context, scale, scale);
    auto drawn = render(context, handle, viewport);
    cairo_restore(context);
    return drawn;
}

} // namespace

Result<SvgSize> measureHere(std::string_view text) {
    const auto handle = parse({text});
    if (!handle)
        return tl::unexpected(handle.error());
    return sizeOf(handle->get());
}

Result<void> paintHere(cairo_t* context, const SvgDocument& document, const SvgPlace& place) {
    const auto handle = parse(document);
    if (!handle)
        return tl::unexpected(handle.error());
    const cairo_rectangle_t& area = place.area;
    return place.isInTheMiddle ? renderInTheMiddle(context, handle->get(), area)
                               : render(context, handle->get(), {area.x, area.y, area.width, area.height});
}

} // namespace SvgBackend
