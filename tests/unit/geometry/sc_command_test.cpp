// The command SC: factors, bytes stepped over, warnings.
#include "geometry/sc_command.h"

#include <cmath>
#include <cstring>

#include "picture_text.h"
#include "rows.h"

namespace {

#define UNSUPPORTED(count) "WARNING-handleSCCommand: unsupported number of parameters: " #count "\n"
#define NOT_SUPPORTED(type) "WARNING-handleSCCommand: Scale type " #type " not supported yet\n"

struct ScRow : NamedRow {
    float bounds[4];  // Xmin, Xmax, Ymin, Ymax
    int16_t type;
    int32_t count;
    float before[2];  // the factors
    int32_t sign;
    float after[2];
    int32_t bytes;
    const char* trace;
};

// clang-format off
constexpr ScRow SC_ROWS[] = {
    {"PlainBounds",       {0, 1, 0, 1},       0, 4, { 1,  1},  1, { 1,    1}, 16, ""},
    {"XReversed",         {1, 0, 0, 1},       0, 4, { 1,  1},  1, {-1,    1}, 16, ""},
    {"YReversed",         {0, 1, 1, 0},       0, 4, { 1,  1},  1, { 1,   -1}, 16, ""},
    {"BothReversed",      {5, 1, 5, 1},       0, 4, { 1,  1},  1, {-1,   -1}, 16, ""},
    {"EqualBounds",       {3, 3, 3, 3},       0, 4, { 1,  1},  1, { 1,    1}, 16, ""},
    {"NotANumberBounds",  {NAN, 0, 1, NAN},   0, 4, { 1,  1},  1, { 1,    1}, 16, ""},
    {"XReversedTurned",   {1, 0, 0, 1},       0, 4, { 1,  1}, -1, { 1,   -1}, 16, ""},
    {"Turned",            {0, 1, 0, 1},       0, 4, { 1,  1}, -1, {-1,   -1}, 16, ""},
    {"TurnedTwice",       {0, 1, 0, 1},       0, 4, {-1, -1}, -1, { 1,    1}, 16, ""},
    {"CarriesOver",       {0, 1, 0, 1},       0, 4, {-1,  1},  1, {-1,    1}, 16, ""},
    {"CarriesPointFactor",{0, 1, 1, 0},       0, 4, {.5F, 2},  1, {.5F,  -1}, 16, ""},
    {"TypeUnread",        {1, 0, 0, 1},       2, 4, { 1,  1},  1, {-1,    1}, 16, ""},
    {"Isotropic",         {1, 0, 0, 1},       1, 5, { 1,  1},  1, {-1,    1}, 18, ""},
    {"SevenParameters",   {0, 1, 1, 0},       1, 7, { 1,  1},  1, { 1,   -1}, 26, ""},
    {"PointFactors",      {9, .5F, 9, 2},     2, 5, { 1,  1},  1, {.5F,   2}, 18, NOT_SUPPORTED(2)},
    {"PointFactorsTurned",{9, .5F, 9, 2},     2, 5, { 1,  1}, -1, {-.5F, -2}, 18, NOT_SUPPORTED(2)},
    {"PointFactorsOfSeven",{0, 3, 0, 4},      2, 7, { 1,  1},  1, { 3,    4}, 26, NOT_SUPPORTED(2)},
    {"UnknownType",       {1, 0, 1, 0},       3, 5, { 1, .5F}, -1, { 1, .5F}, 18, ""},
    {"NegativeType",      {1, 0, 1, 0},      -1, 5, { 1, .5F}, -1, { 1, .5F}, 18, ""},
    {"NoParameters",      {1, 0, 1, 0},       2, 0, {.5F, 2},  1, { 1,    1},  0, ""},
    {"NoParametersTurned",{1, 0, 1, 0},       2, 0, {.5F, 2}, -1, {-1,   -1},  0, ""},
    {"OneParameter",      {1, 0, 0, 1},       2, 1, { 1,  1},  1, {-1,    1},  0, UNSUPPORTED(1)},
    {"TwoParameters",     {0, 1, 0, 1},       2, 2, { 1,  1}, -1, {-1,   -1},  0, UNSUPPORTED(2)},
    {"ThreeParameters",   {0, 1, 1, 0},       2, 3, { 1,  1},  1, { 1,   -1},  0, UNSUPPORTED(3)},
    {"SixParameters",     {0, 3, 0, 4},       2, 6, { 1,  1},  1, { 3,    4},  0, NOT_SUPPORTED(2) UNSUPPORTED(6)},
    {"EightParameters",   {1, 0, 0, 1},       0, 8, { 1,  1},  1, {-1,    1},  0, UNSUPPORTED(8)},
    {"MostParameters",    {1, 0, 0, 1},       3, 255,{ 1, 1},  1, { 1,    1},  0, UNSUPPORTED(255)},
};
// clang-format on

class ScCommand : public testing::TestWithParam<ScRow> {
  protected:
    // Runs the row's command; answers the bytes to step over.
    int32_t run() {
        uint8_t params[26] = {};
        memcpy(params, GetParam().bounds, 16);
        memcpy(params + 16, &GetParam().type, 2);
        return handleSCCommand(params, GetParam().count, &scalingSet, &x, &y, GetParam().sign);
    }

    FreshViewer viewer;
    int32_t scalingSet = 0;
    float x = GetParam().before[0];
    float y = GetParam().before[1];
};

TEST_P(ScCommand, SetsTheFactors) {
    EXPECT_EQ(run(), GetParam().bytes);
    EXPECT_EQ(x, GetParam().after[0]);
    EXPECT_EQ(y, GetParam().after[1]);
    EXPECT_EQ(scalingSet, GetParam().count == 0 ? 0 : 1);
}

TEST_P(ScCommand, WarnsAtLevelOne) {
    EXPECT_EQ(traceOf(1, [this] { run(); }), GetParam().trace);
    EXPECT_EQ(traceOf(0, [this] { run(); }), "");
}

INSTANTIATE_TEST_SUITE_P(Rows, ScCommand, testing::ValuesIn(SC_ROWS), byRowName);

TEST(ScCommandState, NoParametersLeaveTheFlag) {
    const FreshViewer viewer;
    float x = 1, y = 1;
    int32_t scalingSet = 1;
    handleSCCommand(nullptr, 0, &scalingSet, &x, &y, 1);
    EXPECT_EQ(scalingSet, 1);
}

}  // namespace
