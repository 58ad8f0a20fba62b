// Points on ellipses, many at a time, against the C library's cosine and sine.
#include "geometry/ellipse.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "geometry/arithmetic.h"
#include "rows.h"

namespace {

constexpr double QUARTER = 90.0 * 3.14159265358979 / 3.141592;  // with the constant that is short of pi, degrees
constexpr double INF = std::numeric_limits<double>::infinity();

void expectSame(const HPGLEllipse& ellipse, double first, double step, int steps) {
    std::vector<double> angles;
    for (double angle = first; static_cast<int>(angles.size()) < steps; angle += step) {
        angles.push_back(angle);
    }
    std::vector<EllipseOffset> offsets(angles.size());
    HPGLonEllipse(ellipse, angles.data(), steps, offsets.data());
    for (size_t i = 0; i < angles.size(); ++i) {
        const double t = angles[i] * 6.283184 / 360.0;
        ASSERT_EQ(offsets[i].x, truncToInt(std::cos(t) * ellipse.rX + ellipse.added))
            << first << ' ' << step << ' ' << i;
        ASSERT_EQ(offsets[i].y, truncToInt(std::sin(t) * ellipse.rY + ellipse.added))
            << first << ' ' << step << ' ' << i;
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

// Several runs and a part of one, forwards and back.
TEST_P(Walks, GiveTheSamePoints) {
    for (const HPGLEllipse& ellipse : ELLIPSES) {
        expectSame(ellipse, GetParam().first, GetParam().step, 1000);
        expectSame(ellipse, -GetParam().first, -GetParam().step, 1000);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Walks, testing::ValuesIn(WALK_ROWS), byRowName);

// Wherever a quarter of a turn ends, and wherever a double gains a digit, up to the farthest angles of a picture.
TEST(Ellipse, AnglesOfEverySizeGiveTheSamePoints) {
    for (int power = -140; power < 130; ++power) {
        const double angle = std::ldexp(1.0, power);
        const double quarter = std::nearbyint(angle / QUARTER) * QUARTER;
        for (const double around : {angle, std::nextafter(angle, 0.0), quarter, -angle, -quarter}) {
            const double step = std::nextafter(std::abs(around), INF) - std::abs(around);
            expectSame({1000, 2000, 0}, around - 5 * step, step, 10);
            expectSame({1e9, 1e8, -90}, around, angle / 7, 300);
        }
    }
}

TEST(Ellipse, WalksOfManyKindsGiveTheSamePoints) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> exponent(-3, 9);
    const auto any = [&] { return (random() % 2 == 0 ? 1 : -1) * std::pow(10.0, exponent(random)); };
    for (int round = 0; round < 3000; ++round) {
        const double step = random() % 2 == 0 ? 5.0 : std::pow(10.0, exponent(random) / 3);
        expectSame({any(), any(), random() % 2 == 0 ? 0.0 : any()}, any(), step, static_cast<int>(random() % 300));
    }
}

// Also past the distance up to which one angle serves for others.
TEST(FewTurns, AreTheAngleWithoutTheRest) {
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> exponent(-20, 37);
    FewTurns from;
    for (int i = 0; i < 100000; ++i) {
        const double t = (random() % 2 == 0 ? 1 : -1) * std::pow(10.0, exponent(random));
        for (const double angle : {t, t + 1.0, t - HPGL_FEW_TURNS, t + HPGL_FEW_TURNS / 2}) {
            const double few = HPGLwithFewTurns(&from, angle);
            ASSERT_LE(std::abs(few), HPGL_FEW_TURNS + 3.15) << angle;
            ASSERT_NEAR(std::cos(few), std::cos(angle), 0x1p-44) << angle;
            ASSERT_NEAR(std::sin(few), std::sin(angle), 0x1p-44) << angle;
        }
    }
}

}  // namespace
