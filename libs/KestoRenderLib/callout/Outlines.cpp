#include "KestoRenderLib/callout/Outlines.h"

#include "KestoRenderLib/CalloutLook.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace KestoRenderLib {

namespace {

constexpr double quarterTurn = std::numbers::pi / 2;
/// How much of an arrow's thickness its shaft has.
constexpr double shaftPart = 0.64;

struct Point {
    double x;
    double y;
};

enum class Way { Right, Down, Left, Up };

Way wayOf(const CalloutLook& look) {
    const double across = (look.endX - look.startX) * look.width;
    const double down = (look.endY - look.startY) * look.height;
    if (std::abs(across) >= std::abs(down))
        return across < 0 ? Way::Left : Way::Right;
    return down < 0 ? Way::Up : Way::Down;
}

bool isUpright(Way way) {
    return way == Way::Up || way == Way::Down;
}

double blockHead(const CalloutLook& look, const Area& area, Way way) {
    return std::min(look.headSize, (isUpright(way) ? area.height : area.width) * 0.6);
}

/// The sides of a body, clockwise as they are drawn.
enum class BodySide { Top, Right, Bottom, Left, None };

BodySide tailSide(const Area& body, const Point& tip) {
    const double across = (tip.x - body.centerX()) / std::max(body.width, 1e-9);
    const double down = (tip.y - body.centerY()) / std::max(body.height, 1e-9);
    if (std::max(std::abs(across), std::abs(down)) <= 0.5)
        return BodySide::None;
    if (std::abs(across) > std::abs(down))
        return across < 0 ? BodySide::Left : BodySide::Right;
    return down < 0 ? BodySide::Top : BodySide::Bottom;
}

/// The tail between two corners: from the first foot to the tip to the second one.
void addTail(cairo_t* context, const Area& body, double radius, const Point& tip, BodySide side) {
    const bool upright = side == BodySide::Left || side == BodySide::Right;
    const double straight = std::max((upright ? body.height : body.width) - 2 * radius, 0.0);
    const double half = std::min(
        {straight / 2, std::min(body.width, body.height) * 0.2, (upright ? body.height : body.width) * 0.15});
    const double start = (upright ? body.y : body.x) + radius + half;
    const double middle =
        std::clamp(upright ? tip.y : tip.x, start, start + std::max(straight - 2 * half, 0.0));
    const bool forwards = side == BodySide::Top || side == BodySide::Right;
    const double first = middle + (forwards ? -half : half);
    const double second = middle + (forwards ? half : -half);
    const double edge = side == BodySide::Top      ? body.y
                        : side == BodySide::Right  ? body.right()
                        : side == BodySide::Bottom ? body.bottom()
                                                   : body.x;
    cairo_line_to(context, upright ? edge : first, upright ? first : edge);
    cairo_line_to(context, tip.x, tip.y);
    cairo_line_to(context, upright ? edge : second, upright ? second : edge);
}

void addBody(cairo_t* context, const Area& body, double wanted, const Point& tip, BodySide side) {
    const double radius = std::clamp(wanted, 0.0, std::min(body.width, body.height) / 2);
    const std::array<Point, 4> corners = {{{body.x + radius, body.y + radius},
                                           {body.right() - radius, body.y + radius},
                                           {body.right() - radius, body.bottom() - radius},
                                           {body.x + radius, body.bottom() - radius}}};
    cairo_new_sub_path(context);
    for (int corner = 0; corner < 4; ++corner) {
        const Point& center = corners[static_cast<std::size_t>(corner)];
        const double angle = (corner + 2) * quarterTurn;
        cairo_arc(context, center.x, center.y, radius, angle, angle + quarterTurn);
        if (side == static_cast<BodySide>(corner))
            addTail(context, body, radius, tip, side);
    }
    cairo_close_path(context);
}

} // namespace

void addRoundedRectangle(cairo_t* context, const Area& area, double radius) {
    if (radius > 0)
        addBody(context, area, radius, {}, BodySide::None);
    else
        cairo_rectangle(context, area.x, area.y, area.width, area.height);
}

void addEllipse(cairo_t* context, const Area& area) {
    if (area.isEmpty())
        return;
    cairo_matrix_t outside;
    cairo_get_matrix(context, &outside);
    cairo_translate(context, area.centerX(), area.centerY());
    cairo_scale(context, area.width / 2, area.height / 2);
    cairo_new_sub_path(context);
    cairo_arc(context, 0, 0, 1, 0, 4 * quarterTurn);
    cairo_close_path(context);
    cairo_set_matrix(context, &outside);
}

Area bubbleBody(const CalloutLook& look, const Area& area) {
    const double left = std::min(look.tailX, 0.0);
    const double top = std::min(look.tailY, 0.0);
    const double width = area.width / (std::max(look.tailX, 1.0) - left);
    const double height = area.height / (std::max(look.tailY, 1.0) - top);
    return {area.x - left * width, area.y - top * height, width, height};
}

void addSpeechBubble(cairo_t* context, const CalloutLook& look, const Area& body) {
    const Point tip = {body.x + look.tailX * body.width, body.y + look.tailY * body.height};
    addBody(context, body, look.cornerRadius, tip, tailSide(body, tip));
}

void addBlockArrow(cairo_t* context, const CalloutLook& look, const Area& area) {
    const Way way = wayOf(look);
    const double head = blockHead(look, area, way);
    const bool upright = isUpright(way);
    const double length = upright ? area.height : area.width;
    const double thickness = upright ? area.width : area.height;
    const double edge = thickness * (1 - shaftPart) / 2;
    // Drawn pointing right from the origin, then turned.
    const std::array<Point, 7> outline = {{{0, edge},
                                           {length - head, edge},
                                           {length - head, 0},
                                           {length, thickness / 2},
                                           {length - head, thickness},
                                           {length - head, thickness - edge},
                                           {0, thickness - edge}}};
    cairo_matrix_t outside;
    cairo_get_matrix(context, &outside);
    cairo_translate(context, area.centerX(), area.centerY());
    cairo_rotate(context, static_cast<int>(way) * quarterTurn);
    cairo_translate(context, -length / 2, -thickness / 2);
    cairo_new_sub_path(context);
    for (const Point& point : outline)
        cairo_line_to(context, point.x, point.y);
    cairo_close_path(context);
    cairo_set_matrix(context, &outside);
}

Area blockArrowText(const CalloutLook& look, const Area& area) {
    const Way way = wayOf(look);
    // Text may reach into the head as far as the head is still as wide as the shaft.
    const double head = blockHead(look, area, way) * shaftPart;
    if (isUpright(way)) {
        const Area shaft = inset(area, area.width * (1 - shaftPart) / 2, 0);
        return {shaft.x, shaft.y + (way == Way::Up ? head : 0), shaft.width, shaft.height - head};
    }
    const Area shaft = inset(area, 0, area.height * (1 - shaftPart) / 2);
    return {shaft.x + (way == Way::Left ? head : 0), shaft.y, shaft.width - head, shaft.height};
}

} // namespace KestoRenderLib
