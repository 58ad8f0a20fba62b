// Points on ellipses, which circles, arcs and wedges consist of. At an angle in degrees a point's offsets from the
// centre are
//     truncToInt(cos(t) * rX + added),  truncToInt(sin(t) * rY + added),   t = HPGLradians(angle)
// with the C library's cosine and sine, to the last unit.
#pragma once

#include <cmath>
#include <cstdint>

#include "step_loop.h"

struct HPGLEllipse {
    double rX, rY;  // half axes in scaled plotter units, of either sign
    double added;   // to both offsets, before they are truncated
};

struct EllipseOffset {
    int32_t x, y;
};

EllipseOffset HPGLonEllipse(const HPGLEllipse& ellipse, double angle);

// A cosine and a sine.
struct EllipseDirection {
    double cosine, sine;
};

// A walk in equal turns has the same directions several times as fast, but for the last bits: it turns each by what it
// has seen to be the usual turn, and asks the C library only where another turn begins and for a new base now and then.
// One serves for a whole pass.
struct EllipseWalk {
    double last = 0.0;  // angle, degrees
    double turn = 0.0;  // the usual one, radians
    EllipseDirection byTurn = {1.0, 0.0};
    double base = 0.0;          // the angle of a direction from the C library, radians
    EllipseDirection now = {};  // some turns from there
    int32_t turnsLeft = 0;      // until the next base
};

// Cosine and sine of a walk are less than this off; it is nearly twice what they can be.
inline constexpr double HPGL_DOUBT = 0x1p-42;

inline constexpr int32_t HPGL_TURNS_FROM_A_BASE = 64;

inline EllipseDirection HPGLturned(EllipseDirection by, EllipseDirection from) {
    return {from.cosine * by.cosine - from.sine * by.sine, from.sine * by.cosine + from.cosine * by.sine};
}

// By what an angle in radians misses that of the usual turns: a small one, for which two terms of the series do, or one
// of up to HPGL_LARGEST_MISS.
inline constexpr double HPGL_SMALL_MISS = 2e-5;
inline constexpr double HPGL_LARGEST_MISS = 0.1;
EllipseDirection HPGLturnedByLargeMiss(double miss, EllipseDirection from);
inline EllipseDirection HPGLturnedByMiss(double miss, EllipseDirection from) {
    if (std::abs(miss) > HPGL_SMALL_MISS) return HPGLturnedByLargeMiss(miss, from);
    return HPGLturned({1.0 - 0.5 * miss * miss, miss}, from);
}

// The walk with a new base at an angle in degrees, to which the last change has led.
EllipseWalk HPGLnewBase(EllipseWalk walk, double angle, double change);

// The direction at an angle in degrees, whatever it is. A loop keeps the walk in a variable of its own, so that the
// next direction need not wait for this one to be stored.
inline EllipseDirection HPGLnextDirection(EllipseWalk* walk, double angle) {
    const double change = angle - walk->last;
    walk->last = angle;
    const int32_t turns = HPGL_TURNS_FROM_A_BASE + 1 - walk->turnsLeft;
    const double miss = HPGLradians(angle) - walk->base - turns * walk->turn;
    if (walk->turnsLeft == 0 || !(std::abs(miss) <= HPGL_LARGEST_MISS)) {
        *walk = HPGLnewBase(*walk, angle, change);
        return walk->now;
    }
    --walk->turnsLeft;
    walk->now = HPGLturned(walk->byTurn, walk->now);
    return HPGLturnedByMiss(miss, walk->now);
}

// The same point as HPGLonEllipse; direction is what the walk said at that angle.
EllipseOffset HPGLonEllipse(const HPGLEllipse& ellipse, double angle, EllipseDirection direction);
