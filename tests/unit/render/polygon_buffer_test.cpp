// The polygon buffer: operations, bounds and lack of memory.
#include "render/polygon_buffer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "failing_allocator.h"
#include "picture_text.h"

namespace {

constexpr char POINT_REFUSED[] = "WARINIG-HPGLPBufAddPoint: actual Polygon is full\n";
constexpr char RUN_REFUSED[] = "WARNING-HPGLPBufAddPoints: actual Polygon is full\n";

struct Destroy {
    void operator()(HPGLPBuf* buf) const { HPGLPBufDestroy(buf); }
};
using Buffer = std::unique_ptr<HPGLPBuf, Destroy>;

// A begun buffer that holds `count` points: (0, 0), (1, 0), (2, 0) …
Buffer holding(int32_t count, int32_t capacity = 1) {
    Buffer buf(HPGLPBufcreate(capacity));
    HPGLPBufBegin(buf.get(), 0, 0);
    for (int32_t x = 1; x < count; ++x) {
        EXPECT_EQ(HPGLPBufAddPoint(buf.get(), x, 0), 1);
    }
    return buf;
}

std::string pointsOf(const HPGLPBuf* buf) {
    const HPGLPoint* points = nullptr;
    int32_t count = 0;
    std::string text;
    if (HPGLPBufGetActual(buf, &points, &count) == 0) return "none";
    for (int32_t i = 0; i < count; ++i) {
        text += std::to_string(points[i].x);
        text += ',';
        text += std::to_string(points[i].y);
        text += ' ';
    }
    return text;
}

int32_t countOf(const HPGLPBuf* buf) {
    const HPGLPoint* points = nullptr;
    int32_t count = -1;
    HPGLPBufGetActual(buf, &points, &count);
    return count;
}

class PolygonBuffer : public testing::Test {
  protected:
    FreshViewer viewer;
    failing_allocator::Guard guard;
};

// ---- life -----------------------------------------------------------------------------------------------------------

TEST_F(PolygonBuffer, IsMadeClosedAndEmpty) {
    const Buffer buf(HPGLPBufcreate(256));
    EXPECT_EQ(HPGLPBufIsOpen(buf.get()), 0);
    EXPECT_EQ(HPGLPBufCapacity(buf.get()), 256);
    EXPECT_EQ(HPGLPBufUsed(buf.get()), 0);
    EXPECT_EQ(HPGLPBufMaxPoints(buf.get()), 2000);
}

TEST_F(PolygonBuffer, BeginsWithOnePoint) {
    const Buffer buf(HPGLPBufcreate(2));
    EXPECT_EQ(HPGLPBufBegin(buf.get(), 3, -4), 1);
    EXPECT_EQ(HPGLPBufIsOpen(buf.get()), 1);
    EXPECT_EQ(HPGLPBufUsed(buf.get()), 1);
    EXPECT_EQ(pointsOf(buf.get()), "3,-4 ");
}

TEST_F(PolygonBuffer, BeginsAnew) {
    const Buffer buf = holding(3, 2);
    HPGLPBufNextSubPolygon(buf.get());
    HPGLPBufAddPoint(buf.get(), 9, 9);
    EXPECT_EQ(HPGLPBufBegin(buf.get(), 7, 7), 1);
    EXPECT_EQ(HPGLPBufUsed(buf.get()), 1);
    EXPECT_EQ(pointsOf(buf.get()), "7,7 ");
    HPGLPBufNextSubPolygon(buf.get());
    EXPECT_EQ(pointsOf(buf.get()), "");
}

TEST_F(PolygonBuffer, ResetEmptiesEverySubPolygon) {
    const Buffer buf = holding(3, 2);
    const HPGLPoint* points = nullptr;
    int32_t count = -1;
    EXPECT_EQ(HPGLPBufReset(buf.get()), 1);
    EXPECT_EQ(HPGLPBufUsed(buf.get()), 0);
    EXPECT_EQ(buf->current, nullptr);
    EXPECT_EQ(HPGLPBufGetSubPolygon(buf.get(), 0, &points, &count), 1);
    EXPECT_EQ(count, 0);
    HPGLPoint first = {};
    EXPECT_EQ(HPGLPBufFirstPoint(buf.get(), &first), 0);
}

// ---- points ---------------------------------------------------------------------------------------------------------

TEST_F(PolygonBuffer, TakesTwoThousandSinglePoints) {
    const Buffer buf = holding(2000);
    EXPECT_EQ(countOf(buf.get()), 2000);
    int32_t result = 1;
    EXPECT_EQ(traceOf(1, [&] { result = HPGLPBufAddPoint(buf.get(), 5, 5); }), POINT_REFUSED);
    EXPECT_EQ(traceOf(0, [&] { HPGLPBufAddPoint(buf.get(), 5, 5); }), "");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(countOf(buf.get()), 2000);
}

TEST_F(PolygonBuffer, KnowsWhenItIsFull) {
    const Buffer buf = holding(1999);
    EXPECT_FALSE(HPGLPBufIsFull(buf.get()));
    HPGLPBufAddPoint(buf.get(), 1, 1);
    EXPECT_TRUE(HPGLPBufIsFull(buf.get()));
}

struct RunRow {
    int32_t held, run;
    bool taken;
};

// A run needs the count to be below 2000 - k; so it never takes the last place.
constexpr RunRow RUN_ROWS[] = {{1990, 10, false}, {1989, 10, true}, {1999, 1, false}, {1998, 1, true},
                               {1, 1999, false},  {1, 1998, true},  {1, 2000, false}, {2000, 0, false}};

TEST_F(PolygonBuffer, TakesRunsBelowTheLastPlace) {
    for (const RunRow& row : RUN_ROWS) {
        const Buffer buf = holding(row.held);
        const std::vector<HPGLPoint> points(static_cast<size_t>(row.run), HPGLPoint{7, 8});
        int32_t result = -1;
        const auto add = [&] { result = HPGLPBufAddPoints(buf.get(), points.data(), row.run); };
        EXPECT_EQ(traceOf(1, add), row.taken ? "" : RUN_REFUSED) << row.held << " + " << row.run;
        EXPECT_EQ(result, row.taken ? 1 : 0);
        EXPECT_EQ(countOf(buf.get()), row.taken ? row.held + row.run : row.held);
    }
}

TEST_F(PolygonBuffer, RefusesQuietlyWhenNotOpen) {
    const Buffer buf(HPGLPBufcreate(2));
    const HPGLPoint point = {1, 1};
    EXPECT_EQ(traceOf(3,
                      [&] {
                          EXPECT_EQ(HPGLPBufAddPoint(buf.get(), 1, 1), 0);
                          EXPECT_EQ(HPGLPBufAddPoints(buf.get(), &point, 1), 0);
                          EXPECT_EQ(HPGLPBufCloseSubPolygon(buf.get()), 0);
                          EXPECT_EQ(HPGLPBufClose(buf.get()), 0);
                          EXPECT_EQ(HPGLPBufNextSubPolygon(buf.get()), 0);
                      }),
              "");
}

// ---- closing --------------------------------------------------------------------------------------------------------

TEST_F(PolygonBuffer, ClosingAddsTheFirstPoint) {
    const Buffer buf = holding(3);
    EXPECT_EQ(HPGLPBufCloseSubPolygon(buf.get()), 1);
    EXPECT_EQ(pointsOf(buf.get()), "0,0 1,0 2,0 0,0 ");
    EXPECT_EQ(HPGLPBufCloseSubPolygon(buf.get()), 1);
    EXPECT_EQ(countOf(buf.get()), 4);
    EXPECT_EQ(HPGLPBufIsOpen(buf.get()), 1);
}

TEST_F(PolygonBuffer, ClosingComparesBothCoordinates) {
    const Buffer buf = holding(2);
    HPGLPBufAddPoint(buf.get(), 0, 5);
    HPGLPBufCloseSubPolygon(buf.get());
    EXPECT_EQ(pointsOf(buf.get()), "0,0 1,0 0,5 0,0 ");
}

TEST_F(PolygonBuffer, ClosingASinglePointAddsNothing) {
    const Buffer buf = holding(1);
    EXPECT_EQ(HPGLPBufCloseSubPolygon(buf.get()), 1);
    EXPECT_EQ(countOf(buf.get()), 1);
}

TEST_F(PolygonBuffer, ClosingAFullOneSucceeds) {
    const Buffer buf = holding(2000);
    int32_t result = 0;
    EXPECT_EQ(traceOf(1, [&] { result = HPGLPBufClose(buf.get()); }), POINT_REFUSED);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(HPGLPBufIsOpen(buf.get()), 0);
    EXPECT_EQ(countOf(buf.get()), 2000);
}

TEST_F(PolygonBuffer, ClosingKeepsThePoints) {
    const Buffer buf = holding(2);
    EXPECT_EQ(HPGLPBufClose(buf.get()), 1);
    EXPECT_EQ(pointsOf(buf.get()), "0,0 1,0 0,0 ");
    HPGLPoint first = {9, 9};
    EXPECT_EQ(HPGLPBufFirstPoint(buf.get(), &first), 1);
    EXPECT_EQ(first.x, 0);
    EXPECT_EQ(HPGLPBufClose(buf.get()), 0);
}

TEST_F(PolygonBuffer, NextClosesThePresentOne) {
    const Buffer buf = holding(3, 2);
    const HPGLPoint* points = nullptr;
    int32_t count = 0;
    EXPECT_EQ(HPGLPBufNextSubPolygon(buf.get()), 1);
    EXPECT_EQ(HPGLPBufUsed(buf.get()), 2);
    EXPECT_EQ(pointsOf(buf.get()), "");
    EXPECT_EQ(HPGLPBufGetSubPolygon(buf.get(), 0, &points, &count), 1);
    EXPECT_EQ(count, 4);
}

TEST_F(PolygonBuffer, NextFailsAtItsCapacity) {
    const Buffer buf = holding(3, 1);
    EXPECT_EQ(HPGLPBufNextSubPolygon(buf.get()), 0);
    EXPECT_EQ(pointsOf(buf.get()), "0,0 1,0 2,0 ");
    EXPECT_EQ(HPGLPBufUsed(buf.get()), 1);
}

// ---- without a buffer, without memory -------------------------------------------------------------------------------

void expectEverythingFails(HPGLPBuf* buf) {
    const HPGLPoint* points = nullptr;
    HPGLPoint point = {};
    int32_t count = 0;
    EXPECT_EQ(HPGLPBufReset(buf), 0);
    EXPECT_EQ(HPGLPBufBegin(buf, 1, 1), 0);
    EXPECT_EQ(HPGLPBufAddPoint(buf, 1, 1), 0);
    EXPECT_EQ(HPGLPBufAddPoints(buf, &point, 1), 0);
    EXPECT_EQ(HPGLPBufCloseSubPolygon(buf), 0);
    EXPECT_EQ(HPGLPBufClose(buf), 0);
    EXPECT_EQ(HPGLPBufNextSubPolygon(buf), 0);
    EXPECT_EQ(HPGLPBufGetActual(buf, &points, &count), 0);
    EXPECT_EQ(HPGLPBufGetSubPolygon(buf, 0, &points, &count), 0);
    EXPECT_EQ(HPGLPBufFirstPoint(buf, &point), 0);
    EXPECT_EQ(HPGLPBufIsOpen(buf), 0);
    EXPECT_EQ(HPGLPBufCapacity(buf), 0);
    EXPECT_EQ(HPGLPBufUsed(buf), 0);
}

TEST_F(PolygonBuffer, NoneFailsEverywhere) {
    expectEverythingFails(nullptr);
    EXPECT_EQ(HPGLPBufDestroy(nullptr), 0);
}

// Creates while the n-th allocation fails; answers the trace.
std::string createFailing(int allocation, int32_t capacity, Buffer* buf) {
    return traceOf(1, [&] {
        failing_allocator::failAfter(allocation);
        buf->reset(HPGLPBufcreate(capacity));
        failing_allocator::reset();
    });
}

TEST_F(PolygonBuffer, NoRecordGivesNone) {
    Buffer buf;
    EXPECT_EQ(createFailing(0, 4, &buf), "HPGLPBufcreate: no memory to allocate PBuf\n");
    EXPECT_EQ(buf, nullptr);
}

TEST_F(PolygonBuffer, NoArrayFailsEverywhere) {
    Buffer buf;
    EXPECT_EQ(createFailing(1, 4, &buf), "createPolygonBuffer: not enough memory to allocate Polygons\n");
    ASSERT_NE(buf, nullptr);
    expectEverythingFails(buf.get());
}

TEST_F(PolygonBuffer, NoRoomCutsTheCapacity) {
    Buffer buf;
    EXPECT_EQ(createFailing(5, 4, &buf), "createPolygonBuffer: not enough memory to allocate Points\n");
    EXPECT_EQ(HPGLPBufCapacity(buf.get()), 3);
    EXPECT_EQ(HPGLPBufBegin(buf.get(), 1, 1), 1);
    EXPECT_EQ(HPGLPBufNextSubPolygon(buf.get()), 1);
    EXPECT_EQ(HPGLPBufNextSubPolygon(buf.get()), 1);
    EXPECT_EQ(HPGLPBufNextSubPolygon(buf.get()), 0);
}

TEST_F(PolygonBuffer, NoRoomAtAllCannotBegin) {
    Buffer buf;
    createFailing(2, 4, &buf);
    EXPECT_EQ(HPGLPBufCapacity(buf.get()), 0);
    EXPECT_EQ(HPGLPBufBegin(buf.get(), 1, 1), 0);
}

}  // namespace
