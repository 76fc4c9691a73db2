#include "KestoRenderLib/callout/BoxPainter.h"

#include "KestoRenderLib/callout/LinePainter.h"
#include "KestoRenderLib/callout/Outlines.h"
#include "KestoRenderLib/callout/TextPainter.h"
#include "KestoRenderLib/callout/TracedPath.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace KestoRenderLib {

namespace {

using Shape = CalloutLook::Shape;

/// A square in a circle has this part of its diameter.
constexpr double squareInCircle = 0.7071;
/// A spotlight's hole leaves this part of each length dark on either side.
constexpr double darkMargin = 0.15;

void addOutline(cairo_t* context, const CalloutLook& look, const Area& body) {
    cairo_new_path(context);
    if (look.shape == Shape::Ellipse)
        addEllipse(context, body);
    else if (look.shape == Shape::SpeechBubble)
        addSpeechBubble(context, look, body);
    else if (look.shape == Shape::TextArrow)
        addBlockArrow(context, look, body);
    else
        addRoundedRectangle(context, body, look.cornerRadius);
}

Area textArea(const CalloutLook& look, const Area& body) {
    const double border = look.borderWidth / 2;
    if (look.shape == Shape::TextArrow) {
        const Area shaft = blockArrowText(look, body);
        return inset(shaft, look.padding + border, std::min(look.padding, shaft.height / 10) + border);
    }
    if (look.shape == Shape::Ellipse)
        return inset(body, body.width * (1 - squareInCircle) / 2 + border,
                     body.height * (1 - squareInCircle) / 2 + border);
    const double round = std::min({look.cornerRadius, body.width / 2, body.height / 2});
    const double margin = std::max(look.padding, round * (1 - squareInCircle)) + border;
    return inset(body, margin, margin);
}

/// A wall of glass bricks: each lets through something else.
void paintFrost(cairo_t* context, const CalloutLook& look, const Area& body) {
    constexpr int bricksAlong = 12;
    const double side = std::max(body.width, body.height) / bricksAlong;
    if (!(side > 0))
        return;
    cairo_save(context);
    addOutline(context, look, body);
    cairo_clip(context);
    cairo_set_antialias(context, CAIRO_ANTIALIAS_NONE);
    for (int row = 0; row * side < body.height; ++row)
        for (int column = 0; column * side < body.width; ++column) {
            const std::uint32_t mixed =
                (static_cast<std::uint32_t>(row) * 73U + 1) * (static_cast<std::uint32_t>(column) * 151U + 7);
            setSource(context, look.fill, look.progress * (0.7 + (mixed % 97) / 97.0 * 0.3));
            cairo_rectangle(context, body.x + column * side, body.y + row * side, side, side);
            cairo_fill(context);
        }
    cairo_restore(context);
}

void paintFill(cairo_t* context, const CalloutLook& look, const Area& body) {
    if (alphaOf(look.fill) == 0)
        return;
    if (look.shape == Shape::BlurBox)
        return paintFrost(context, look, body);
    addOutline(context, look, body);
    setSource(context, look.fill, look.progress);
    cairo_fill(context);
}

/// Along the current path.
void strokeBorder(cairo_t* context, const CalloutLook& look) {
    tracePath(context, look.progress);
    cairo_set_line_width(context, look.borderWidth);
    cairo_set_line_join(context,
                        look.shape == Shape::Rectangle ? CAIRO_LINE_JOIN_MITER : CAIRO_LINE_JOIN_ROUND);
    setDashes(context, look.dash, look.borderWidth);
    setSource(context, look.border);
    cairo_stroke(context);
}

} // namespace

void paintBox(cairo_t* context, const CalloutLook& look, const Area& area, bool antialiased) {
    const Area outer = inset(area, look.borderWidth / 2, look.borderWidth / 2);
    const Area body = look.shape == Shape::SpeechBubble ? bubbleBody(look, outer) : outer;
    paintFill(context, look, body);
    if (look.borderWidth > 0) {
        addOutline(context, look, body);
        strokeBorder(context, look);
    }
    cairo_new_path(context);
    if (!look.text.empty())
        paintFaded(context, look.progress,
                   [&] { paintText(context, look, textArea(look, body), antialiased); });
}

void paintSpotlight(cairo_t* context, const CalloutLook& look, const Area& area) {
    const Area hole = inset(area, area.width * darkMargin, area.height * darkMargin);
    const auto addHole = [&] {
        if (look.cornerRadius < 0)
            addEllipse(context, hole);
        else
            addRoundedRectangle(context, hole, look.cornerRadius);
    };
    cairo_new_path(context);
    cairo_rectangle(context, area.x, area.y, area.width, area.height);
    addHole();
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    setSource(context, look.fill, look.progress);
    cairo_fill(context);
    if (look.borderWidth > 0) {
        addHole();
        strokeBorder(context, look);
    }
}

} // namespace KestoRenderLib
