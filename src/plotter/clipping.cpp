#include "plotter/clipping.h"

#include <array>
#include <utility>

namespace plotter {

namespace {

// Where between them, from 0 to 1, a coordinate that goes from a to b is at the limit. Halves, because the difference
// of two doubles may be none.
double shareAt(double a, double b, double limit) {
    return std::clamp((limit / 2 - a / 2) / (b / 2 - a / 2), 0.0, 1.0);
}

// Which is the same, bit for bit, from either end.
Point between(Point a, Point b, double Point::*coordinate, double limit) {
    if (a.*coordinate > b.*coordinate) std::swap(a, b);
    const double share = shareAt(a.*coordinate, b.*coordinate, limit);
    Point p = {a.x * (1 - share) + b.x * share, a.y * (1 - share) + b.y * share};
    p.*coordinate = limit;
    return p;
}

std::array<Side, 4> sidesOf(const Box& box) {
    return {Side{&Point::x, box.low.x, false}, Side{&Point::x, box.high.x, true}, Side{&Point::y, box.low.y, false},
            Side{&Point::y, box.high.y, true}};
}

bool areInRow(Point a, Point b, Point c) {
    return (a.x == b.x && b.x == c.x) || (a.y == b.y && b.y == c.y);
}

// Of three in a row along an axis the one in the middle goes. Cuts leave many of them, and what runs to and fro there
// has no area.
void addTo(Ring& ring, Point p) {
    while (ring.size() >= 2 && areInRow(ring[ring.size() - 2], ring.back(), p))
        ring.pop_back();
    if (ring.empty() || ring.back() != p) ring.push_back(p);
}

bool allHeld(const Ring& ring, const Side& side) {
    return std::ranges::all_of(ring, [&side](Point p) { return side.holds(p); });
}

// What is inside of a line, built up point by point.
class Pieces {
  public:
    explicit Pieces(const LineTaker& taker) : taker_(taker) {}
    Pieces(const Pieces&) = delete;
    Pieces& operator=(const Pieces&) = delete;
    ~Pieces() { end(); }

    void add(Point from, Point to) {
        if (piece_.empty() || piece_.back() != from) {
            end();
            piece_.push_back(from);
        }
        piece_.push_back(to);
    }
    void end() {
        if (!piece_.empty()) taker_(piece_);
        piece_.clear();
    }

  private:
    LineTaker taker_;
    Line piece_;
};

}  // namespace

bool clipSegment(Point& a, Point& b, const Box& box) {
    if (box.holds(a) && box.holds(b)) return true;
    for (const Side& side : sidesOf(box)) {
        const bool holdsA = side.holds(a);
        const bool holdsB = side.holds(b);
        if (!holdsA && !holdsB) return false;
        if (!holdsA) a = between(a, b, side.coordinate, side.limit);
        if (!holdsB) b = between(a, b, side.coordinate, side.limit);
    }
    return box.holds(a) && box.holds(b);
}

void clipLine(std::span<const Point> points, const Box& box, const LineTaker& taker) {
    if (points.empty()) return;
    if (std::ranges::all_of(points, [&box](Point p) { return box.holds(p); })) {
        taker(points);
        return;
    }
    Pieces pieces(taker);
    for (std::size_t i = 1; i < points.size(); ++i) {
        Point from = points[i - 1];
        Point to = points[i];
        const bool wasDot = from == to;
        if (clipSegment(from, to, box) && (wasDot || from != to)) pieces.add(from, to);
    }
}

Ring clipRing(const Ring& ring, const Side& side) {
    if (allHeld(ring, side)) return ring;
    Ring kept;
    if (ring.empty()) return kept;
    Point from = ring.back();
    for (const Point to : ring) {
        if (side.holds(from) != side.holds(to)) addTo(kept, between(from, to, side.coordinate, side.limit));
        if (side.holds(to)) addTo(kept, to);
        from = to;
    }
    const bool flat = std::ranges::all_of(kept, [&side](Point p) { return p.*side.coordinate == side.limit; });
    if (kept.size() < 3 || flat) kept.clear();
    return kept;
}

Area clipArea(const Area& area, const Box& box) {
    Area kept;
    for (const Ring& ring : area) {
        Ring inside = ring;
        for (const Side& side : sidesOf(box)) {
            inside = clipRing(inside, side);
        }
        if (!inside.empty()) kept.push_back(std::move(inside));
    }
    return kept;
}

}  // namespace plotter
