// The zoom stack.
#include "geometry/zoom.h"

#include "failing_allocator.h"
#include "hpgl/list.h"
#include "picture_text.h"
#include "rows.h"

namespace {

std::string textOf(const ZoomRect& rect) {
    return std::to_string(rect.MinX) + ' ' + std::to_string(rect.MinY) + ' ' + std::to_string(rect.MaxX) + ' ' +
           std::to_string(rect.MaxY);
}

// A picture of 8000 x 4000 plotter units in 800 x 600 usable pixels: ten units a pixel.
class Zoom : public testing::Test {
  protected:
    ~Zoom() override {
        failing_allocator::reset();
        HPGLdestroyZoom(zoom);
    }

    void startWith(const ZoomRect& rect) {
        HPGLdestroyZoom(zoom);
        zoom = HPGLinitZoom(rect.MinX, rect.MinY, rect.MaxX, rect.MaxY);
    }
    void drag(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
        zoom->StartX = x1;
        zoom->StartY = y1;
        zoom->CurX = x2;
        zoom->CurY = y2;
    }
    void push(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
        ZoomRect rect = {};
        drag(x1, y1, x2, y2);
        EXPECT_EQ(calcNewZoomRect(zoom, 8000, 800, 800, 600, &rect), 1);
    }
    std::string top() {
        ZoomRect rect = {};
        HPGLgetZoomRect(zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY);
        return textOf(rect);
    }
    uint32_t depth() { return HPGLgetListCount(zoom->ZoomStack); }

    FreshViewer viewer;
    ZoomData* zoom = HPGLinitZoom(0, 0, 8000, 4000);
};

// ---- life -----------------------------------------------------------------------------------------------------------

TEST_F(Zoom, StartsWithTheWholePicture) {
    EXPECT_EQ(depth(), 1u);
    EXPECT_EQ(top(), "0 0 8000 4000");
    EXPECT_STREQ(zoom->ZoomStack->name, "zoom");
    EXPECT_EQ(zoom->StartX, 0);
    EXPECT_EQ(zoom->StartY, 0);
    EXPECT_EQ(zoom->CurX, 0);
    EXPECT_EQ(zoom->CurY, 0);
    EXPECT_EQ(zoom->Tracking, 0);
    EXPECT_EQ(zoom->spare, 0);
}

TEST_F(Zoom, KeepsTheFirstRectangleAsItIs) {
    startWith({1073741823, 5, -1073741823, 5});
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
    HPGLclearList(zoom->ZoomStack);
    free(zoom->ZoomStack);
    zoom->ZoomStack = nullptr;
    EXPECT_EQ(HPGLdestroyZoom(zoom), 1);
    zoom = nullptr;
}

std::string traceOfFailedInit(int allocation) {
    return traceOf(1, [&] {
        failing_allocator::failAfter(allocation);
        EXPECT_EQ(HPGLinitZoom(0, 0, 1, 1), nullptr);
    });
}

TEST_F(Zoom, SaysWhatCouldNotBeAllocated) {
    EXPECT_EQ(traceOfFailedInit(0),
              "HPGLinitZoom: not enough memroy for ZoomData (" + std::to_string(sizeof(ZoomData)) + " bytes)\n");
    EXPECT_EQ(traceOfFailedInit(1),
              "HPGLinitZoom: not enough memroy for ZoomStack (" + std::to_string(sizeof(HPGLList)) + " bytes)\n");
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
    startWith(row.top);
    drag(row.start[0], row.start[1], row.current[0], row.current[1]);
    ZoomRect rect = {};
    EXPECT_EQ(calcNewZoomRect(zoom, row.USize, row.DSize, 100, 100, &rect), 1);
    EXPECT_EQ(textOf(rect), row.view);
    EXPECT_EQ(top(), row.view);
}

INSTANTIATE_TEST_SUITE_P(Rows, ZoomInverse, testing::ValuesIn(INVERSE_ROWS), byRowName);

TEST_F(Zoom, RefusedRectangleMayBeWritten) {
    ZoomRect rect = {1, 2, 3, 4};
    zoom->CurX = zoom->CurY = 1;
    EXPECT_EQ(calcNewZoomRect(zoom, 1, 1000, 0, 0, &rect), 0);
    EXPECT_EQ(textOf(rect), "8000 4000 8000 4000");
}

// ---- back -----------------------------------------------------------------------------------------------------------

TEST_F(Zoom, PopGivesTheRectangleBelow) {
    ZoomRect rect = {};
    push(100, 200, 300, 400);
    push(100, 200, 300, 400);
    EXPECT_EQ(HPGLpopZoomRect(zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 1);
    EXPECT_EQ(textOf(rect), "1000 0 3000 2000");
    EXPECT_EQ(depth(), 2u);
}

TEST_F(Zoom, PopNeverRemovesTheWholePicture) {
    ZoomRect rect = {};
    EXPECT_EQ(HPGLpopZoomRect(zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 0);
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
        push(0, 0, 800, 600);
    }
    EXPECT_EQ(depth(), 11u);
    EXPECT_EQ(HPGLflushZoomStack(zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 1);
    EXPECT_EQ(textOf(rect), "0 0 8000 4000");
    EXPECT_EQ(depth(), 1u);
}

TEST_F(Zoom, TracesTheWayBack) {
    ZoomRect rect = {};
    const auto flush = [&] { HPGLflushZoomStack(zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY); };
    push(100, 200, 300, 400);
    EXPECT_EQ(traceOf(2, flush),
              "HPGLpopZoomRect: NewZoomRect: 0 0 8000 4000\n"
              "HPGLpopZoomRect: NewZoomRect: 0 0 8000 4000\n"
              "HPGLflushZoomStack: NewZoomRect: 0 0 8000 4000\n");
    EXPECT_EQ(traceOf(1, flush), "");
}

TEST_F(Zoom, TopOfNoneOrEmptyStack) {
    ZoomRect rect = {1, 2, 3, 4};
    EXPECT_EQ(HPGLgetZoomRect(nullptr, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 0);
    HPGLclearList(zoom->ZoomStack);
    EXPECT_EQ(HPGLgetZoomRect(zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY), 0);
    EXPECT_EQ(textOf(rect), "1 2 3 4");
}

}  // namespace
