#pragma once

#include "platform/Export.h"

#include <array>
#include <cmath>
#include <numbers>

namespace KestoMediaLib {

/// A place in canvas space: x to the right and y downwards, in pixels.
struct KESTO_EXPORT Point {
    Point() = default;
    Point(double horizontal, double vertical, double depth)
        : x(horizontal)
        , y(vertical)
        , z(depth) {}

    friend Point operator-(const Point& left, const Point& right) {
        return {left.x - right.x, left.y - right.y, left.z - right.z};
    }

    double x = 0;
    double y = 0;
    double z = 0;
};

/// A 4 by 4 matrix over column vectors: `(a * b) * p` is `a * (b * p)`. The identity at first.
class KESTO_EXPORT TransformMatrix {
public:
    static TransformMatrix scale(double x, double y, double z) {
        TransformMatrix result;
        result.rows[0][0] = x;
        result.rows[1][1] = y;
        result.rows[2][2] = z;
        return result;
    }

    static TransformMatrix translate(const Point& by) {
        TransformMatrix result;
        result.rows[0][3] = by.x;
        result.rows[1][3] = by.y;
        result.rows[2][3] = by.z;
        return result;
    }

    /// About the origin, clockwise as seen with y downwards. Exact for quarter turns.
    static TransformMatrix rotate(double degrees) {
        const double turn = std::remainder(degrees, 360);
        const double radians = turn * (std::numbers::pi / 180);
        const bool upright = std::remainder(turn, 180) == 0;
        const bool sideways = !upright && std::remainder(turn, 90) == 0;
        const double sine = upright ? 0 : std::sin(radians);
        const double cosine = sideways ? 0 : std::cos(radians);
        TransformMatrix result;
        result.rows[0][0] = cosine;
        result.rows[0][1] = -sine;
        result.rows[1][0] = sine;
        result.rows[1][1] = cosine;
        return result;
    }

    double at(int row, int column) const {
        return rows[static_cast<unsigned>(row)][static_cast<unsigned>(column)];
    }

    friend Point operator*(const TransformMatrix& matrix, const Point& point) {
        const auto component = [&](unsigned row) {
            const auto& r = matrix.rows[row];
            return r[0] * point.x + r[1] * point.y + r[2] * point.z + r[3];
        };
        return {component(0), component(1), component(2)};
    }

    friend TransformMatrix operator*(const TransformMatrix& left, const TransformMatrix& right) {
        TransformMatrix result;
        for (unsigned row = 0; row < 4; ++row)
            for (unsigned column = 0; column < 4; ++column) {
                double sum = 0;
                for (unsigned k = 0; k < 4; ++k)
                    sum += left.rows[row][k] * right.rows[k][column];
                result.rows[row][column] = sum;
            }
        return result;
    }

    friend bool operator==(const TransformMatrix&, const TransformMatrix&) = default;

private:
    std::array<std::array<double, 4>, 4> rows{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
};

} // namespace KestoMediaLib
