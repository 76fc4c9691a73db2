#include "KestoRenderLib/callout/CalloutPainter.h"

#include "KestoRenderLib/callout/BoxPainter.h"
#include "KestoRenderLib/callout/LinePainter.h"
#include "KestoRenderLib/callout/Shadow.h"
#include "KestoRenderLib/callout/SvgReveal.h"

#include "svg/Svg.h"

namespace KestoRenderLib {

namespace {

/// Lengths become the callout's own, over all of the surface.
CairoOwned<cairo_t> contextOver(cairo_surface_t* surface, const CalloutPaint& paint) {
    CairoOwned<cairo_t> context(cairo_create(surface));
    cairo_scale(context.get(), paint.target.width / paint.look.width,
                paint.target.height / paint.look.height);
    cairo_set_antialias(context.get(), paint.antialiased ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    return context;
}

bool paintSvg(cairo_t* context, const CalloutPaint& paint, const Area& area) {
    const RevealedSvg svg = revealSvg(paint.look.svg, paint.look.progress, paint.antialiased);
    return SvgBackend::paintSvg(
               context, {.text = svg.document, .stylesheet = svg.stylesheet, .origin = paint.look.svg},
               {area.x, area.y, area.width, area.height})
        .has_value();
}

bool paintContent(cairo_t* context, const CalloutPaint& paint, const Area& area) {
    switch (paint.look.shape) {
    case CalloutLook::Shape::Arrow:
    case CalloutLook::Shape::Line:
        paintLine(context, paint.look, area);
        break;
    case CalloutLook::Shape::Svg:
        if (!paintSvg(context, paint, area))
            return false;
        break;
    case CalloutLook::Shape::Spotlight:
        paintSpotlight(context, paint.look, area);
        break;
    case CalloutLook::Shape::Text:
    case CalloutLook::Shape::TextArrow:
    case CalloutLook::Shape::Rectangle:
    case CalloutLook::Shape::RoundedRectangle:
    case CalloutLook::Shape::Ellipse:
    case CalloutLook::Shape::SpeechBubble:
    case CalloutLook::Shape::Highlight:
    case CalloutLook::Shape::BlurBox:
        paintBox(context, paint.look, area, paint.antialiased);
        break;
    }
    return cairo_status(context) == CAIRO_STATUS_SUCCESS;
}

bool paintWithShadow(cairo_t* context, const CalloutPaint& paint) {
    const CairoOwned<cairo_surface_t> picture(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, paint.target.width, paint.target.height));
    const CairoOwned<cairo_t> apart = contextOver(picture.get(), paint);
    if (!paintContent(apart.get(), paint, areaBesideShadow(paint.look)))
        return false;
    paintShadow(context, picture.get(), paint.look);
    cairo_identity_matrix(context);
    cairo_set_source_surface(context, picture.get(), 0, 0);
    cairo_paint(context);
    return cairo_status(context) == CAIRO_STATUS_SUCCESS;
}

} // namespace

bool paintCallout(const CalloutPaint& paint) {
    const CairoOwned<cairo_surface_t> target = surfaceOver(paint.target);
    const CairoOwned<cairo_t> context = contextOver(target.get(), paint);
    const bool painted = paint.look.hasShadow ? paintWithShadow(context.get(), paint)
                                              : paintContent(context.get(), paint,
                                                             {0, 0, paint.look.width, paint.look.height});
    cairo_surface_flush(target.get());
    return painted;
}

} // namespace KestoRenderLib
