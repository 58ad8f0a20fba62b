// Points on ellipses, which circles, arcs and wedges consist of. At an angle in degrees a point's offsets from the
// centre are
//     truncToInt(cos(t) * rX + added),  truncToInt(sin(t) * rY + added),   t = HPGLradians(angle)
// with the C library's cosine and sine, to the last unit. Angles are finite.
#pragma once

#include <cmath>
#include <cstdint>

struct HPGLEllipse {
    double rX, rY;  // half axes in scaled plotter units, of either sign
    double added;   // to both offsets, before they are truncated
};

struct EllipseOffset {
    int32_t x, y;
};

// The same at one angle and at many; together they take a fraction of the time.
EllipseOffset HPGLonEllipse(const HPGLEllipse& ellipse, double angle);
void HPGLonEllipse(const HPGLEllipse& ellipse, const double* angles, int32_t count, EllipseOffset* offsets);

// Angles in radians but for whole turns: each is taken from its distance to one before it, while that is short enough
// for a double to hold the sum.
struct FewTurns {
    double whole = 0.0;  // an angle
    double rest = 0.0;   // the same without its turns
};
inline constexpr double HPGL_FEW_TURNS = 256.0;  // radians
FewTurns HPGLfewTurnsAt(double t);

// At most HPGL_FEW_TURNS and half a turn, less than 2^-44 off.
inline double HPGLwithFewTurns(FewTurns* from, double t) {
    if (!(std::abs(t - from->whole) < HPGL_FEW_TURNS)) *from = HPGLfewTurnsAt(t);
    return from->rest + (t - from->whole);
}
