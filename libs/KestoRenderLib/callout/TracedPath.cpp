#include "KestoRenderLib/callout/TracedPath.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace KestoRenderLib {

namespace {

struct Point {
    double x = 0;
    double y = 0;
};

double distance(const Point& one, const Point& other) {
    return std::hypot(other.x - one.x, other.y - one.y);
}

/// Calls `onMove` and `onLine` for a path without curves; closing a part is a line back to its start.
void walk(const cairo_path_t& path, const std::function<void(const Point&)>& onMove,
          const std::function<void(const Point& from, const Point& to)>& onLine) {
    Point start;
    Point current;
    for (int index = 0; index < path.num_data; index += path.data[index].header.length) {
        const cairo_path_data_t* piece = path.data + index;
        const bool closes = piece->header.type == CAIRO_PATH_CLOSE_PATH;
        const Point target = closes ? start : Point{piece[1].point.x, piece[1].point.y};
        if (piece->header.type == CAIRO_PATH_MOVE_TO) {
            onMove(target);
            start = target;
        } else {
            onLine(current, target);
        }
        current = target;
    }
}

} // namespace

void tracePath(cairo_t* context, double progress) {
    if (progress >= 1)
        return;
    const CairoOwned<cairo_path_t> path(cairo_copy_path_flat(context));
    double length = 0;
    walk(
        *path, [](const Point&) {},
        [&](const Point& from, const Point& to) { length += distance(from, to); });
    double left = length * std::max(progress, 0.0);
    cairo_new_path(context);
    walk(
        *path,
        [&](const Point& point) {
            if (left > 0)
                cairo_move_to(context, point.x, point.y);
        },
        [&](const Point& from, const Point& to) {
            const double step = distance(from, to);
            if (!(left > 0) || !(step > 0))
                return;
            const double part = std::min(left / step, 1.0);
            cairo_line_to(context, from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part);
            left -= step;
        });
}

} // namespace KestoRenderLib
