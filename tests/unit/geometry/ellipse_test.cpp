// The walk around an ellipse against the C library's cosine and sine.
#include "ellipse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "arithmetic.h"
#include "rows.h"

namespace {

constexpr double INF = std::numeric_limits<double>::infinity();

void expectSame(EllipseWalk* walk, const HPGLEllipse& ellipse, double first, double step, int steps) {
    double angle = first;
    for (int i = 0; i < steps; ++i, angle += step) {
        const double t = angle * 6.283184 / 360.0;
        const EllipseOffset offset = HPGLonEllipse(ellipse, angle, HPGLnextDirection(walk, angle));
        ASSERT_EQ(offset.x, truncToInt(std::cos(t) * ellipse.rX + ellipse.added)) << first << ' ' << step << ' ' << i;
        ASSERT_EQ(offset.y, truncToInt(std::sin(t) * ellipse.rY + ellipse.added)) << first << ' ' << step << ' ' << i;
    }
}

TEST(Ellipse, OnePointIsExact) {
    const EllipseOffset offset = HPGLonEllipse({1000.0, 2000.0, 0.0}, 30.0);
    EXPECT_EQ(offset.x, 866);
    EXPECT_EQ(offset.y, 999);  // the constant is short of full precision
    EXPECT_EQ(HPGLonEllipse({1000.0, 2000.0, 45.5}, 30.0).x, 911);
}

struct WalkRow : NamedRow {
    double first, step;
};

// clang-format off
constexpr WalkRow WALK_ROWS[] = {
    {"DefaultChord", 0, 5},        {"Backward", 10, -5},          {"Fine", 0, 0.01},
    {"VeryFine", 90, 1e-9},        {"Coarse", 0, 119.9},          {"WholeTurns", 0, 360},
    {"BeyondATurn", 0, 800},       {"HugeStep", 0, 1e6},          {"LargestStep", 0, 1e30},
    {"FarAway", 1e6, 5},           {"FartherAway", 9e9, 5},       {"WhereStepsAreRounded", 9e14, 5},
    {"WhereStepsAreUneven", 3e16, 5}, {"Nowhere", 1e17, 0},       {"JustBelowNone", -5e-324, 0.125},
};
constexpr HPGLEllipse ELLIPSES[] = {
    {1000, 1000, 0},     {9, -9, 0},         {0, 0, 0},            {1e-30, 1e9, 0},     {2147483647.0, -2147483648.0, 0},
    {1e15, 1e30, 0},     {1000, 2000, -179.99}, {1e300, 3, 0.5},   {INF, -INF, 0},      {-INF, 1, 90},
    {9, NAN, 0},         {NAN, 9, 1},
};
// clang-format on

class Walks : public testing::TestWithParam<WalkRow> {};

// Far more steps than lie between two bases, and from one ellipse to the next without a break.
TEST_P(Walks, GiveTheSamePoints) {
    EllipseWalk walk = {};
    for (const HPGLEllipse& ellipse : ELLIPSES) {
        expectSame(&walk, ellipse, GetParam().first, GetParam().step, 1000);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Walks, testing::ValuesIn(WALK_ROWS), byRowName);

TEST(Ellipse, WalksOfManyKindsGiveTheSamePoints) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> exponent(-3, 9);
    const auto any = [&] { return (random() % 2 == 0 ? 1 : -1) * std::pow(10.0, exponent(random)); };
    EllipseWalk walk = {};
    for (int round = 0; round < 3000; ++round) {
        const double step = random() % 2 == 0 ? 5.0 : std::pow(10.0, exponent(random) / 3);
        expectSame(&walk, {any(), any(), random() % 2 == 0 ? 0.0 : any()}, any(), step,
                   static_cast<int>(random() % 300));
    }
}

}  // namespace
