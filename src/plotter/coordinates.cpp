#include "plotter/coordinates.h"

#include <array>

#include "plotter/units.h"

namespace plotter {

namespace {

// What a printer draws beyond its frame.
constexpr double FRAME_MARGIN = UNITS_PER_DOT;

// Corners on the paper of a pen plotter with automatic paper feed, and the clip of a later plotter; plotter units.
constexpr std::array<Point, 2> PEN_PLOTTER_A3 = {Point{380, 430}, Point{15580, 10430}};
constexpr std::array<Point, 2> PEN_PLOTTER_A4 = {Point{430, 200}, Point{10430, 7400}};
constexpr Point CLIP_A3 = {15970, 10870};
constexpr Point CLIP_A4 = {10870, 7600};

struct Axis {
    double factor, shift;
};

Axis anisotropic(double p1, double p2, double from, double to) {
    const double factor = (p2 - p1) / (to - from);
    return {factor, p1 - from * factor};
}

Axis isotropic(double p1, double from, double to, double own, double both, double share) {
    const double factor = own < 0 ? -both : both;
    const double free = (std::abs(own) - both) * (to - from) * share / 100;
    return {factor, p1 + (own < 0 ? -free : free) - from * factor};
}

}  // namespace

Affine Coordinates::toUnits() const {
    const Scaling& s = scaling;
    if (s.type == Scaling::Type::Off) return {};
    if (s.type == Scaling::Type::PointFactor) {
        // User units of a size of their own: the frame's factors do not hold for them.
        const double x = s.x2 / frame.scaleX;
        const double y = s.y2 / frame.scaleY;
        return {x, 0, p1.x - s.x1 * x, 0, y, p1.y - s.y1 * y};
    }
    Axis x = anisotropic(p1.x, p2.x, s.x1, s.x2);
    Axis y = anisotropic(p1.y, p2.y, s.y1, s.y2);
    if (s.type == Scaling::Type::Isotropic) {
        const double both = std::min(std::abs(x.factor), std::abs(y.factor));
        x = isotropic(p1.x, s.x1, s.x2, x.factor, both, s.left);
        y = isotropic(p1.y, s.y1, s.y2, y.factor, both, s.bottom);
    }
    return {x.factor, 0, x.shift, 0, y.factor, y.shift};
}

Affine Coordinates::toPaper() const {
    const Point page = frame.size.value_or(Point{0, 0});
    Affine turn;
    switch (rotation) {
        case 1:
            turn = {0, -1, page.x, 1, 0, 0};
            break;
        case 2:
            turn = {-1, 0, page.x, 0, -1, page.y};
            break;
        case 3:
            turn = {0, 1, 0, -1, 0, page.y};
            break;
        default:
            break;
    }
    return {turn.xx * frame.scaleX, turn.xy * frame.scaleX, turn.dx * frame.scaleX + frame.corner.x,
            turn.yx * frame.scaleY, turn.yy * frame.scaleY, turn.dy * frame.scaleY + frame.corner.y};
}

std::optional<Box> Coordinates::clip() const {
    if (!frame.size || !frame.clips) return window;
    Point edge = *frame.size;
    if (rotation % 2 != 0) std::swap(edge.x, edge.y);
    Box seen = {{-FRAME_MARGIN, -FRAME_MARGIN}, {edge.x + FRAME_MARGIN, edge.y + FRAME_MARGIN}};
    if (window) {
        seen.low = {std::max(seen.low.x, window->low.x), std::max(seen.low.y, window->low.y)};
        seen.high = {std::min(seen.high.x, window->high.x), std::min(seen.high.y, window->high.y)};
    }
    return seen;
}

Point Coordinates::room(bool large) const {
    Point edge = switchedLarge.value_or(large) ? CLIP_A3 : CLIP_A4;
    if (sheet) edge = *sheet;
    if (frame.size) edge = *frame.size;
    if (rotation % 2 != 0) std::swap(edge.x, edge.y);
    return edge;
}

void setDefaultCorners(Coordinates& coordinates, bool hpgl2, bool large) {
    if (hpgl2 || coordinates.frame.size || coordinates.sheet) {
        coordinates.p1 = {};
        coordinates.p2 = coordinates.room(large);
        return;
    }
    const auto& corners = coordinates.switchedLarge.value_or(true) ? PEN_PLOTTER_A3 : PEN_PLOTTER_A4;
    coordinates.p1 = corners[0];
    coordinates.p2 = corners[1];
    if (coordinates.rotation % 2 == 0) return;
    std::swap(coordinates.p1.x, coordinates.p1.y);
    std::swap(coordinates.p2.x, coordinates.p2.y);
}

Affine inverse(const Affine& map) {
    const double determinant = map.xx * map.yy - map.xy * map.yx;
    if (determinant == 0 || !std::isfinite(determinant)) return {};
    const Affine back = {map.yy / determinant,  -map.xy / determinant, 0,
                         -map.yx / determinant, map.xx / determinant,  0};
    const Point origin = linear(back, {map.dx, map.dy});
    return {back.xx, back.xy, -origin.x, back.yx, back.yy, -origin.y};
}

}  // namespace plotter
