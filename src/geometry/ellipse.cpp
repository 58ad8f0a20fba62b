#include "geometry/ellipse.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

#include "geometry/arithmetic.h"
#include "geometry/step_loop.h"

namespace {

// ---- angles without their turns -------------------------------------------------------------------------------------

// A double is a whole number of 53 bits times a power of two. What the power is in turns, but for whole ones, is known
// to 128 bits, and the product wraps as angles do, so that no angle is too large for a multiplication.

using Wide = unsigned __int128;

constexpr int FRACTION_BITS = 52;
constexpr int EXPONENT_OFFSET = 1023 + FRACTION_BITS;
constexpr int LEAST_POWER = -127;          // a double of it is less than 2^-74 turns
constexpr double LARGEST_ANGLE = 0x1p124;  // radians; data has no angle of half as much

constexpr Wide wide(uint64_t high, uint64_t low) {
    return Wide{high} << 64 | low;
}

// 2^power radians without their whole turns, in units of 2^-128 turns.
Wide turnsOf(int power) {
    constexpr Wide digits = wide(0x28be60db9391054a, 0x7f09d5f47d4d3770);  // 1 / (2 pi)
    constexpr Wide next = wide(0x36d8a5664f10e410, 0x7f9458eaf7aef158);
    if (power <= 0) return digits >> -std::max(power, LEAST_POWER);
    return digits << power | next >> (128 - power);
}

// In units of 2^-64 turns.
uint64_t turnsIn(double t) {
    const auto bits = std::bit_cast<uint64_t>(std::abs(t));
    const uint64_t one = uint64_t{1} << FRACTION_BITS;
    const Wide each = turnsOf(static_cast<int>(bits >> FRACTION_BITS) - EXPONENT_OFFSET);
    const auto turns = static_cast<uint64_t>(((bits & (one - 1)) | one) * each >> 64);
    return t < 0 ? 0 - turns : turns;
}

constexpr double TURN = 2.0 * std::numbers::pi;

double withoutTurns(double t) {
    if (!(std::abs(t) < LARGEST_ANGLE)) return std::atan2(std::sin(t), std::cos(t));
    return static_cast<double>(static_cast<int64_t>(turnsIn(t))) * (TURN * 0x1p-64);
}

// ---- directions -----------------------------------------------------------------------------------------------------

struct Direction {
    double cosine, sine;
};

// Less than this off, about three times what it can be.
constexpr double DOUBT = 0x1p-42;

// Of an angle of few turns: by the series of a quarter of it, and twice the double angle. All without a branch, for the
// compiler makes vectors of it, and two terms at a time, which need not wait for each other.
Direction direction(double t) {
    const double turns = nearestWhole(t * (1.0 / TURN));
    const double a = (t - turns * TURN) * 0.25;
    const double s = a * a;
    const double q = s * s;
    const double cosine1 =
        (1.0 - s / 2) + q * ((1.0 / 24 - s * (1.0 / 720)) + q * ((1.0 / 40320 - s * (1.0 / 3628800)) +
                                                                 q * (1.0 / 479001600 - s * (1.0 / 87178291200))));
    const double sine1 =
        a * ((1.0 - s * (1.0 / 6)) +
             q * ((1.0 / 120 - s * (1.0 / 5040)) +
                  q * ((1.0 / 362880 - s * (1.0 / 39916800)) + q * (1.0 / 6227020800 - s * (1.0 / 1307674368000)))));
    const double cosine2 = 1.0 - 2.0 * sine1 * sine1;
    const double sine2 = 2.0 * sine1 * cosine1;
    return {1.0 - 2.0 * sine2 * sine2, 2.0 * sine2 * cosine2};
}

// ---- points ---------------------------------------------------------------------------------------------------------

EllipseOffset offsetIn(const HPGLEllipse& ellipse, Direction direction) {
    return {truncToInt(direction.cosine * ellipse.rX + ellipse.added),
            truncToInt(direction.sine * ellipse.rY + ellipse.added)};
}

// Well inside 32 bits.
constexpr double LARGEST_REACH = 2e9;

constexpr int32_t RUN = 128;

// Some points in the making. Each step is taken for all of them before the next, so that many are under way at a time.
struct Run {
    double angles[RUN];  // radians, of few turns
    double cosines[RUN], sines[RUN];
    double fromMiddle[RUN];  // of an offset, from the middle between two whole numbers; the larger of both
};

void findDirections(Run* run, const double* angles, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        run->angles[i] = HPGLradians(angles[i]);
    }
    FewTurns from;
    for (int32_t i = 0; i < count; ++i) {
        run->angles[i] = HPGLwithFewTurns(&from, run->angles[i]);
    }
    for (int32_t i = 0; i < count; ++i) {
        const Direction found = direction(run->angles[i]);
        run->cosines[i] = found.cosine;
        run->sines[i] = found.sine;
    }
}

double fromMiddle(double value, int32_t truncated) {
    return std::abs(std::abs(value - truncated) - 0.5);
}

void findOffsets(Run* run, const HPGLEllipse& ellipse, int32_t count, EllipseOffset* offsets) {
    const HPGLEllipse e = ellipse;  // of its own: no offset written can change it
    for (int32_t i = 0; i < count; ++i) {
        const double x = run->cosines[i] * e.rX + e.added;
        const double y = run->sines[i] * e.rY + e.added;
        offsets[i] = {static_cast<int32_t>(x), static_cast<int32_t>(y)};
        const double fromX = fromMiddle(x, offsets[i].x);
        const double fromY = fromMiddle(y, offsets[i].y);
        run->fromMiddle[i] = fromX > fromY ? fromX : fromY;
    }
}

// Truncation, like each step before it, never turns an order round, so what the least and the greatest possible
// direction agree on is what the true one gives.
EllipseOffset offsetAt(const HPGLEllipse& ellipse, double angle, Direction near) {
    const EllipseOffset least = offsetIn(ellipse, {near.cosine - DOUBT, near.sine - DOUBT});
    const EllipseOffset most = offsetIn(ellipse, {near.cosine + DOUBT, near.sine + DOUBT});
    if (least.x == most.x && least.y == most.y) return least;
    return HPGLonEllipse(ellipse, angle);
}

// Most points lie well between two whole numbers and are certain. Of the others those of huge ellipses often are.
void findRun(const HPGLEllipse& ellipse, const double* angles, int32_t count, EllipseOffset* offsets) {
    Run run;
    findDirections(&run, angles, count);
    const double reach = std::abs(ellipse.rX) + std::abs(ellipse.rY) + std::abs(ellipse.added);  // or not a number
    const double certain = reach < LARGEST_REACH ? 0.5 - 2.0 * DOUBT * reach : 0.0;              // 0: none is
    if (certain > 0.0) findOffsets(&run, ellipse, count, offsets);
    for (int32_t i = 0; i < count; ++i) {
        if (certain > 0.0 && run.fromMiddle[i] < certain) continue;
        offsets[i] = offsetAt(ellipse, angles[i], {run.cosines[i], run.sines[i]});
    }
}

}  // namespace

FewTurns HPGLfewTurnsAt(double t) {
    return {t, withoutTurns(t)};
}

EllipseOffset HPGLonEllipse(const HPGLEllipse& ellipse, double angle) {
    const double t = HPGLradians(angle);
    return offsetIn(ellipse, {std::cos(t), std::sin(t)});
}

void HPGLonEllipse(const HPGLEllipse& ellipse, const double* angles, int32_t count, EllipseOffset* offsets) {
    for (int32_t done = 0; done < count; done += RUN) {
        findRun(ellipse, angles + done, std::min(RUN, count - done), offsets + done);
    }
}
