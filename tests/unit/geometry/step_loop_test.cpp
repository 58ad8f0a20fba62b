// The loops of circles, arcs and wedges, and what keeps a hostile picture from running for ever.
#include "geometry/step_loop.h"

#include <algorithm>
#include <cmath>

#include "geometry/setup_pass.h"
#include "picture_text.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

TEST(Angles, UseTheirConstants) {
    EXPECT_EQ(HPGLradians(360), 6.283184);
    EXPECT_EQ(HPGLradians(90), 90 * 6.283184 / 360.0);
    EXPECT_EQ(HPGLdegrees(3.141592), 180.0);
    EXPECT_GT(HPGLdegrees(std::acos(-1.0)), 180.0);
}

TEST(Angles, NotFiniteAreZero) {
    EXPECT_EQ(HPGLusableAngle(INFINITY), 0.0);
    EXPECT_EQ(HPGLusableAngle(-INFINITY), 0.0);
    EXPECT_EQ(HPGLusableAngle(NAN), 0.0);
    EXPECT_EQ(HPGLusableAngle(-720.5F), -720.5);
    EXPECT_EQ(HPGLusableAngle(0.1F), static_cast<double>(0.1F));
}

struct ChordRow : NamedRow {
    bool given, warns;
    float chord;
    double used;
};

// clang-format off
constexpr ChordRow CHORD_ROWS[] = {
    {"Absent",        false, false, 0.0F,      5.0},
    {"Given",         true,  false, 0.1F,      double{0.1F}},
    {"Zero",          true,  true,  0.0F,      5.0},
    {"MinusZero",     true,  true,  -0.0F,     5.0},
    {"Negative",      true,  true,  -3.0F,     5.0},
    {"NotANumber",    true,  true,  NAN,       5.0},
    {"Infinite",      true,  true,  INFINITY,  5.0},
    {"MinusInfinite", true,  true,  -INFINITY, 5.0},
    {"Wide",          true,  false, 720.0F,    720.0},
    {"Smallest",      true,  false, 1e-45F,    double{1e-45F}},
};
// clang-format on

class Chord : public testing::TestWithParam<ChordRow> {};

TEST_P(Chord, IsUsable) {
    const FreshViewer viewer;
    const StepAllowance allowance;
    double used = 0;
    const std::string text =
        traceOf(1, [&] { used = HPGLusableChord(&allowance, GetParam().given, GetParam().chord, "HPGLsetupPicture"); });
    EXPECT_EQ(used, GetParam().used);
    EXPECT_EQ(text.starts_with("WARNING-HPGLsetupPicture"), GetParam().warns) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), GetParam().warns ? 1 : 0) << text;
}

INSTANTIATE_TEST_SUITE_P(Rows, Chord, testing::ValuesIn(CHORD_ROWS), byRowName);

struct StepRow : NamedRow {
    double first, step, last;
    int32_t steps;
};

