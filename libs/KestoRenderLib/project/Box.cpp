#include "KestoRenderLib/project/Box.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace KestoRenderLib {

namespace {

constexpr double farthest = 1 << 30; // differences of two such edges are still integers

bool isFinite(const Box& box) {
    return std::isfinite(box.left) && std::isfinite(box.top) && std::isfinite(box.right) &&
           std::isfinite(box.bottom);
}

int wholeEdge(double edge) {
    return static_cast<int>(std::clamp(edge, -farthest, farthest));
}

} // namespace

Rect intersection(const Rect& one, const Rect& other) {
    const Rect both(std::max(one.left, other.left), std::max(one.top, other.top),
                    std::min(one.right, other.right), std::min(one.bottom, other.bottom));
    return isEmpty(both) ? Rect() : both;
}

Box boundsOf(const Box& box, const Affine& map) {
    const auto x = {map.mapX(box.left, box.top), map.mapX(box.right, box.top), map.mapX(box.left, box.bottom),
                    map.mapX(box.right, box.bottom)};
    const auto y = {map.mapY(box.left, box.top), map.mapY(box.right, box.top), map.mapY(box.left, box.bottom),
                    map.mapY(box.right, box.bottom)};
    return {std::min(x), std::min(y), std::max(x), std::max(y)};
}

Rect touchedPixels(const Box& box) {
    if (!isFinite(box))
        return {};
    return {wholeEdge(std::floor(box.left)), wholeEdge(std::floor(box.top)), wholeEdge(std::ceil(box.right)),
            wholeEdge(std::ceil(box.bottom))};
}

Rect nearestPixels(const Box& box) {
    if (!isFinite(box))
        return {};
    return {wholeEdge(std::floor(box.left + 0.5)), wholeEdge(std::floor(box.top + 0.5)),
            wholeEdge(std::floor(box.right + 0.5)), wholeEdge(std::floor(box.bottom + 0.5))};
}

} // namespace KestoRenderLib
