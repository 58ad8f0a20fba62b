#include "plotter/curves.h"

#include <numbers>

#include "plotter/instructions.h"
#include "plotter/vectors.h"

namespace plotter {

namespace {

constexpr double RADIAN = std::numbers::pi / 180;
constexpr double COARSE_CHORD = 45;      // degrees
constexpr double DEFAULT_CHORD = 5;      // degrees
constexpr double DEFAULT_DEVIATION = 5;  // user units, after CT1
constexpr double LEAST_CHORD = 0.5;      // degrees: 720 points a turn
// In the first pass, which wants extents alone: a sixth of a thousandth of the radius is not seen.
constexpr double MEASURING_CHORD = 2;  // degrees
constexpr int MOST_CURVE_STEPS = 256;

Point onCircle(Point centre, double radius, double degrees) {
    // Multiples of a quarter turn come out exact.
    const double turn = std::fmod(degrees, 360);
    double c = std::cos(turn * RADIAN);
    double s = std::sin(turn * RADIAN);
    if (std::fmod(turn, 90) == 0) {
        c = std::round(c);
        s = std::round(s);
    }
    return {centre.x + radius * c, centre.y + radius * s};
}

double angleOf(Point p) {
    return std::atan2(p.y, p.x) / RADIAN;
}

// The chord that gives so much deviation.
double chordByDeviation(double radius, double deviation) {
    const double ratio = std::abs(deviation / radius);
    if (!(ratio > 0)) return DEFAULT_CHORD;
    return ratio >= 2 ? 180 : 2 * std::acos(1 - ratio) / RADIAN;
}

double smoothChord(const Machine& machine, double radiusUnits) {
    // Where curves have taken much of what may be drawn, the rest of them make do with less.
    constexpr double SCARCE = 0.25;
    constexpr double NEARLY_NONE = 0.75;
    if (machine.share() >= 1) return 360;
    if (machine.share() > NEARLY_NONE) return COARSE_CHORD;
    if (machine.share() > SCARCE) return DEFAULT_CHORD;
    if (machine.tolerance() <= 0) return MEASURING_CHORD;
    if (!(radiusUnits > machine.tolerance())) return LEAST_CHORD;
    return std::max(LEAST_CHORD, std::min(DEFAULT_CHORD, chordByDeviation(radiusUnits, machine.tolerance())));
}

double largestFactor(const Affine& map) {
    return std::max(std::hypot(map.xx, map.yx), std::hypot(map.xy, map.yy));
}

// An arc that begins at the pen: the pen goes along it when it is down, else straight to its end.
void followArc(Machine& machine, const Instruction& instruction, std::size_t chordIndex, Point centre, Point start,
               double sweep) {
    State& state = machine.state;
    const Affine map = state.coordinates.toUnits();
    const double radius = length(start - centre);
    const double first = angleOf(start - centre);
    // More than a turn goes once around, and then to its end.
    const double shown = std::abs(sweep) > 360 ? std::copysign(360 + std::fmod(std::abs(sweep), 360), sweep) : sweep;
    const Point end = onCircle(centre, radius, first + shown);
    Path path(machine);
    if (state.penDown && sweep != 0 && radius > 0) {
        Line points;
        appendArc(map, centre, radius, first, shown, chordsOf(machine, instruction, chordIndex, radius, shown), points);
        points.pop_back();
        for (const Point point : points) {
            path.goTo(point);
        }
    }
    path.goTo(map(end));
    path.flush();
    state.carriage = state.position;
}

Point penInUserUnits(const State& state) {
    return inverse(state.coordinates.toUnits())(state.position);
}

struct Circle {
    Point centre;
    double radius = 0;
};

// Through three points that are not in a line.
Circle circumscribed(Point a, Point b, Point c) {
    const Point u = b - a;
    const Point v = c - a;
    const double d = 2 * (u.x * v.y - u.y * v.x);
    const double uu = u.x * u.x + u.y * u.y;
    const double vv = v.x * v.x + v.y * v.y;
    const Point offset = {(v.y * uu - u.y * vv) / d, (u.x * vv - v.x * uu) / d};
    return {a + offset, length(offset)};
}

// Where a map there and back makes the difference.
bool isSame(Point a, Point b) {
    constexpr double SHARE = 1e-9;
    return length(a - b) <= SHARE * (length(a) + length(b));
}

bool collinear(Point a, Point b, Point c) {
    const Point u = b - a;
    const Point v = c - a;
    return std::abs(u.x * v.y - u.y * v.x) <= 1e-9 * length(u) * length(v);
}

void goStraight(Machine& machine, std::initializer_list<Point> user) {
    const Affine map = machine.state.coordinates.toUnits();
    Path path(machine);
    for (const Point point : user) {
        path.goTo(map(point));
    }
    path.flush();
    machine.state.carriage = machine.state.position;
}

bool isBetween(Point a, Point between, Point b) {
    const Point u = b - a;
    const Point v = between - a;
    const double along = u.x * v.x + u.y * v.y;
    return along >= 0 && along <= u.x * u.x + u.y * u.y;
}

void followThreePoints(Machine& machine, const Instruction& instruction, Point start, Point middle, Point end) {
    if (isSame(start, end) && !isSame(middle, start)) {
        const Point centre = (start + middle) * 0.5;
        followArc(machine, instruction, 4, centre, start, 360);
    } else if (isSame(middle, start) || isSame(middle, end)) {
        goStraight(machine, {end});
    } else if (collinear(start, middle, end)) {
        if (isBetween(start, middle, end)) {
            goStraight(machine, {end});
        } else {
            goStraight(machine, {middle, end});
        }
    } else {
        const Circle circle = circumscribed(start, middle, end);
        const auto turn = [&](Point p) {
            const double angle = angleOf(p - circle.centre) - angleOf(start - circle.centre);
            return angle < 0 ? angle + 360 : angle;
        };
        const double toEnd = turn(end);
        const double sweep = turn(middle) < toEnd ? toEnd : toEnd - 360;
        followArc(machine, instruction, 4, circle.centre, start, sweep);
        machine.state.position = machine.state.coordinates.toUnits()(end);
        machine.state.carriage = machine.state.position;
    }
}

Point cubic(const Point (&p)[4], double t) {
    const double u = 1 - t;
    return p[0] * (u * u * u) + p[1] * (3 * t * u * u) + p[2] * (3 * t * t * u) + p[3] * (t * t * t);
}

// So many steps that the chords stay within the deviation.
int curveSteps(const Point (&p)[4], double deviation) {
    const double bend = std::max(length(p[0] - p[1] * 2 + p[2]), length(p[1] - p[2] * 2 + p[3]));
    const double steps = std::ceil(std::sqrt(0.75 * bend / deviation));
    return steps < MOST_CURVE_STEPS ? std::max(1, static_cast<int>(steps)) : MOST_CURVE_STEPS;
}

void bezier(Machine& machine, const Instruction& instruction, bool relative) {
    State& state = machine.state;
    const Affine map = state.coordinates.toUnits();
    const auto& n = instruction.numbers;
    const double deviation = machine.tolerance() > 0 ? std::min(machine.tolerance(), 1.0) : 0.01;
    Path path(machine);
    for (std::size_t i = 0; i + 5 < n.size() && !state.lost; i += 6) {
        Point p[4] = {state.position};
        for (std::size_t k = 0; k < 3; ++k) {
            const Point given = {n[i + 2 * k], n[i + 2 * k + 1]};
            p[k + 1] = relative ? p[0] + linear(map, given) : map(given);
        }
        if (state.penDown) {
            const int steps = curveSteps(p, deviation);
            for (int step = 1; step < steps; ++step) {
                path.goTo(cubic(p, static_cast<double>(step) / steps));
            }
        }
        path.goTo(p[3]);
    }
    path.flush();
    state.carriage = state.position;
}

}  // namespace

int chordsOf(const Machine& machine, const Instruction& instruction, std::size_t chordIndex, double radius,
             double sweep) {
    const State& state = machine.state;
    const double radiusUnits = std::abs(radius) * largestFactor(state.coordinates.toUnits());
    double chord = 0;
    if (state.chordByDeviation) {
        const double deviation = instruction.number(chordIndex, DEFAULT_DEVIATION);
        chord = chordByDeviation(radius, deviation);
    } else {
        const bool fitted = state.lineTypes.choice.type < 0;  // each chord gets a pattern of its own
        chord = std::fmod(std::abs(instruction.number(chordIndex, 0)), 360);
        if (chord > 180) chord = 360 - chord;
        const bool coarse = chord > DEFAULT_CHORD;
        if (!coarse) chord = fitted ? DEFAULT_CHORD : smoothChord(machine, radiusUnits);
    }
    if (!(chord >= LEAST_CHORD)) chord = LEAST_CHORD;
    // A little is forgiven, so that 360 degrees of 5 are 72 chords whatever was computed before.
    const double chords = std::ceil(std::abs(sweep) / chord - 1e-9);
    return chords >= 1 ? static_cast<int>(std::min(chords, 1000.0)) : 1;
}

// Most points are the one before, turned; now and then one is computed anew, so that no error gathers.
void appendArc(const Affine& map, Point centre, double radius, double start, double sweep, int chords, Line& line) {
    constexpr int BETWEEN_EXACT = 32;
    const double step = sweep / chords * RADIAN;
    const double c = std::cos(step);
    const double s = std::sin(step);
    Point arm;
    for (int i = 1; i <= chords; ++i) {
        if (i % BETWEEN_EXACT == 1 || i == chords) {
            arm = onCircle({}, radius, start + sweep * i / chords);
        } else {
            arm = {arm.x * c - arm.y * s, arm.x * s + arm.y * c};
        }
        line.push_back(map(centre + arm));
    }
}

void arcAbsolute(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(3)) return;
    const Point centre = {instruction.numbers[0], instruction.numbers[1]};
    followArc(machine, instruction, 3, centre, penInUserUnits(machine.state), instruction.numbers[2]);
}

void arcRelative(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(3)) return;
    const Point start = penInUserUnits(machine.state);
    const Point centre = start + Point{instruction.numbers[0], instruction.numbers[1]};
    followArc(machine, instruction, 3, centre, start, instruction.numbers[2]);
}

void threePointsAbsolute(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(4)) return;
    const auto& n = instruction.numbers;
    followThreePoints(machine, instruction, penInUserUnits(machine.state), {n[0], n[1]}, {n[2], n[3]});
}

void threePointsRelative(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(4)) return;
    const auto& n = instruction.numbers;
    const Point start = penInUserUnits(machine.state);
    followThreePoints(machine, instruction, start, start + Point{n[0], n[1]}, start + Point{n[2], n[3]});
}

void bezierAbsolute(Machine& machine, const Instruction& instruction) {
    bezier(machine, instruction, false);
}

void bezierRelative(Machine& machine, const Instruction& instruction) {
    bezier(machine, instruction, true);
}

void chordTolerance(Machine& machine, const Instruction& instruction) {
    machine.state.chordByDeviation = toInteger(instruction.number(0, 0)) == 1;
}

}  // namespace plotter
