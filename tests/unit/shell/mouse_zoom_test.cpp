// The mouse that opens a new view, and the rubber band.
#include "shell/mouse_zoom.h"

#include "hpgl/list.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "shell/drawing_window.h"
#include "shell/shell_state.h"

namespace {

using recorder::calls;
using recorder::script;

// A picture of 8000 x 4000 plotter units in 800 x 600 usable pixels: ten units a pixel.
class MouseZoom : public testing::Test {
  protected:
    MouseZoom() {
        script.width = 804;
        script.height = 604;
        TheShell.zoom = HPGLinitZoom(0, 0, 8000, 4000);
        KWMsize();
        calls.clear();
    }

    static int32_t at(int32_t event, int32_t x, int32_t y) {
        script.mouseX = x;
        script.mouseY = y;
        return HPGLpushZoomRect(TheShell.zoom, &TheShell.display, event);
    }
    static int32_t drag(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
        at(HPGL_BUTTON_DOWN, x1, y1);
        return at(HPGL_BUTTON_UP, x2, y2);
    }
    static std::string top() {
        ZoomRect rect = {};
        HPGLgetZoomRect(TheShell.zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY);
        return std::to_string(rect.MinX) + ' ' + std::to_string(rect.MinY) + ' ' + std::to_string(rect.MaxX) + ' ' +
               std::to_string(rect.MaxY);
    }
    static uint32_t depth() { return HPGLgetListCount(TheShell.zoom->ZoomStack); }