// clang-format off
constexpr StepRow STEP_ROWS[] = {
    {"ReachingGoesOn",     0,    45,   90,   3},
    {"PassingEnds",        0,    60,   90,   2},
    {"Backwards",          0,   -45,  -90,   3},
    {"NoDistance",         7,     5,    7,   1},
    {"AtLeastOne",        10,     5,    7,   1},
    {"StepTooSmall",    1e17,     1, 2e17,   1},
    {"CommandLimit",       0, 1e-9,  360, 1'000'000},
    {"JustBelowLimit",     0,     1, 999'998, 999'999},
    {"JustTheLimit",       0,     1, 999'999, 1'000'000},
    {"JustAboveLimit",     0,     1, 1'000'000, 1'000'000},
};
// clang-format on

int32_t stepsOf(StepAllowance* allowance, double first, double step, double last) {
    int32_t steps = 0;
    HPGLforEachStep(allowance, "HPGLsetupPicture", first, step, last, [&](double) { ++steps; });
    return steps;
}

class Steps : public testing::TestWithParam<StepRow> {};

TEST_P(Steps, AreBounded) {
    StepAllowance allowance;
    EXPECT_EQ(stepsOf(&allowance, GetParam().first, GetParam().step, GetParam().last), GetParam().steps);
    EXPECT_EQ(allowance.left, 50'000'000 - GetParam().steps);
}

INSTANTIATE_TEST_SUITE_P(Rows, Steps, testing::ValuesIn(STEP_ROWS), byRowName);

TEST(StepAllowance, EndsTheLoopThatUsesItUp) {
    const FreshViewer viewer;
    StepAllowance allowance{100};
    const std::string text = traceOf(1, [&] {
        EXPECT_EQ(stepsOf(&allowance, 0, 1, 59), 60);
        EXPECT_EQ(stepsOf(&allowance, 0, 1, 59), 40);
        EXPECT_EQ(stepsOf(&allowance, 0, 1, 59), 60);
        EXPECT_EQ(stepsOf(&allowance, 0, 1, 5000), 1000);
        EXPECT_EQ(HPGLusableChord(&allowance, true, 1, "HPGLsetupPicture"), 5.0);
    });
    EXPECT_TRUE(text.starts_with("WARNING-HPGLsetupPicture")) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
}

// ---- in the set-up pass ---------------------------------------------------------------------------------------------

struct GuardRow : NamedRow {
    const char* text;
    const char* extents;
};

// clang-format off
constexpr GuardRow GUARD_ROWS[] = {
    {"WedgeChordZero",       "EW1000,0,90,0;",         "0 0 1000 999"},
    {"WedgeChordNegative",   "WG1000,0,90,-60;",       "0 0 1000 999"},
    {"WedgeChordNotANumber", "EW1000,0,90,nan;",       "0 0 1000 999"},
    {"WedgeChordInfinite",   "EW1000,0,90,inf;",       "0 0 1000 999"},
    {"ArcChordZero",         "PA100,0;AA0,0,90,0;",    "0 0 100 99"},
    {"ArcChordNegative",     "PA100,0;AR-100,0,90,-3;", "0 0 100 99"},
    {"CircleChordZero",      "CI5,0;",                 "-5 -5 5 5"},
    {"StartNotANumber",      "EW1000,nan,90,60;",      "0 0 1000 999"},
    {"StartInfinite",        "EW1000,-inf,90,60;",     "0 0 1000 999"},
    {"SweepNotANumber",      "EW1000,0,nan,60;",       "1000 0 1000 0"},
    {"SweepInfinite",        "PA100,0;AA0,0,inf;",     "100 0 100 0"},
    {"StepTooSmall",         "EW1000,1e17,1e17,1;",    "-783 -944 -328 621"},
    // A million steps reach 100 degrees, the end angle 180 is added all the same.
    {"CommandLimit",         "EW1000,0,180,.0001;",    "-999 0 1000 999"},
    {"SmallestRadius",       "EW-2147483648,0,0;",     "-2147483647 1403 -1073741823 1403"},
};
// clang-format on

class SetupGuards : public testing::TestWithParam<GuardRow> {};

std::string setUpExtents(const char* text) {
    parseText(text);
    HPGLfindExtents(TheShell.parser, 1);
    const HPGLGlobal& global = *TheShell.parser->global;
    return std::to_string(global.MinX) + ' ' + std::to_string(global.MinY) + ' ' + std::to_string(global.MaxX) + ' ' +
           std::to_string(global.MaxY);
}

TEST_P(SetupGuards, EndWithUsableExtents) {
    const FreshViewer viewer;
    EXPECT_EQ(setUpExtents(GetParam().text), GetParam().extents);
}

INSTANTIATE_TEST_SUITE_P(Rows, SetupGuards, testing::ValuesIn(GUARD_ROWS), byRowName);

TEST(SetupGuards, PassLimitMakesTheRestCoarse) {
    const FreshViewer viewer;
    std::string text;
    for (int i = 0; i < 50; ++i) {
        text += "EW1,0,360,.0003;";
    }
    // A chord of 60 degrees would miss the top that steps of 5 degrees reach.
    text += "EW1000,0,150,60;";
    parseText(text);
    const std::string trace = traceOf(1, [] { HPGLfindExtents(TheShell.parser, 1); });
    EXPECT_TRUE(trace.starts_with("WARNING-HPGLsetupPicture")) << trace;
    EXPECT_EQ(std::count(trace.begin(), trace.end(), '\n'), 1) << trace;
    EXPECT_EQ(TheShell.parser->global->MaxY, 999);
}

}  // namespace
