#include "render/polygon_buffer.h"

#include <cassert>
#include <cstdlib>
#include <cstring>

#include "trace/trace.h"

namespace {

bool usable(const HPGLPBuf* buf) {
    return buf != nullptr && buf->subPolygons != nullptr;
}

bool samePoint(const HPGLPoint& a, const HPGLPoint& b) {
    return a.x == b.x && a.y == b.y;
}

// Answers for how many sub-polygons there is memory.
int32_t allocatePoints(HPGLPBufSubPolygon* subPolygons, int32_t n) {
    for (int32_t i = 0; i < n; ++i) {
        subPolygons[i].count = 0;
        subPolygons[i].points = static_cast<HPGLPoint*>(malloc(HPGL_POLYGON_POINTS * sizeof(HPGLPoint)));
        if (subPolygons[i].points != nullptr) continue;
        TRCTraceError(HPGLTraceHandle, "createPolygonBuffer: not enough memory to allocate Points\n");
        return i;
    }
    return n;
}

}  // namespace

HPGLPBuf* HPGLPBufcreate(int32_t n) {
    auto* buf = static_cast<HPGLPBuf*>(malloc(sizeof(HPGLPBuf)));
    if (buf == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGLPBufcreate: no memory to allocate PBuf\n");
        return nullptr;
    }
    *buf = {};
    buf->subPolygons = static_cast<HPGLPBufSubPolygon*>(malloc(static_cast<size_t>(n) * sizeof(HPGLPBufSubPolygon)));
    if (buf->subPolygons == nullptr) {
        TRCTraceError(HPGLTraceHandle, "createPolygonBuffer: not enough memory to allocate Polygons\n");
        return buf;
    }
    buf->capacity = allocatePoints(buf->subPolygons, n);
    return buf;
}

int32_t HPGLPBufDestroy(HPGLPBuf* buf) {
    if (buf == nullptr) return 0;
    for (int32_t i = 0; i < buf->capacity; ++i) {
        free(buf->subPolygons[i].points);
    }
    free(buf->subPolygons);
    free(buf);
    return 1;
}

int32_t HPGLPBufReset(HPGLPBuf* buf) {
    if (!usable(buf)) return 0;
    for (int32_t i = 0; i < buf->capacity; ++i) {
        buf->subPolygons[i].count = 0;
    }
    buf->current = nullptr;
    buf->used = 0;
    return 1;
}

int32_t HPGLPBufBegin(HPGLPBuf* buf, int32_t x, int32_t y) {
    if (HPGLPBufReset(buf) == 0 || buf->capacity == 0) return 0;
    buf->open = 1;
    buf->current = buf->subPolygons;
    buf->used = 1;
    return HPGLPBufAddPoint(buf, x, y);
}

void HPGLPBufReportFull() {
    TRCTraceError(HPGLTraceHandle, "WARINIG-HPGLPBufAddPoint: actual Polygon is full\n");
}

int32_t HPGLPBufAddPoints(HPGLPBuf* buf, const HPGLPoint* points, int32_t k) {
    if (!HPGLPBufTakesPoints(buf)) return 0;
    HPGLPBufSubPolygon* current = buf->current;
    if (current->count >= HPGL_POLYGON_POINTS - k) {
        TRCTraceError(HPGLTraceHandle, "WARNING-HPGLPBufAddPoints: actual Polygon is full\n");
        return 0;
    }
    memcpy(current->points + current->count, points, static_cast<size_t>(k) * sizeof(HPGLPoint));
    current->count += k;
    return 1;
}

int32_t HPGLPBufCloseSubPolygon(HPGLPBuf* buf) {
    if (!HPGLPBufTakesPoints(buf)) return 0;
    const HPGLPBufSubPolygon* current = buf->current;
    if (current->count == 0) return 1;
    const HPGLPoint first = current->points[0];
    // Where the closing point is refused, the sub-polygon counts as closed all the same.
    if (!samePoint(first, current->points[current->count - 1])) HPGLPBufAddPoint(buf, first.x, first.y);
    return 1;
}

int32_t HPGLPBufClose(HPGLPBuf* buf) {
    if (HPGLPBufCloseSubPolygon(buf) == 0) return 0;
    buf->open = 0;
    return 1;
}

int32_t HPGLPBufNextSubPolygon(HPGLPBuf* buf) {
    if (!HPGLPBufTakesPoints(buf) || buf->used >= buf->capacity) return 0;
    HPGLPBufCloseSubPolygon(buf);
    buf->current = &buf->subPolygons[buf->used++];
    return 1;
}

int32_t HPGLPBufGetActual(const HPGLPBuf* buf, const HPGLPoint** points, int32_t* count) {
    if (!usable(buf) || buf->current == nullptr) return 0;
    *points = buf->current->points;
    *count = buf->current->count;
    return 1;
}

int32_t HPGLPBufGetSubPolygon(const HPGLPBuf* buf, int32_t i, const HPGLPoint** points, int32_t* count) {
    if (!usable(buf)) return 0;
    assert(i >= 0 && i < buf->capacity);
    *points = buf->subPolygons[i].points;
    *count = buf->subPolygons[i].count;
    return 1;
}

int32_t HPGLPBufFirstPoint(const HPGLPBuf* buf, HPGLPoint* point) {
    if (!usable(buf) || buf->current == nullptr || buf->current->count == 0) return 0;
    *point = buf->current->points[0];
    return 1;
}

int32_t HPGLPBufIsOpen(const HPGLPBuf* buf) {
    return usable(buf) ? buf->open : 0;
}

int32_t HPGLPBufMaxPoints(const HPGLPBuf* /*buf*/) {
    return HPGL_POLYGON_POINTS;
}

int32_t HPGLPBufCapacity(const HPGLPBuf* buf) {
    return usable(buf) ? buf->capacity : 0;
}

int32_t HPGLPBufUsed(const HPGLPBuf* buf) {
    return usable(buf) ? buf->used : 0;
}

int32_t HPGLPBufPoints(const HPGLPBuf* buf) {
    int32_t points = 0;
    for (int32_t i = 0; i < HPGLPBufUsed(buf); ++i) {
        points += buf->subPolygons[i].count;
    }
    return points;
}
