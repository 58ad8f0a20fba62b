#include "ellipse.h"

#include <cmath>

#include "arithmetic.h"

namespace {

// Beyond this turn, in radians, a difference of two angles is not exact enough.
constexpr double LARGEST_TURN = 16.0;

// Well inside 32 bits.
constexpr double LARGEST_REACH = 2e9;

using Direction = EllipseDirection;

// By its series, for up to HPGL_LARGEST_MISS.
Direction smallDirection(double angle) {
    const double s = angle * angle;
    return {1.0 + s * (-1.0 / 2 + s * (1.0 / 24 + s * (-1.0 / 720 + s * (1.0 / 40320)))),
            angle * (1.0 + s * (-1.0 / 6 + s * (1.0 / 120 + s * (-1.0 / 5040))))};
}

Direction directionOf(double t) {
    return {std::cos(t), std::sin(t)};
}

EllipseOffset offsetIn(const HPGLEllipse& ellipse, Direction direction) {
    return {truncToInt(direction.cosine * ellipse.rX + ellipse.added),
            truncToInt(direction.sine * ellipse.rY + ellipse.added)};
}

}  // namespace

EllipseOffset HPGLonEllipse(const HPGLEllipse& ellipse, double angle) {
    return offsetIn(ellipse, directionOf(HPGLradians(angle)));
}

EllipseDirection HPGLturnedByLargeMiss(double miss, EllipseDirection from) {
    return HPGLturned(smallDirection(miss), from);
}

EllipseWalk HPGLnewBase(EllipseWalk walk, double angle, double change) {
    const double turn = HPGLradians(change);
    const bool isUsual = std::abs(turn - walk.turn) * HPGL_TURNS_FROM_A_BASE < HPGL_LARGEST_MISS;
    if (!isUsual && std::abs(turn) < LARGEST_TURN) {
        walk.turn = turn;
        walk.byTurn = directionOf(turn);
    }
    walk.base = HPGLradians(angle);
    walk.now = directionOf(walk.base);
    walk.turnsLeft = HPGL_TURNS_FROM_A_BASE;
    return walk;
}

// Most points lie well between two whole numbers. Of the others those of huge ellipses are still certain: truncation,
// like each step before it, never turns an order round, so what the least and the greatest possible direction agree on
// is what the true one gives.
EllipseOffset HPGLonEllipse(const HPGLEllipse& ellipse, double angle, EllipseDirection direction) {
    const double reach = std::abs(ellipse.rX) + std::abs(ellipse.rY) + std::abs(ellipse.added);  // or not a number
    if (reach < LARGEST_REACH) {
        const double x = direction.cosine * ellipse.rX + ellipse.added;
        const double y = direction.sine * ellipse.rY + ellipse.added;
        const EllipseOffset offset = {static_cast<int32_t>(x), static_cast<int32_t>(y)};
        const double fromMiddleX = std::abs(std::abs(x - offset.x) - 0.5);
        const double fromMiddleY = std::abs(std::abs(y - offset.y) - 0.5);
        const double certain = 0.5 - 2.0 * HPGL_DOUBT * reach;
        if (fromMiddleX < certain && fromMiddleY < certain) return offset;
    }
    const EllipseOffset least = offsetIn(ellipse, {direction.cosine - HPGL_DOUBT, direction.sine - HPGL_DOUBT});
    const EllipseOffset most = offsetIn(ellipse, {direction.cosine + HPGL_DOUBT, direction.sine + HPGL_DOUBT});
    if (least.x == most.x && least.y == most.y) return least;
    return HPGLonEllipse(ellipse, angle);
}
