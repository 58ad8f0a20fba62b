// Points and areas of the plane that the plotter draws on. A number is a plotter unit (0.025 mm) unless its name says
// otherwise; x to the right, y up.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace plotter {

struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

inline Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
inline Point operator*(Point a, double factor) {
    return {a.x * factor, a.y * factor};
}
inline double length(Point a) {
    return std::hypot(a.x, a.y);
}

// The smallest rectangle around what was added; nothing was while it is empty.
struct Box {
    Point low = {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    Point high = {-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

    bool empty() const { return low.x > high.x || low.y > high.y; }
    double width() const { return empty() ? 0 : high.x - low.x; }
    double height() const { return empty() ? 0 : high.y - low.y; }
    bool holds(Point p) const { return p.x >= low.x && p.x <= high.x && p.y >= low.y && p.y <= high.y; }
    void add(Point p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    friend bool operator==(const Box&, const Box&) = default;
};

// Whether neither coordinate is larger, and both are numbers.
inline bool isWithin(Point p, double limit) {
    return std::abs(p.x) <= limit && std::abs(p.y) <= limit;
}

// (x, y) goes to (xx x + xy y + dx, yx x + yy y + dy).
struct Affine {
    double xx = 1, xy = 0, dx = 0;
    double yx = 0, yy = 1, dy = 0;

    Point operator()(Point p) const { return {xx * p.x + xy * p.y + dx, yx * p.x + yy * p.y + dy}; }
    friend bool operator==(const Affine&, const Affine&) = default;
};

// Where the map brings a distance, which has no place.
inline Point linear(const Affine& map, Point p) {
    return {map.xx * p.x + map.xy * p.y, map.yx * p.x + map.yy * p.y};
}

using Line = std::vector<Point>;  // points joined in turn; a single one is a dot
using Ring = std::vector<Point>;  // closed: the last point is joined to the first, whether or not they are the same
using Area = std::vector<Ring>;   // what its rings enclose, by the rule that goes with it

// Around several of them, and how many points they have in all.
inline Box boxOf(const std::vector<Line>& lines) {
    Box box;
    for (const Line& line : lines) {
        for (const Point p : line) {
            box.add(p);
        }
    }
    return box;
}
inline std::size_t pointsOf(const std::vector<Line>& lines) {
    std::size_t points = 0;
    for (const Line& line : lines) {
        points += line.size();
    }
    return points;
}

enum class FillRule { EvenOdd, Winding };

}  // namespace plotter
