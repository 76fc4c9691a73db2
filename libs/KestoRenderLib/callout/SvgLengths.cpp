#include "KestoRenderLib/callout/SvgLengths.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <optional>

namespace KestoRenderLib {

namespace {

/// Beyond it lengths would no longer be exact as decimal numbers.
constexpr double longest = 1e7;

constexpr std::string_view blanks = " \t\r\n,";

struct Point {
    double x = 0;
    double y = 0;
};

double distance(const Point& one, const Point& other) {
    return std::hypot(other.x - one.x, other.y - one.y);
}

/// Numbers of a path or list, with as little between them as SVG allows.
class Numbers {
public:
    explicit Numbers(std::string_view list)
        : text(list) {}

    std::optional<double> next() {
        skipBlanks();
        if (text.starts_with('+'))
            text.remove_prefix(1);
        double value = 0;
        const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || !std::isfinite(value))
            return std::nullopt;
        text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
        return value;
    }

    std::optional<Point> nextPoint() {
        const auto x = next();
        const auto y = x ? next() : std::nullopt;
        return y ? std::optional(Point{*x, *y}) : std::nullopt;
    }

    /// One character, for the letters of a path and the flags of an arc; 0 at the end.
    char nextLetter() {
        skipBlanks();
        if (text.empty())
            return 0;
        const char letter = text.front();
        text.remove_prefix(1);
        return letter;
    }

    bool isAtLetter() {
        skipBlanks();
        return text.empty() || (text.front() >= 'A' && text.front() != 'e' && text.front() != 'E');
    }

private:
    void skipBlanks() { text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size())); }

    std::string_view text;
};

/// A Bezier curve of third degree, along chords.
double curveLength(const Point& from, const std::array<Point, 3>& to) {
    constexpr int chords = 12;
    double length = 0;
    Point last = from;
    for (int chord = 1; chord <= chords; ++chord) {
        const double t = static_cast<double>(chord) / chords;
        const double s = 1 - t;
        const auto mix = [&](double a, double b, double c, double d) {
            return s * s * s * a + 3 * s * s * t * b + 3 * s * t * t * c + t * t * t * d;
        };
        const Point point = {mix(from.x, to[0].x, to[1].x, to[2].x), mix(from.y, to[0].y, to[1].y, to[2].y)};
        length += distance(last, point);
        last = point;
    }
    return length;
}

/// Reads the path data of SVG 1.1, 8.3, up to its first error, as a drawing of it does.
class PathLength {
public:
    explicit PathLength(std::string_view data)
        : numbers(data) {}

    double measure() {
        char command = 0;
        while (length < longest) {
            if (numbers.isAtLetter())
                command = numbers.nextLetter();
            if (command == 0 || !step(command))
                break;
            // More points after the first of a part are lines.
            command = command == 'M' ? 'L' : command == 'm' ? 'l' : command;
        }
        return length;
    }

private:
    bool step(char command) {
        isRelative = command >= 'a';
        switch (isRelative ? static_cast<char>(command - 'a' + 'A') : command) {
        case 'M':
            return move();
        case 'L':
        case 'T':
            return lineTo(point());
        case 'H':
        case 'V':
            return straight(command == 'H' || command == 'h');
        case 'C':
            return curve(2);
        case 'S':
        case 'Q':
            return curve(1);
        case 'A':
            return arc();
        case 'Z':
            (void)lineTo(start);
            return numbers.isAtLetter();
        default:
            return false;
        }
    }

    std::optional<Point> point() {
        auto read = numbers.nextPoint();
        if (read && isRelative)
            read = Point{read->x + current.x, read->y + current.y};
        return read;
    }

    bool move() {
        const auto to = point();
        if (to)
            start = current = *to;
        return to.has_value();
    }

    bool lineTo(const std::optional<Point>& to) {
        if (!to)
            return false;
        length += distance(current, *to);
        current = *to;
        return true;
    }

    bool straight(bool across) {
        const auto value = numbers.next();
        if (!value)
            return false;
        const double base = isRelative ? (across ? current.x : current.y) : 0;
        return lineTo(across ? Point{base + *value, current.y} : Point{current.x, base + *value});
    }

    /// With one point between the ends, it stands for both.
    bool curve(int between) {
        const auto first = point();
        const auto second = between == 2 ? point() : first;
        const auto end = point();
        if (!first || !second || !end)
            return false;
        length += curveLength(current, {*first, *second, *end});
        current = *end;
        return true;
    }

    /// As if it were half of a circle.
    bool arc() {
        const auto radii = numbers.nextPoint();
        const auto turn = radii ? numbers.next() : std::nullopt;
        if (!turn || numbers.nextLetter() == 0 || numbers.nextLetter() == 0)
            return false;
        const auto end = point();
        if (!end)
            return false;
        length += distance(current, *end) * std::numbers::pi / 2;
        current = *end;
        return true;
    }

    Numbers numbers;
    Point start;
    Point current;
    double length = 0;
    bool isRelative = false;
};

double pointsLength(std::string_view list, bool closes) {
    Numbers numbers(list);
    const auto first = numbers.nextPoint();
    double length = 0;
    auto last = first;
    for (auto next = first; next; next = numbers.nextPoint()) {
        length += distance(*last, *next);
        last = next;
    }
    return first && closes ? length + distance(*last, *first) : length;
}

double ellipseLength(double across, double down) {
    return std::numbers::pi * std::sqrt(2 * (across * across + down * down));
}

double lengthOf(std::string_view element, std::string_view attributes) {
    const auto number = [&](std::string_view name) {
        return Numbers(svgAttribute(attributes, name)).next().value_or(0);
    };
    if (element == "path")
        return PathLength(svgAttribute(attributes, "d")).measure();
    if (element == "polyline" || element == "polygon")
        return pointsLength(svgAttribute(attributes, "points"), element == "polygon");
    if (element == "line")
        return distance({number("x1"), number("y1")}, {number("x2"), number("y2")});
    if (element == "rect")
        return 2 * (std::abs(number("width")) + std::abs(number("height")));
    if (element == "circle")
        return ellipseLength(number("r"), number("r"));
    return element == "ellipse" ? ellipseLength(number("rx"), number("ry")) : 0;
}

} // namespace

std::string_view svgAttribute(std::string_view attributes, std::string_view name) {
    for (std::size_t at = attributes.find(name); at != attributes.npos; at = attributes.find(name, at + 1)) {
        const std::size_t equals = attributes.find_first_not_of(" \t\r\n", at + name.size());
        if (at == 0 || blanks.find(attributes[at - 1]) == blanks.npos || equals == attributes.npos ||
            attributes[equals] != '=')
            continue;
        const std::size_t open = attributes.find_first_of("\"'", equals);
        if (open == attributes.npos)
            return {};
        const std::size_t close = attributes.find(attributes[open], open + 1);
        return close == attributes.npos ? std::string_view() : attributes.substr(open + 1, close - open - 1);
    }
    return {};
}

double svgLength(std::string_view element, std::string_view attributes) {
    const double length = lengthOf(element, attributes);
    return std::isfinite(length) ? std::clamp(length, 0.0, longest) : 0;
}

} // namespace KestoRenderLib
