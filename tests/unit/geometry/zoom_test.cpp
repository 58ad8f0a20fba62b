// The zoom stack, the mouse that adds to it, and the rubber band.
#include "zoom.h"

#include "failing_allocator.h"
#include "list.h"
#include "picture_text.h"
#include "recorder.h"
#include "rows.h"
#include "rubber_band.h"
#include "scaling.h"

namespace {

using recorder::calls;
using recorder::script;

std::string textOf(const ZoomRect& rect) {
    return std::to_string(rect.MinX) + ' ' + std::to_string(rect.MinY) + ' ' + std::to_string(rect.MaxX) + ' ' +
           std::to_string(rect.MaxY);
}

// A picture of 8000 x 4000 plotter units in 800 x 600 usable pixels: ten units a pixel.
class Zoom : public testing::Test {
  protected:
    Zoom() {
        script.width = 804;
        script.height = 604;
        TheZoom = HPGLinitZoom(0, 0, 8000, 4000);
        KWMsize();
        calls.clear();
    }
    ~Zoom() override { failing_allocator::reset(); }

    static int32_t at(int32_t event, int32_t x, int32_t y) {
        script.mouseX = x;
        script.mouseY = y;
        return HPGLpushZoomRect(TheZoom, &TheDisplay, event);
    }
    static int32_t drag(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
        at(HPGL_BUTTON_DOWN, x1, y1);
        return at(HPGL_BUTTON_UP, x2, y2);
    }
    static std::string top() {
        ZoomRect rect = {};
        HPGLgetZoomRect(TheZoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY);
        return textOf(rect);
    }
    static uint32_t depth() { return HPGLgetListCount(TheZoom->ZoomStack); }

