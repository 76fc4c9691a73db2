#pragma once

#include "platform/KestoMediaGeometry.h"

#include <cmath>

namespace KestoRenderLib {

/// A map of the plane, x to the right and y downwards:
///     x' = xx * x + xy * y + dx
///     y' = yx * x + yy * y + dy
struct Affine {
    double xx = 1;
    double yx = 0;
    double xy = 0;
    double yy = 1;
    double dx = 0;
    double dy = 0;

    static Affine translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
    static Affine scaling(double x, double y) { return {x, 0, 0, y, 0, 0}; }
    /// The part of a matrix that shows in the plane z = 0.
    static Affine inPlane(const KestoMediaLib::TransformMatrix& matrix) {
        return {matrix.at(0, 0), matrix.at(1, 0), matrix.at(0, 1),
                matrix.at(1, 1), matrix.at(0, 3), matrix.at(1, 3)};
    }

    double mapX(double x, double y) const { return xx * x + xy * y + dx; }
    double mapY(double x, double y) const { return yx * x + yy * y + dy; }

    /// Lengths of what a step of 1 along x, or y, becomes.
    double lengthAcross() const { return std::hypot(xx, yx); }
    double lengthDown() const { return std::hypot(xy, yy); }

    bool isFinite() const {
        return std::isfinite(xx) && std::isfinite(yx) && std::isfinite(xy) && std::isfinite(yy) &&
               std::isfinite(dx) && std::isfinite(dy);
    }

    friend bool operator==(const Affine&, const Affine&) = default;
};

/// First `inner`, then `outer`.
inline Affine operator*(const Affine& outer, const Affine& inner) {
    return {outer.xx * inner.xx + outer.xy * inner.yx,
            outer.yx * inner.xx + outer.yy * inner.yx,
            outer.xx * inner.xy + outer.xy * inner.yy,
            outer.yx * inner.xy + outer.yy * inner.yy,
            outer.mapX(inner.dx, inner.dy),
            outer.mapY(inner.dx, inner.dy)};
}

} // namespace KestoRenderLib
