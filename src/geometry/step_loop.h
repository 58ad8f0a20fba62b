// The loops that turn circles, arcs and wedges into points, one point a step of the chord angle. Both passes share
// them, and with them the bounds that keep a hostile picture from running for ever.
#pragma once

#include <algorithm>
#include <cstdint>

inline constexpr double HPGL_DEFAULT_CHORD = 5.0;  // degrees
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION    // many small inputs find more than a few slow ones
inline constexpr int32_t HPGL_STEPS_PER_COMMAND = 2'000;
inline constexpr int32_t HPGL_STEPS_PER_PASS = 50'000;
#else
inline constexpr int32_t HPGL_STEPS_PER_COMMAND = 1'000'000;
inline constexpr int32_t HPGL_STEPS_PER_PASS = 50'000'000;
#endif
inline constexpr int32_t HPGL_STEPS_AFTERWARDS = 1'000;  // a command, once the pass has used its steps up

// Degrees in the data to radians, and back: the constants are short of full precision and kept so.
inline double HPGLradians(double degrees) {
    return degrees * 6.283184 / 360.0;
}
inline double HPGLdegrees(double radians) {
    return radians * 180.0 / 3.141592;
}

// What one pass may still do.
struct StepAllowance {
    int32_t left = HPGL_STEPS_PER_PASS;
};

// An angle in degrees; one that is not finite is taken as 0.
double HPGLusableAngle(float angle);

// The chord angle of a command, which has one or not: the default where it is 0, negative or not finite (with a warning
// that names the function), and where the pass has used its steps up.
double HPGLusableChord(const StepAllowance* allowance, bool given, float chord, const char* function);

// Writes the one warning that the pass has used its steps up.
void HPGLwarnStepsUsedUp(const char* function);

// Calls addPoint(angle) for `first` and then for every step until `last` has been passed (reaching it goes on). A step
// that does not change the angle ends the loop, and so do the bounds above. Angles in degrees; step is not 0.
template <class AddPoint>
void HPGLforEachStep(StepAllowance* allowance, const char* function, double first, double step, double last,
                     AddPoint addPoint) {
    const bool usedUp = allowance->left == 0;
    const int32_t most = usedUp ? HPGL_STEPS_AFTERWARDS : std::min(HPGL_STEPS_PER_COMMAND, allowance->left);
    int32_t steps = 0;
    for (double angle = first;;) {
        addPoint(angle);
        const double next = angle + step;
        if (++steps == most || next == angle) break;
        angle = next;
        if (step > 0 ? angle > last : angle < last) break;
    }
    if (usedUp) return;
    allowance->left -= steps;
    if (allowance->left == 0) HPGLwarnStepsUsedUp(function);
}
