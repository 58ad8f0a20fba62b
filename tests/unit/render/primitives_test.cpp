// The drawing primitives: mapping, thin or geometric stroke, boxes, polygons.
#include "render/primitives.h"

#include <memory>

#include "failing_allocator.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

using recorder::calls;

// Two plotter units a pixel; (0, 0) lies at pixel (2, 2).
class Primitives : public testing::Test {
  protected:
    Primitives() {
        TheShell.display.DSize = 1;
        TheShell.display.USize = 2;
    }
    ~Primitives() override { HPGLfreeDeviceArrays(&TheShell.display); }
    FreshViewer viewer;
    failing_allocator::Guard guard;
};

struct LineRow : NamedRow {
    int32_t width, x1, y1, x2, y2;
    const char* calls;
};

// clang-format off
constexpr LineRow LINE_ROWS[] = {
    {"Thin",               0,  0, 0, 20, 40, "OUTline 2 2 12 22\n"},
    {"WidthBelowOnePixel", 1,  0, 0, 20, 40, "OUTline 2 2 12 22\n"},
    {"WidthOfOnePixel",    3,  0, 0, 20, 40, "OUTline 2 2 12 22\n"},
    {"WidthOfTwoPixels",   4,  0, 0, 20, 40, "OUTgeomline 2 2 2 2 12 22\n"},
    {"NegativeWidth",     -9,  0, 0, 20, 40, "OUTline 2 2 12 22\n"},
    {"TowardTheCorner",    0, -3, 3,  0,  0, "OUTline 1 3 2 2\n"},
};

constexpr LineRow BOX_ROWS[] = {
    {"Thin",               3,  4, 6, 20, 41, "OUTboxr0 4 5 10 20\n"},
    {"Wide",               4,  4, 6, 20, 41, "OUTgeomline 2 5 4 5 14 5 14 25 4 25 4 5\n"},
    {"NegativeSize",       0,  4, 6, -5, -7, "OUTboxr0 4 5 -2 -3\n"},
    {"NoSize",             0,  4, 6,  1,  0, "OUTboxr0 4 5 0 0\n"},
};
// clang-format on

class Lines : public Primitives, public testing::WithParamInterface<LineRow> {};

TEST_P(Lines, AreMapped) {
    const LineRow& row = GetParam();
    EXPECT_EQ(HPGLdrawLine(&TheShell.display, row.width, row.x1, row.y1, row.x2, row.y2), 1);
    EXPECT_EQ(calls, row.calls);
}

INSTANTIATE_TEST_SUITE_P(Rows, Lines, testing::ValuesIn(LINE_ROWS), byRowName);

class Boxes : public Primitives, public testing::WithParamInterface<LineRow> {};

TEST_P(Boxes, AreMapped) {
    const LineRow& row = GetParam();
    EXPECT_EQ(HPGLdrawBox(&TheShell.display, row.width, row.x1, row.y1, row.x2, row.y2, false), 1);
    EXPECT_EQ(calls, row.calls);
}

INSTANTIATE_TEST_SUITE_P(Rows, Boxes, testing::ValuesIn(BOX_ROWS), byRowName);

TEST_F(Primitives, LineTracesItsStroke) {
    const auto thin = [] { HPGLdrawLine(&TheShell.display, 0, 0, 0, 20, 40); };
    const auto wide = [] { HPGLdrawLine(&TheShell.display, 4, 0, 0, 20, 40); };
    EXPECT_EQ(traceOf(3, thin), "HPGLdrawLine: Thinline: 2 2 12 22\n");
    EXPECT_EQ(traceOf(3, wide), "HPGLdrawLine: Geomline: 2 2 12 22\n");
    EXPECT_EQ(traceOf(2, wide), "");
}

TEST_F(Primitives, LineIsClamped) {
    TheShell.display.CoordMin = -32768;
    TheShell.display.CoordMax = 32767;
    HPGLdrawLine(&TheShell.display, 0, -200000, 200000, 3, -3);
    HPGLdrawLine(&TheShell.display, 4, -200000, 200000, 3, -4);
    EXPECT_EQ(calls, "OUTline -32768 32767 3 1\nOUTgeomline 2 2 -32768 32767 3 0\n");
}

TEST_F(Primitives, OnlyLinesAreClamped) {
    TheShell.display.CoordMin = -32768;
    TheShell.display.CoordMax = 32767;
    HPGLdrawBox(&TheShell.display, 0, 200000, -200000, 100000, 100000, false);
    EXPECT_EQ(calls, "OUTboxr0 100002 -99998 50000 50000\n");
}

TEST_F(Primitives, LinesAreNotClampedElsewhere) {
    HPGLdrawLine(&TheShell.display, 0, -200000, 200000, 0, 0);
    EXPECT_EQ(calls, "OUTline -99998 100002 2 2\n");
}

TEST_F(Primitives, ProductsWrap) {
    TheShell.display.DSize = 10000;
    TheShell.display.USize = 100;
    HPGLdrawLine(&TheShell.display, 0, -300000, 0, 0, 0);
    HPGLdrawBox(&TheShell.display, 300000, 0, 0, 300000, 0, false);
    EXPECT_EQ(calls, "OUTline 12949674 2 2 2\nOUTboxr0 2 2 -12949672 0\n");
}

TEST_F(Primitives, FilledBoxIgnoresTheWidth) {
    EXPECT_EQ(HPGLdrawBox(&TheShell.display, 100, 4, 6, 20, 41, true), 1);
    EXPECT_EQ(calls, "OUTboxr1 4 5 10 20\n");
}

TEST_F(Primitives, ColourIsForLinesAndFills) {
    EXPECT_EQ(HPGLsetPenColour(&TheShell.display, 7), 1);
    EXPECT_EQ(calls, "OUTlinecolour 7\nOUTfillcolour 7\n");
}