    FreshViewer viewer;
};

// ---- life -----------------------------------------------------------------------------------------------------------

TEST_F(Zoom, StartsWithTheWholePicture) {
    EXPECT_EQ(depth(), 1u);
    EXPECT_EQ(top(), "0 0 8000 4000");
    EXPECT_STREQ(TheZoom->ZoomStack->name, "zoom");
    EXPECT_EQ(TheZoom->StartX, 0);
    EXPECT_EQ(TheZoom->StartY, 0);
    EXPECT_EQ(TheZoom->CurX, 0);
    EXPECT_EQ(TheZoom->CurY, 0);
    EXPECT_EQ(TheZoom->Tracking, 0);
    EXPECT_EQ(TheZoom->spare, 0);
}

TEST_F(Zoom, KeepsTheFirstRectangleAsItIs) {
    HPGLdestroyZoom(TheZoom);
    TheZoom = HPGLinitZoom(1073741823, 5, -1073741823, 5);
    EXPECT_EQ(top(), "1073741823 5 -1073741823 5");
}

TEST_F(Zoom, TracesBirthAndDeath) {
    const auto life = [] { HPGLdestroyZoom(HPGLinitZoom(1, -2, 3, -4)); };
    EXPECT_EQ(traceOf(2, life),
              "\n\nHPGLinitZoom: Zoom Stack successfully initialized: 1 -2 3 -4\n"
              "\nHPGLdestroyZoom: Zoom Stack successfully destroyed\n");
    EXPECT_EQ(traceOf(1, life), "");
}

TEST_F(Zoom, DestroysNone) {
    int32_t result = 0;
    EXPECT_EQ(traceOf(2, [&] { result = HPGLdestroyZoom(nullptr); }),
              "\nHPGLdestroyZoom: Zoom Stack successfully destroyed\n");
    EXPECT_EQ(result, 1);
}

TEST_F(Zoom, DestroysARecordWithoutList) {
    HPGLclearList(TheZoom->ZoomStack);
    free(TheZoom->ZoomStack);
    TheZoom->ZoomStack = nullptr;
    EXPECT_EQ(HPGLdestroyZoom(TheZoom), 1);
    TheZoom = nullptr;
}

std::string traceOfFailedInit(int allocation) {
    ZoomData* zoom = TheZoom;
    std::string text = traceOf(1, [&] {
        failing_allocator::failAfter(allocation);
        zoom = HPGLinitZoom(0, 0, 1, 1);
    });
    EXPECT_EQ(zoom, nullptr);
    return text;
}

TEST_F(Zoom, SaysWhatCouldNotBeAllocated) {
    EXPECT_EQ(traceOfFailedInit(0),
              "HPGLinitZoom: not enough memroy for ZoomData (" + std::to_string(sizeof(ZoomData)) + " bytes)\n");
    EXPECT_EQ(traceOfFailedInit(1),
              "HPGLinitZoom: not enough memroy for ZoomStack (" + std::to_string(sizeof(HPGLList)) + " bytes)\n");
}

// ---- mouse ----------------------------------------------------------------------------------------------------------

TEST_F(Zoom, ButtonDownStartsTracking) {
    int32_t result = 0;
    const auto press = [&] { result = at(HPGL_BUTTON_DOWN, 12, 34); };
    EXPECT_EQ(traceOf(2, press), "HPGLpushZoomRect: Button down at 12 34\n");
    EXPECT_EQ(traceOf(1, press), "");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(TheZoom->Tracking, 1);
    EXPECT_EQ(TheZoom->StartX, 12);
    EXPECT_EQ(TheZoom->StartY, 34);
    EXPECT_EQ(TheZoom->CurX, 12);
    EXPECT_EQ(TheZoom->CurY, 34);
}

TEST_F(Zoom, ButtonDownDrawsNothing) {
    at(HPGL_BUTTON_DOWN, 12, 34);
    EXPECT_EQ(calls, "Wgetmousepos 7\n");
}

TEST_F(Zoom, DragRedrawsTheBand) {
    TheDisplay.RubberColour = 9;
    at(HPGL_BUTTON_DOWN, 10, 20);
    at(HPGL_BUTTON_DRAG, 50, 70);
    calls.clear();
    EXPECT_EQ(at(HPGL_BUTTON_DRAG, 60, 90), 1);
    EXPECT_EQ(calls,
              "OUTreset\nOUTlinecolour 9\nOUTtrackbox 10 70 40 -50 0\nOUTendpaint\n"
              "Wgetmousepos 7\n"
              "OUTreset\nOUTlinecolour 9\nOUTtrackbox 10 90 50 -70 0\nOUTendpaint\n");
}

TEST_F(Zoom, DragWithoutTrackingIsIgnored) {
    EXPECT_EQ(at(HPGL_BUTTON_DRAG, 50, 70), 1);
    EXPECT_EQ(calls, "");
    EXPECT_EQ(TheZoom->CurX, 0);
}

TEST_F(Zoom, OtherEventsDoNothing) {
    at(HPGL_BUTTON_DOWN, 10, 20);
    calls.clear();
    for (const int32_t event : {HPGL_BUTTON_OTHER + 0, 0, -1, 99}) {
        EXPECT_EQ(at(event, 50, 70), 1);
    }
    EXPECT_EQ(calls, "");
}

TEST_F(Zoom, NoStackTakesNoEvent) {
    for (const int32_t event : {HPGL_BUTTON_DOWN, HPGL_BUTTON_UP, HPGL_BUTTON_DRAG, HPGL_BUTTON_OTHER}) {
        EXPECT_EQ(HPGLpushZoomRect(nullptr, &TheDisplay, event), 0);
    }
    EXPECT_EQ(calls, "");
}

TEST_F(Zoom, ButtonUpMakesTheView) {
    at(HPGL_BUTTON_DOWN, 100, 200);
    at(HPGL_BUTTON_DRAG, 150, 250);
    calls.clear();
    EXPECT_EQ(at(HPGL_BUTTON_UP, 300, 400), 1);
    EXPECT_EQ(calls,
              "OUTreset\nOUTlinecolour 0\nOUTtrackbox 100 250 50 -50 0\nOUTendpaint\n"
              "Wgetmousepos 7\n"
              "OUTquerysize\n");
    EXPECT_EQ(TheZoom->Tracking, 0);
    EXPECT_EQ(depth(), 2u);
    // 700 pixels left of the corner at 800 are 7000 units; the 2 of the forward mapping is not taken off.
    EXPECT_EQ(top(), "1000 0 3000 2000");
    EXPECT_EQ(TheDisplay.USize, 2000);
    EXPECT_EQ(TheDisplay.DSize, 600);
    EXPECT_EQ(TheDisplay.MaxX, 3000);
    EXPECT_EQ(TheDisplay.MaxY, 2000);
}

TEST_F(Zoom, ButtonUpTracesItsSteps) {
    const auto zoom = [] { drag(100, 200, 300, 400); };
    const std::string expected =
        "HPGLpushZoomRect: Button down at 100 200\n"
        "HPGLpushZoomRect: Button up at 300 400\n"
        "calcNewZoomRect: USize: 8000  DSize: 800  WinSizeX: 800  WinSizeY: 600\n"
        "calcNewZoomRect: NewZoomRectangle: 1000 0 3000 2000\n";
    EXPECT_EQ(traceOf(2, zoom), expected);
    EXPECT_EQ(traceOf(1, zoom), "");
}

TEST_F(Zoom, ButtonUpCountsWithoutTracking) {
    TheZoom->StartX = 100;
    TheZoom->StartY = 200;
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

class ZoomDrag : public Zoom, public testing::WithParamInterface<DragRow> {};

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

class ZoomRefused : public Zoom, public testing::WithParamInterface<RefusedRow> {
  protected:
    ZoomRefused() {
        TheDisplay.USize = GetParam().USize;
        TheDisplay.DSize = GetParam().DSize;
    }
};

TEST_P(ZoomRefused, ChangesNothing) {
    const RefusedRow& row = GetParam();
    EXPECT_EQ(drag(row.x1, row.y1, row.x2, row.y2), 0);
    EXPECT_EQ(depth(), 1u);
    EXPECT_EQ(TheDisplay.USize, row.USize);
    EXPECT_EQ(TheZoom->Tracking, 1);
}

TEST_P(ZoomRefused, WarnsAtLevelOne) {
    const RefusedRow& row = GetParam();
    EXPECT_EQ(traceOf(1, [&] { drag(row.x1, row.y1, row.x2, row.y2); }), row.trace);
}

INSTANTIATE_TEST_SUITE_P(Rows, ZoomRefused, testing::ValuesIn(REFUSED_ROWS), byRowName);

TEST_F(Zoom, TrackingGoesOnAfterARefusedRectangle) {
    drag(100, 200, 100, 200);
    at(HPGL_BUTTON_DRAG, 150, 260);
    calls.clear();
    at(HPGL_BUTTON_DRAG, 170, 280);
    EXPECT_NE(calls.find("OUTtrackbox 100 280 70 -80 0\n"), std::string::npos) << calls;
}

// ---- the inverse mapping --------------------------------------------------------------------------------------------

struct InverseRow : NamedRow {
    ZoomRect top;
    int32_t start[2], current[2];  // pixels
    int32_t USize, DSize;
    const char* view;
};

// clang-format off
constexpr InverseRow INVERSE_ROWS[] = {
    {"RelativeToTheTop",   {-50, -60, 70, 80}, {0, 0}, {100, 100}, 1000, 100, "-930 -920 70 80"},
    {"TruncatesTowardZero",  {0, 0, 0, 0},  {85, 85}, {93, 93},     1,  10, "-1 -1 0 0"},  // floor: -2 and -1
    {"ProductWraps", {0, 0, 0, 0}, {-299900, -299900}, {50, 50}, 10000, 100, "-5000 -5000 12949672 12949672"},
    {"NoPixels",             {0, 0, 0, 0},  {90, 90}, {95, 95},     2,   0, "-20 -20 -10 -10"},
};
// clang-format on

class ZoomInverse : public Zoom, public testing::WithParamInterface<InverseRow> {};

TEST_P(ZoomInverse, GivesPlotterUnits) {
    const InverseRow& row = GetParam();
    HPGLdestroyZoom(TheZoom);
    TheZoom = HPGLinitZoom(row.top.MinX, row.top.MinY, row.top.MaxX, row.top.MaxY);
    TheZoom->StartX = row.start[0];
    TheZoom->StartY = row.start[1];
    TheZoom->CurX = row.current[0];
    TheZoom->CurY = row.current[1];
    ZoomRect rect = {};
    EXPECT_EQ(calcNewZoomRect(TheZoom, row.USize, row.DSize, 100, 100, &rect), 1);
    EXPECT_EQ(textOf(rect), row.view);
    EXPECT_EQ(top(), row.view);
}

INSTANTIATE_TEST_SUITE_P(Rows, ZoomInverse, testing::ValuesIn(INVERSE_ROWS), byRowName);

TEST_F(Zoom, RefusedRectangleMayBeWritten) {
    ZoomRect rect = {1, 2, 3, 4};
    TheZoom->CurX = TheZoom->CurY = 1;
    EXPECT_EQ(calcNewZoomRect(TheZoom, 1, 1000, 0, 0, &rect), 0);
    EXPECT_EQ(textOf(rect), "8000 4000 8000 4000");
}

// ---- back -----------------------------------------------------------------------------------------------------------

TEST_F(Zoom, PopGivesTheRectangleBelow) {
    ZoomRect rect = {};
    drag(100, 200, 300, 400);
    drag(100, 200, 300, 400);
    EXPECT_EQ(HPGLpopZoomRect(TheZoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 1);
    EXPECT_EQ(textOf(rect), "1000 0 3000 2000");
    EXPECT_EQ(depth(), 2u);
}

TEST_F(Zoom, PopNeverRemovesTheWholePicture) {
    ZoomRect rect = {};
    EXPECT_EQ(HPGLpopZoomRect(TheZoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 0);
    EXPECT_EQ(textOf(rect), "0 0 8000 4000");
    EXPECT_EQ(depth(), 1u);
}

TEST_F(Zoom, PopWithoutStackWarns) {
    ZoomRect rect = {1, 2, 3, 4};
    int32_t result = 1;
    EXPECT_EQ(traceOf(1, [&] { result = HPGLpopZoomRect(nullptr, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY); }),
              "WARNING-HPGLpopZoomRect: Zoom == 0\n");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(textOf(rect), "1 2 3 4");
}

TEST_F(Zoom, FlushLeavesTheWholePicture) {
    ZoomRect rect = {};
    for (int i = 0; i < 10; ++i) {
        drag(0, 0, 800, 600);
    }
    EXPECT_EQ(depth(), 11u);
    EXPECT_EQ(HPGLflushZoomStack(TheZoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 1);
    EXPECT_EQ(textOf(rect), "0 0 8000 4000");
    EXPECT_EQ(depth(), 1u);
}

TEST_F(Zoom, TracesTheWayBack) {
    ZoomRect rect = {};
    const auto flush = [&] { HPGLflushZoomStack(TheZoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY); };
    drag(100, 200, 300, 400);
    EXPECT_EQ(traceOf(2, flush),
              "HPGLpopZoomRect: NewZoomRect: 0 0 8000 4000\n"
              "HPGLpopZoomRect: NewZoomRect: 0 0 8000 4000\n"
              "HPGLflushZoomStack: NewZoomRect: 0 0 8000 4000\n");
    EXPECT_EQ(traceOf(1, flush), "");
}

TEST_F(Zoom, TopOfNoneOrEmptyStack) {
    ZoomRect rect = {1, 2, 3, 4};
    EXPECT_EQ(HPGLgetZoomRect(nullptr, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 0);
    HPGLclearList(TheZoom->ZoomStack);
    EXPECT_EQ(HPGLgetZoomRect(TheZoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 0);
    EXPECT_EQ(textOf(rect), "1 2 3 4");
}

TEST_F(Zoom, ResizedWindowKeepsTheView) {
    drag(100, 200, 300, 400);
    script.width = script.height = 404;
    KWMsize();
    EXPECT_EQ(top(), "1000 0 3000 2000");
    EXPECT_EQ(TheDisplay.DSize, 400);
    EXPECT_EQ(TheDisplay.USize, 2000);
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
    TheDisplay.RubberColour = 4;
    const int32_t drawn = HPGLdrawRubberBand(&TheDisplay, row.x1, row.y1, row.x2, row.y2);
    const std::string box = row.box;
    EXPECT_EQ(drawn, box.empty() ? 0 : 1);
    EXPECT_EQ(calls, box.empty() ? "" : "OUTreset\nOUTlinecolour 4\nOUTtrackbox " + box + " 0\nOUTendpaint\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, RubberBand, testing::ValuesIn(BAND_ROWS), byRowName);

}  // namespace
