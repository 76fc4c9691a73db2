#include "KestoRenderLib/callout/LinePainter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace KestoRenderLib {

namespace {

using HeadAt = CalloutLook::HeadAt;
using HeadStyle = CalloutLook::HeadStyle;

/// A head of half this width to its length.
constexpr double headSpread = 0.5;
/// Of a line, heads take no more than this.
constexpr double mostOfLine = 0.7;

struct Point {
    double x = 0;
    double y = 0;
};

Point along(const Point& from, const Point& way, double distance) {
    return {from.x + way.x * distance, from.y + way.y * distance};
}

/// From one end to the other; `way` has the length 1.
struct Stretch {
    Point start;
    Point end;
    Point way;
    double length = 0;

    Stretch(const Point& from, const Point& to)
        : start(from)
        , end(to)
        , length(std::hypot(to.x - from.x, to.y - from.y)) {
        if (length > 0)
            way = {(to.x - from.x) / length, (to.y - from.y) / length};
    }
};

Stretch stretchIn(const Area& area, const CalloutLook& look) {
    return {{area.x + look.startX * area.width, area.y + look.startY * area.height},
            {area.x + look.endX * area.width, area.y + look.endY * area.height}};
}

bool hasHead(const CalloutLook& look) {
    return look.headAt != HeadAt::None && look.headSize > 0;
}

/// How far beyond its ends and to its sides the drawn line reaches at most.
Area roomFor(const CalloutLook& look, const Area& area) {
    const Stretch whole = stretchIn(area, look);
    const double half = look.strokeWidth / 2;
    const double spread = hasHead(look) ? std::max(half, look.headSize * headSpread) : half;
    const double beyond = look.cap == CalloutLook::Cap::Butt && !hasHead(look) ? 0 : half;
    const double openHead = hasHead(look) && look.headStyle == HeadStyle::Open ? half : 0;
    return inset(area, spread * std::abs(whole.way.y) + (beyond + openHead) * std::abs(whole.way.x),
                 spread * std::abs(whole.way.x) + (beyond + openHead) * std::abs(whole.way.y));
}

cairo_line_cap_t capOf(CalloutLook::Cap cap) {
    switch (cap) {
    case CalloutLook::Cap::Butt:
        return CAIRO_LINE_CAP_BUTT;
    case CalloutLook::Cap::Round:
        return CAIRO_LINE_CAP_ROUND;
    case CalloutLook::Cap::Square:
        break;
    }
    return CAIRO_LINE_CAP_SQUARE;
}

/// How far from its tip a head of that length covers the shaft.
double coveredBy(HeadStyle style, double head) {
    switch (style) {
    case HeadStyle::Triangle:
        return head * 0.9;
    case HeadStyle::Swept:
        return head * 0.65;
    case HeadStyle::Circle:
        return head * 0.5;
    case HeadStyle::Open:
        break;
    }
    return 0;
}

/// A head with its tip at `tip`, pointing along `way`.
void paintHead(cairo_t* context, const CalloutLook& look, const Point& tip, const Point& way, double head) {
    const Point back = along(tip, way, -head);
    const Point side = {-way.y * head * headSpread, way.x * head * headSpread};
    if (look.headStyle == HeadStyle::Circle) {
        const Point center = along(tip, way, -head / 2);
        cairo_arc(context, center.x, center.y, head / 2, 0, 2 * std::numbers::pi);
        cairo_fill(context);
        return;
    }
    const Point notch = along(tip, way, look.headStyle == HeadStyle::Swept ? -head * 0.7 : -head);
    cairo_move_to(context, back.x + side.x, back.y + side.y);
    cairo_line_to(context, tip.x, tip.y);
    cairo_line_to(context, back.x - side.x, back.y - side.y);
    if (look.headStyle == HeadStyle::Open) {
        cairo_set_dash(context, nullptr, 0, 0);
        cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(context);
        return;
    }
    cairo_line_to(context, notch.x, notch.y);
    cairo_close_path(context);
    cairo_fill(context);
}

void paintStretch(cairo_t* context, const CalloutLook& look, const Stretch& line) {
    const bool atStart = hasHead(look) && look.headAt != HeadAt::End;
    const bool atEnd = hasHead(look) && look.headAt != HeadAt::Start;
    const int heads = (atStart ? 1 : 0) + (atEnd ? 1 : 0);
    const double head = heads > 0 ? std::min(look.headSize, line.length * mostOfLine / heads) : 0;
    const double covered = coveredBy(look.headStyle, head);
    const Point from = along(line.start, line.way, atStart ? covered : 0);
    const Point to = along(line.end, line.way, atEnd ? -covered : 0);
    cairo_set_line_width(context, look.strokeWidth);
    // A cap under a head must not show beside the tip.
    cairo_set_line_cap(context, heads > 0 && look.cap == CalloutLook::Cap::Square ? CAIRO_LINE_CAP_BUTT
                                                                                  : capOf(look.cap));
    setDashes(context, look.dash, look.strokeWidth);
    cairo_move_to(context, from.x, from.y);
    cairo_line_to(context, to.x, to.y);
    cairo_stroke(context);
    if (atStart)
        paintHead(context, look, line.start, {-line.way.x, -line.way.y}, head);
    if (atEnd)
        paintHead(context, look, line.end, line.way, head);
}

} // namespace

void setDashes(cairo_t* context, CalloutLook::Dash dash, double width) {
    constexpr std::array dashes = {3.0, 2.0};
    constexpr std::array dots = {1.0, 1.5};
    constexpr std::array both = {3.0, 1.5, 1.0, 1.5};
    const auto set = [&](const auto& lengths) {
        std::array<double, both.size()> scaled = {};
        std::transform(lengths.begin(), lengths.end(), scaled.begin(),
                       [&](double length) { return length * width; });
        cairo_set_dash(context, scaled.data(), static_cast<int>(lengths.size()), 0);
        cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    };
    switch (width > 0 ? dash : CalloutLook::Dash::Solid) {
    case CalloutLook::Dash::Solid:
        cairo_set_dash(context, nullptr, 0, 0);
        break;
    case CalloutLook::Dash::Dash:
        set(dashes);
        break;
    case CalloutLook::Dash::Dot:
        set(dots);
        break;
    case CalloutLook::Dash::DashDot:
        set(both);
        break;
    }
}

void paintLine(cairo_t* context, const CalloutLook& look, const Area& area) {
    const Stretch whole = stretchIn(roomFor(look, area), look);
    const Stretch drawn(whole.start, along(whole.start, whole.way, whole.length * look.progress));
    if (!(drawn.length > 0) || !(look.strokeWidth > 0))
        return;
    paintFaded(context, alphaOf(look.border), [&] {
        setSource(context, opaque(look.border));
        paintStretch(context, look, drawn);
    });
}

} // namespace KestoRenderLib
