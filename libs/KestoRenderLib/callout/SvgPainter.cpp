#include "KestoRenderLib/callout/SvgPainter.h"

#include "KestoRenderLib/callout/SvgReveal.h"

#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>

namespace KestoRenderLib {

namespace {

struct Deleter {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
};
using Handle = std::unique_ptr<RsvgHandle, Deleter>;

constexpr double dotsPerInch = 96;

const guint8* bytesOf(const std::string& text) {
    return reinterpret_cast<const guint8*>(text.data());
}

/// By the start of a gzip file (RFC 1952, 2.3.1), which librsvg would inflate without any bound.
bool isCompressed(const std::string& document) {
    return document.starts_with("\x1F\x8B");
}

/// Without a base, nothing but `data:` is ever resolved.
Handle parse(const RevealedSvg& svg) {
    Handle handle(rsvg_handle_new_from_data(bytesOf(svg.document), svg.document.size(), nullptr));
    if (!handle)
        return handle;
    rsvg_handle_set_dpi(handle.get(), dotsPerInch);
    if (!rsvg_handle_set_stylesheet(handle.get(), bytesOf(svg.stylesheet), svg.stylesheet.size(), nullptr))
        return {};
    return handle;
}

/// Where the document is drawn when nothing is scaled: one without a view box has a size that is all it
/// knows, any other one fills what it gets.
RsvgRectangle viewportOf(RsvgHandle* handle, const Area& area) {
    gboolean hasViewBox = FALSE;
    rsvg_handle_get_intrinsic_dimensions(handle, nullptr, nullptr, nullptr, nullptr, &hasViewBox, nullptr);
    double width = 0;
    double height = 0;
    const bool isSized = rsvg_handle_get_intrinsic_size_in_pixels(handle, &width, &height) != FALSE;
    if (hasViewBox || !isSized || !std::isnormal(width) || !std::isnormal(height))
        return {0, 0, area.width, area.height};
    return {0, 0, width, height};
}

} // namespace

bool paintSvg(cairo_t* context, const CalloutLook& look, const Area& area, bool antialiased) {
    if (isCompressed(look.svg))
        return false;
    const Handle handle = parse(revealSvg(look.svg, look.progress, antialiased));
    if (!handle)
        return false;
    const RsvgRectangle viewport = viewportOf(handle.get(), area);
    const double scale = std::min(area.width / viewport.width, area.height / viewport.height);
    if (!std::isnormal(scale) || scale < 0)
        return false;
    cairo_save(context);
    cairo_translate(context, area.centerX() - viewport.width * scale / 2,
                    area.centerY() - viewport.height * scale / 2);
    cairo_scale(context, scale, scale);
    const bool drawn = rsvg_handle_render_document(handle.get(), context, &viewport, nullptr) != FALSE;
    cairo_restore(context);
    return drawn;
}

} // namespace KestoRenderLib
