// The arithmetic of the picture: 32-bit integers that wrap, division and conversion that truncate toward zero. Every
// coordinate goes through these, so that the same picture comes out on every machine and under the sanitizers.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "trace/wrapping.h"

// Truncates toward zero. A divisor of 0 is taken as 1: a window or a view without extent must not end the program.
inline int32_t truncDiv(int32_t a, int32_t b) {
    if (b == 0) return a;
    return b == -1 ? wrapSub(0, a) : a / b;
}

// A divisor that serves for many divisions, each then a multiplication with the same result as above. The half put on
// the dividend keeps every quotient at least half a divisor's part away from the next whole number, which is far more
// than the product can be wrong by.
struct Divisor {
    double reciprocal;
};
inline Divisor divisorOf(int32_t b) {
    return {1.0 / (b == 0 ? 1 : b)};
}
inline int32_t truncDiv(int32_t a, Divisor b) {
    return static_cast<int32_t>(static_cast<int64_t>((a + std::copysign(0.5, a)) * b.reciprocal));
}

// Truncates toward zero; what 32 bits cannot hold becomes the nearest number that they can, not-a-number 0. Of a
// double without a branch: points of an ellipse come with either sign.
inline int32_t truncToInt(double value) {
    constexpr double LEAST = std::numeric_limits<int32_t>::min();
    constexpr double MOST = std::numeric_limits<int32_t>::max();
    const double atLeast = value > LEAST ? value : LEAST;
    const double clamped = atLeast < MOST ? atLeast : MOST;
    return value == value ? static_cast<int32_t>(clamped) : 0;
}
inline int32_t truncToInt(float value) {
    if (value >= 2147483648.0F) return std::numeric_limits<int32_t>::max();
    if (value >= -2147483648.0F) return static_cast<int32_t>(value);
    return value != value ? 0 : std::numeric_limits<int32_t>::min();
}

// A coordinate parameter in scaled plotter units: multiplied in single precision, truncated.
inline int32_t scaleCoordinate(int32_t value, float factor) {
    return truncToInt(static_cast<float>(value) * factor);
}

// The nearest whole number, of a value within 2^51: where a double has no room for a fraction, addition rounds.
inline double nearestWhole(double value) {
    constexpr double NO_FRACTION = 0x1.8p52;
    return (value + NO_FRACTION) - NO_FRACTION;
}
