// The arithmetic that every coordinate goes through.
#include "geometry/arithmetic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr int32_t MIN = INT32_MIN;
constexpr int32_t MAX = INT32_MAX;

TEST(Arithmetic, WrapsAt32Bits) {
    EXPECT_EQ(wrapAdd(MAX, 1), MIN);
    EXPECT_EQ(wrapSub(MIN, 1), MAX);
    EXPECT_EQ(wrapMul(300000, 10000), -1294967296);
    EXPECT_EQ(wrapMul(MIN, -1), MIN);
    EXPECT_EQ(wrapMul(65536, 65536), 0);
}

TEST(Arithmetic, DividesTowardZero) {
    EXPECT_EQ(truncDiv(7, 2), 3);
    EXPECT_EQ(truncDiv(-7, 2), -3);
    EXPECT_EQ(truncDiv(7, -2), -3);
    EXPECT_EQ(truncDiv(-1, 1000), 0);
}

TEST(Arithmetic, DividesByZeroAsByOne) {
    EXPECT_EQ(truncDiv(7, 0), 7);
    EXPECT_EQ(truncDiv(MIN, 0), MIN);
    EXPECT_EQ(truncDiv(0, 0), 0);
}

TEST(Arithmetic, WrapsTheOneQuotientThatDoesNotFit) {
    EXPECT_EQ(truncDiv(MIN, -1), MIN);
    EXPECT_EQ(truncDiv(MAX, -1), -MAX);
}

// What every point goes through, against the division itself.
TEST(Arithmetic, DividesByAReciprocalExactly) {
    std::vector<int32_t> numbers;
    for (int32_t edge : {0, 65536, 1 << 30, MAX, MIN}) {
        for (int32_t beside = -20; beside <= 20; ++beside) {
            numbers.push_back(wrapAdd(edge, beside));
            numbers.push_back(wrapSub(beside, edge));
        }
    }
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        numbers.push_back(static_cast<int32_t>(random()) >> (random() % 32));
    }
    for (const int32_t b : numbers) {
        const Divisor divisor = divisorOf(b);
        for (const int32_t a : numbers) {
            ASSERT_EQ(truncDiv(a, divisor), truncDiv(a, b)) << a << " / " << b;
        }
        for (int32_t k = -20; k <= 20; ++k) {  // whole quotients, and their neighbours
            const int32_t a = wrapMul(b, k);
            ASSERT_EQ(truncDiv(a, divisor), truncDiv(a, b)) << a << " / " << b;
            ASSERT_EQ(truncDiv(wrapSub(a, 1), divisor), truncDiv(wrapSub(a, 1), b)) << a << " - 1 / " << b;
        }
    }
}

template <class Float>
class Truncation : public testing::Test {};
using Floats = testing::Types<float, double>;
TYPED_TEST_SUITE(Truncation, Floats);

TYPED_TEST(Truncation, GoesTowardZero) {
    EXPECT_EQ(truncToInt(TypeParam{0.9F}), 0);
    EXPECT_EQ(truncToInt(TypeParam{-0.9F}), 0);
    EXPECT_EQ(truncToInt(TypeParam{1.75F}), 1);
    EXPECT_EQ(truncToInt(TypeParam{-1.75F}), -1);
}

TYPED_TEST(Truncation, TakesTheNearestThatFits) {
    EXPECT_EQ(truncToInt(TypeParam{2147483648.0F}), MAX);
    EXPECT_EQ(truncToInt(TypeParam{1e30F}), MAX);
    EXPECT_EQ(truncToInt(TypeParam{INFINITY}), MAX);
    EXPECT_EQ(truncToInt(TypeParam{-2147483648.0F}), MIN);
    EXPECT_EQ(truncToInt(TypeParam{-1e30F}), MIN);
    EXPECT_EQ(truncToInt(TypeParam{-INFINITY}), MIN);
}

TYPED_TEST(Truncation, TakesNotANumberAsZero) {
    EXPECT_EQ(truncToInt(TypeParam{NAN}), 0);
}

TEST(Arithmetic, KeepsTheLastDoublesThatFit) {
    EXPECT_EQ(truncToInt(2147483647.9), MAX);
    EXPECT_EQ(truncToInt(-2147483648.9), MIN);
    EXPECT_EQ(truncToInt(2147483646.0), MAX - 1);
}

struct ScaleRow {
    const char* name;
    int32_t value;
    float factor;
    int32_t scaled;
};

// clang-format off
constexpr ScaleRow SCALE_ROWS[] = {
    {"One",                        -123,  1.0F,         -123},
    {"NegativeTowardZero",           -7,  0.5F,           -3},
    {"Mirrored",                     25, -1.0F,          -25},
    {"RoundsUpInSinglePrecision",    10,  0.7F,            7},  // in double precision 6.99999988 gives 6
    {"LastExactSingle",        16777216,  1.0F,     16777216},
    {"FirstInexactSingle",     16777217,  1.0F,     16777216},  // in double precision 16777217
    {"RoundsToEvenSingle",     16777219,  1.0F,     16777220},
    {"LargestBecomesTooLarge",      MAX,  1.0F,          MAX},
    {"Smallest",                    MIN,  1.0F,          MIN},
    {"SmallestMirrored",            MIN, -1.0F,          MAX},
    {"OutOfRange",              1000000,  1e6F,          MAX},
    {"NotANumber",                    0, INFINITY,         0},
};
// clang-format on

TEST(Arithmetic, ScalesInSinglePrecision) {
    for (const ScaleRow& row : SCALE_ROWS) {
        EXPECT_EQ(scaleCoordinate(row.value, row.factor), row.scaled) << row.name;
    }
}

}  // namespace