// ---- polygons -------------------------------------------------------------------------------------------------------

struct Destroy {
    void operator()(HPGLPBuf* buf) const { HPGLPBufDestroy(buf); }
};

class Polygons : public Primitives {
  protected:
    // A triangle, an empty sub-polygon and a point.
    Polygons() : buf(HPGLPBufcreate(3)) {
        HPGLallocDeviceArrays(&TheShell.display, 256, 2000);
        HPGLPBufBegin(buf.get(), 0, 0);
        HPGLPBufAddPoint(buf.get(), 20, 0);
        HPGLPBufAddPoint(buf.get(), 20, 20);
        HPGLPBufNextSubPolygon(buf.get());
        HPGLPBufNextSubPolygon(buf.get());
        HPGLPBufAddPoint(buf.get(), 40, 40);
        calls.clear();
    }
    std::unique_ptr<HPGLPBuf, Destroy> buf;
};

TEST_F(Polygons, OutlinesAreGeometricWhateverTheWidth) {
    EXPECT_EQ(HPGLdrawPolygon(&TheShell.display, 0, buf.get(), false), 1);
    EXPECT_EQ(calls, "OUTgeomline 0 4 2 2 12 2 12 12 2 2\nOUTgeomline 0 0\nOUTgeomline 0 1 22 22\n");
    calls.clear();
    HPGLdrawPolygon(&TheShell.display, 3, buf.get(), false);
    EXPECT_TRUE(calls.starts_with("OUTgeomline 1 4 ")) << calls;
}

TEST_F(Polygons, FillsAreOneAreaWithFirstPointsRepeated) {
    EXPECT_EQ(HPGLdrawPolygon(&TheShell.display, 50, buf.get(), true), 1);
    EXPECT_EQ(calls, "OUTwinsolidpolygons 2 5 2 2 2 12 2 12 12 2 2 2 2 22 22 22 22\n");
}

TEST_F(Polygons, OpenTriangleBecomesFourPoints) {
    HPGLPBufBegin(buf.get(), 0, 0);
    HPGLPBufAddPoint(buf.get(), 20, 0);
    HPGLPBufAddPoint(buf.get(), 20, 20);
    HPGLdrawPolygon(&TheShell.display, 0, buf.get(), true);
    EXPECT_EQ(calls, "OUTwinsolidpolygons 1 4 2 2 12 2 12 12 2 2\n");
}

TEST_F(Polygons, EmptyBufferIsFilledWithNothing) {
    HPGLPBufReset(buf.get());
    HPGLdrawPolygon(&TheShell.display, 0, buf.get(), false);
    EXPECT_EQ(calls, "");
    HPGLdrawPolygon(&TheShell.display, 0, buf.get(), true);
    EXPECT_EQ(calls, "OUTwinsolidpolygons 0\n");
}

TEST_F(Polygons, AreNotClamped) {
    TheShell.display.CoordMin = -32768;
    TheShell.display.CoordMax = 32767;
    HPGLPBufBegin(buf.get(), 200000, -200000);
    HPGLdrawPolygon(&TheShell.display, 0, buf.get(), false);
    EXPECT_EQ(calls, "OUTgeomline 0 1 100002 -99998\n");
}

TEST_F(Polygons, NeedTheDeviceArrays) {
    HPGLfreeDeviceArrays(&TheShell.display);
    EXPECT_EQ(HPGLdrawPolygon(&TheShell.display, 0, buf.get(), false), 0);
    EXPECT_EQ(HPGLdrawPolygon(&TheShell.display, 0, buf.get(), true), 0);
    EXPECT_EQ(calls, "");
}

TEST_F(Polygons, FillEverySubPolygonToTheLastPlace) {
    buf.reset(HPGLPBufcreate(256));
    HPGLPBufBegin(buf.get(), 0, 0);
    for (int32_t polygon = 0; polygon < 256; ++polygon) {
        if (polygon > 0) {
            HPGLPBufNextSubPolygon(buf.get());
        }
        while (!HPGLPBufIsFull(buf.get())) {
            HPGLPBufAddPoint(buf.get(), 0, 0);
        }
    }
    EXPECT_EQ(HPGLdrawPolygon(&TheShell.display, 0, buf.get(), true), 1);
    EXPECT_TRUE(calls.starts_with("OUTwinsolidpolygons 256 2001 2001 "));
}

TEST_F(Primitives, DeviceArraysAreAllOrNothing) {
    for (const int failing : {0, 1}) {
        failing_allocator::failAfter(failing);
        EXPECT_EQ(HPGLallocDeviceArrays(&TheShell.display, 256, 2000), 0);
        failing_allocator::reset();
        HPGLfreeDeviceArrays(&TheShell.display);
    }
    EXPECT_EQ(HPGLallocDeviceArrays(&TheShell.display, 256, 2000), 1);
    EXPECT_EQ(HPGLfreeDeviceArrays(&TheShell.display), 1);
    EXPECT_EQ(TheShell.display.DevicePoints, nullptr);
    EXPECT_EQ(TheShell.display.DeviceCounts, nullptr);
}

TEST_F(Primitives, DeviceArraysHaveTheirSize) {
    failing_allocator::failSize(std::size_t{2002} * 256 * 8);
    EXPECT_EQ(HPGLallocDeviceArrays(&TheShell.display, 256, 2000), 0);
    HPGLfreeDeviceArrays(&TheShell.display);
    failing_allocator::failSize(1024);
    EXPECT_EQ(HPGLallocDeviceArrays(&TheShell.display, 256, 2000), 0);
}

}  // namespace