    FreshViewer viewer;
};

// ---- mouse ----------------------------------------------------------------------------------------------------------

TEST_F(MouseZoom, ButtonDownStartsTracking) {
    int32_t result = 0;
    const auto press = [&] { result = at(HPGL_BUTTON_DOWN, 12, 34); };
    EXPECT_EQ(traceOf(2, press), "HPGLpushZoomRect: Button down at 12 34\n");
    EXPECT_EQ(traceOf(1, press), "");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(TheShell.zoom->Tracking, 1);
    EXPECT_EQ(TheShell.zoom->StartX, 12);
    EXPECT_EQ(TheShell.zoom->StartY, 34);
    EXPECT_EQ(TheShell.zoom->CurX, 12);
    EXPECT_EQ(TheShell.zoom->CurY, 34);
}

TEST_F(MouseZoom, ButtonDownDrawsNothing) {
    at(HPGL_BUTTON_DOWN, 12, 34);
    EXPECT_EQ(calls, "Wgetmousepos 7\n");
}

TEST_F(MouseZoom, DragRedrawsTheBand) {
    TheShell.display.RubberColour = 9;
    at(HPGL_BUTTON_DOWN, 10, 20);
    at(HPGL_BUTTON_DRAG, 50, 70);
    calls.clear();
    EXPECT_EQ(at(HPGL_BUTTON_DRAG, 60, 90), 1);
    EXPECT_EQ(calls,
              "OUTreset\nOUTlinecolour 9\nOUTtrackbox 10 70 40 -50 0\nOUTendpaint\n"
              "Wgetmousepos 7\n"
              "OUTreset\nOUTlinecolour 9\nOUTtrackbox 10 90 50 -70 0\nOUTendpaint\n");
}

TEST_F(MouseZoom, DragWithoutTrackingIsIgnored) {
    EXPECT_EQ(at(HPGL_BUTTON_DRAG, 50, 70), 1);
    EXPECT_EQ(calls, "");
    EXPECT_EQ(TheShell.zoom->CurX, 0);
}

TEST_F(MouseZoom, OtherEventsDoNothing) {
    at(HPGL_BUTTON_DOWN, 10, 20);
    calls.clear();
    for (const int32_t event : {HPGL_BUTTON_OTHER + 0, 0, -1, 99}) {
        EXPECT_EQ(at(event, 50, 70), 1);
    }
    EXPECT_EQ(calls, "");
}

TEST_F(MouseZoom, NoStackTakesNoEvent) {
    for (const int32_t event : {HPGL_BUTTON_DOWN, HPGL_BUTTON_UP, HPGL_BUTTON_DRAG, HPGL_BUTTON_OTHER}) {
        EXPECT_EQ(HPGLpushZoomRect(nullptr, &TheShell.display, event), 0);
    }
    EXPECT_EQ(calls, "");
}

TEST_F(MouseZoom, ButtonUpMakesTheView) {
    at(HPGL_BUTTON_DOWN, 100, 200);
    at(HPGL_BUTTON_DRAG, 150, 250);
    calls.clear();
    EXPECT_EQ(at(HPGL_BUTTON_UP, 300, 400), 1);
    EXPECT_EQ(calls,
              "OUTreset\nOUTlinecolour 0\nOUTtrackbox 100 250 50 -50 0\nOUTendpaint\n"
              "Wgetmousepos 7\n"
              "OUTquerysize\n");
    EXPECT_EQ(TheShell.zoom->Tracking, 0);
    EXPECT_EQ(depth(), 2u);
    // 700 pixels left of the corner at 800 are 7000 units; the 2 of the forward mapping is not taken off.
    EXPECT_EQ(top(), "1000 0 3000 2000");
    EXPECT_EQ(TheShell.display.USize, 2000);
    EXPECT_EQ(TheShell.display.DSize, 600);
    EXPECT_EQ(TheShell.display.MaxX, 3000);
    EXPECT_EQ(TheShell.display.MaxY, 2000);
}

TEST_F(MouseZoom, ButtonUpTracesItsSteps) {
    const auto zoom = [] { drag(100, 200, 300, 400); };
    const std::string expected =
        "HPGLpushZoomRect: Button down at 100 200\n"
        "HPGLpushZoomRect: Button up at 300 400\n"
        "calcNewZoomRect: USize: 8000  DSize: 800  WinSizeX: 800  WinSizeY: 600\n"
        "calcNewZoomRect: NewZoomRectangle: 1000 0 3000 2000\n";
    EXPECT_EQ(traceOf(2, zoom), expected);
    EXPECT_EQ(traceOf(1, zoom), "");
}

TEST_F(MouseZoom, ButtonUpCountsWithoutTracking) {
    TheShell.zoom->StartX = 100;
    TheShell.zoom->StartY = 200;
    EXPECT_EQ(at(HPGL_BUTTON_UP, 300, 400), 1);
    EXPECT_EQ(top(), "1000 0 3000 2000");
}

struct DragRow : NamedRow {
    int32_t x1, y1, x2, y2;  // pixels
    const char* view;
};

// clang-format off
constexpr DragRow DRAG_ROWS[] = {
    {"UpRight",      100, 200, 300, 400, "1000 0 3000 2000"},
    {"DownLeft",     300, 400, 100, 200, "1000 0 3000 2000"},
    {"DownRight",    100, 400, 300, 200, "1000 0 3000 2000"},
    {"UpLeft",       300, 200, 100, 400, "1000 0 3000 2000"},
    {"WholeWindow",    0,   0, 800, 600, "0 -2000 8000 4000"},
    {"BeyondCorner", 790, 590, 810, 620, "7900 3900 8100 4200"},
    {"OnePixel",     100, 100, 101, 101, "1000 -1000 1010 -990"},
};
// clang-format on

class ZoomDrag : public MouseZoom, public testing::WithParamInterface<DragRow> {};

TEST_P(ZoomDrag, GivesTheView) {
    const DragRow& row = GetParam();
    EXPECT_EQ(drag(row.x1, row.y1, row.x2, row.y2), 1);
    EXPECT_EQ(top(), row.view);
}

INSTANTIATE_TEST_SUITE_P(Rows, ZoomDrag, testing::ValuesIn(DRAG_ROWS), byRowName);

// ---- refused rectangles ---------------------------------------------------------------------------------------------

constexpr char EMPTY[] = "WARNING-calcNewZoomRect: empty ZoomRectangle, will be ignored\n";

struct RefusedRow : NamedRow {
    int32_t x1, y1, x2, y2;  // pixels
    int32_t USize, DSize;
    const char* trace;
};

// clang-format off
constexpr RefusedRow REFUSED_ROWS[] = {
    {"Click",           100, 200, 100, 200, 8000, 800, EMPTY},
    {"NoWidth",         100, 200, 100, 300, 8000, 800, EMPTY},
    {"NoHeight",        100, 200, 300, 200, 8000, 800, EMPTY},
    {"NoWidthInUnits",  101, 200, 102, 300,    8, 800, "WARNING-calcNewZoomRect: NewZoomRectangle: at least one "
                                                       "Dimension is 0 (Width = 0  Height = -1 )\n"},
    {"NoHeightInUnits", 400, 201, 100, 202,    8, 800, "WARNING-calcNewZoomRect: NewZoomRectangle: at least one "
                                                       "Dimension is 0 (Width = 3  Height = 0 )\n"},
};
// clang-format on

class ZoomRefused : public MouseZoom, public testing::WithParamInterface<RefusedRow> {
  protected:
    ZoomRefused() {
        TheShell.display.USize = GetParam().USize;
        TheShell.display.DSize = GetParam().DSize;
    }
};

TEST_P(ZoomRefused, ChangesNothing) {
    const RefusedRow& row = GetParam();
    EXPECT_EQ(drag(row.x1, row.y1, row.x2, row.y2), 0);
    EXPECT_EQ(depth(), 1u);
    EXPECT_EQ(TheShell.display.USize, row.USize);
    EXPECT_EQ(TheShell.zoom->Tracking, 1);
}

TEST_P(ZoomRefused, WarnsAtLevelOne) {
    const RefusedRow& row = GetParam();
    EXPECT_EQ(traceOf(1, [&] { drag(row.x1, row.y1, row.x2, row.y2); }), row.trace);
}

INSTANTIATE_TEST_SUITE_P(Rows, ZoomRefused, testing::ValuesIn(REFUSED_ROWS), byRowName);

TEST_F(MouseZoom, TrackingGoesOnAfterARefusedRectangle) {
    drag(100, 200, 100, 200);
    at(HPGL_BUTTON_DRAG, 150, 260);
    calls.clear();
    at(HPGL_BUTTON_DRAG, 170, 280);
    EXPECT_NE(calls.find("OUTtrackbox 100 280 70 -80 0\n"), std::string::npos) << calls;
}

TEST_F(MouseZoom, ResizedWindowKeepsTheView) {
    drag(100, 200, 300, 400);
    script.width = script.height = 404;
    KWMsize();
    EXPECT_EQ(top(), "1000 0 3000 2000");
    EXPECT_EQ(TheShell.display.DSize, 400);
    EXPECT_EQ(TheShell.display.USize, 2000);
}

// ---- the rubber band ------------------------------------------------------------------------------------------------

struct BandRow : NamedRow {
    int32_t x1, y1, x2, y2;  // current position, start; pixels
    const char* box;         // left, bottom, width, height; empty: not drawn
};

// The vertical pair is ordered by comparing the left edge with y2, deliberately.
// clang-format off
constexpr BandRow BAND_ROWS[] = {
    {"LeftBelowY2",          10, 20,  50,  80, "10 20 40 60"},
    {"LeftBelowY2Negative",  10, 90,  50,  80, "10 90 40 -10"},
    {"LeftEqualsY2",         80, 20, 150,  80, "80 20 70 60"},
    {"LeftAboveY2",         100, 20, 150,  80, "100 80 50 -60"},
    {"LeftAboveY2Positive", 150, 90, 100,  80, "100 80 50 10"},
    {"CurrentIsRight",       50, 20,  10,  80, "10 20 40 60"},
    {"NegativePixels",      -50, -9, -10, -20, "-50 -9 40 -11"},
    {"NoWidth",              10, 20,  10,  80, ""},
    {"NoHeight",             10, 20,  50,  20, ""},
    {"NoHeightAbove",       100, 20, 150,  20, ""},
};
// clang-format on

class RubberBand : public testing::TestWithParam<BandRow> {};

TEST_P(RubberBand, DrawsTheBox) {
    const FreshViewer viewer;
    const BandRow& row = GetParam();
    TheShell.display.RubberColour = 4;
    const int32_t drawn = HPGLdrawRubberBand(&TheShell.display, row.x1, row.y1, row.x2, row.y2);
    const std::string box = row.box;
    EXPECT_EQ(drawn, box.empty() ? 0 : 1);
    EXPECT_EQ(calls, box.empty() ? "" : "OUTreset\nOUTlinecolour 4\nOUTtrackbox " + box + " 0\nOUTendpaint\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, RubberBand, testing::ValuesIn(BAND_ROWS), byRowName);

}  // namespace
