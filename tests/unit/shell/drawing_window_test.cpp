// The drawing window: the limits of its coordinates, its size.
#include "shell/drawing_window.h"

#include "hpgl/list.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

constexpr int32_t MIN = INT32_MIN;
constexpr int32_t MAX = INT32_MAX;

// ---- the limits -----------------------------------------------------------------------------------------------------

struct PlatformRow : NamedRow {
    DWORD platform;
    bool answers;
    int32_t min, max;
};

// clang-format off
constexpr PlatformRow PLATFORM_ROWS[] = {
    {"Oldest",      0, true,  -32768, 32767},
    {"Middle",      1, true,  -32768, 32767},
    {"NtFamily",    2, true,     MIN,   MAX},
    {"OtherFamily", 3, true,  -32768, 32767},
    {"NoAnswer",    1, false,    MIN,   MAX},
};
// clang-format on

class Platform : public testing::TestWithParam<PlatformRow> {};

TEST_P(Platform, DecidesTheLimits) {
    const FreshViewer viewer;
    recorder::script.platformId = GetParam().platform;
    if (!GetParam().answers) recorder::script.failing = {"GetVersionExA"};
    TheShell.display.CoordMin = TheShell.display.CoordMax = 5;
    HPGLsetCoordLimits(&TheShell.display);
    EXPECT_EQ(TheShell.display.CoordMin, GetParam().min);
    EXPECT_EQ(TheShell.display.CoordMax, GetParam().max);
}

INSTANTIATE_TEST_SUITE_P(Rows, Platform, testing::ValuesIn(PLATFORM_ROWS), byRowName);

TEST(Limits, StartsWithFullLimits) {
    const FreshViewer viewer;
    EXPECT_EQ(TheShell.display.CoordMax, MAX);
    EXPECT_EQ(TheShell.display.CoordMin, MIN);
    EXPECT_EQ(TheShell.RotationSign, 1);
}

// ---- the window's size ----------------------------------------------------------------------------------------------

class WindowSize : public testing::Test {
  protected:
    WindowSize() {
        recorder::script.width = 804;
        recorder::script.height = 604;
    }
    FreshViewer viewer;
};

constexpr char SIZE_CALLS[] = "Wquerywinsize 5\nWsetwinpos 7 0 0 804 604\nOUTquerysize\n";

TEST_F(WindowSize, LeavesTheMargin) {
    int32_t width = 0, height = 0;
    EXPECT_EQ(HPGLqueryDeviceSize(&TheShell.display, &width, &height), 1);
    EXPECT_EQ(width, 800);
    EXPECT_EQ(height, 600);
}

TEST_F(WindowSize, FitsTheTopOfTheStack) {
    TheShell.zoom = HPGLinitZoom(0, 0, 8000, 4000);
    recorder::calls.clear();
    EXPECT_EQ(KWMsize(), 1);
    EXPECT_EQ(recorder::calls, SIZE_CALLS);
    EXPECT_EQ(TheShell.display.DSizeX, 800);
    EXPECT_EQ(TheShell.display.DSizeY, 600);
    EXPECT_EQ(TheShell.display.DSize, 800);
    EXPECT_EQ(TheShell.display.USize, 8000);
}

TEST_F(WindowSize, TracesItsSteps) {
    TheShell.zoom = HPGLinitZoom(-1, -2, 8000, 4000);
    const std::string text = traceOf(3, [] { KWMsize(); });
    EXPECT_TRUE(
        text.starts_with("HPGL-KWMsize: DSizeX:  800,  DSizeY:  600\n"
                         "HPGL-KWMsize: MinX:  -1, MinY:  -2, MaxX:  8000, MaxY:  4000\n"
                         "\nHPGLsetScaling: "))
        << text;
    EXPECT_EQ(traceOf(2, [] { KWMsize(); }), "");
}

TEST_F(WindowSize, ScalesNothingWithoutAStack) {
    TheShell.display.DSize = 77;
    EXPECT_EQ(KWMsize(), 0);
    EXPECT_EQ(recorder::calls, SIZE_CALLS);
    EXPECT_EQ(TheShell.display.DSizeX, 800);
    EXPECT_EQ(TheShell.display.DSize, 77);
}

TEST_F(WindowSize, ScalesNothingWithAnEmptyStack) {
    TheShell.zoom = HPGLinitZoom(0, 0, 1, 1);
    HPGLclearList(TheShell.zoom->ZoomStack);
    TheShell.display.DSize = 77;
    EXPECT_EQ(KWMsize(), 0);
    EXPECT_EQ(TheShell.display.DSizeY, 600);
    EXPECT_EQ(TheShell.display.DSize, 77);
}

}  // namespace
