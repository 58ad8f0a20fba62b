// The polygon buffer: the points of one polygon in the making, as sub-polygons, in scaled plotter units.
//
// Life of one: create, then begin / add / next / close as often as needed, destroy.
// Every operation answers 1 for success and 0 for failure, and 0 when it is handed no buffer or one whose sub-polygons
// could not be allocated.
#pragma once

#include <cassert>
#include <cstdint>

#include "geometry/point.h"

inline constexpr int32_t HPGL_POLYGON_POINTS = 2000;  // room of every sub-polygon

struct HPGLPBufSubPolygon {
    int32_t count;
    HPGLPoint* points;  // room for HPGL_POLYGON_POINTS, owned
};

struct HPGLPBuf {
    int32_t open;                     // a polygon is being built
    int32_t capacity;                 // sub-polygons that have room
    int32_t used;                     // sub-polygons in use, 1 after a begin
    HPGLPBufSubPolygon* subPolygons;  // null when memory was lacking
    HPGLPBufSubPolygon* current;      // being filled, or null
};

// A buffer of n sub-polygons, or of as many as there is memory for; null when there is none for the record itself.
HPGLPBuf* HPGLPBufcreate(int32_t n);
int32_t HPGLPBufDestroy(HPGLPBuf* buf);

// No points, no current sub-polygon, none in use.
int32_t HPGLPBufReset(HPGLPBuf* buf);

// Resets, opens the first sub-polygon and adds a point to it.
int32_t HPGLPBufBegin(HPGLPBuf* buf, int32_t x, int32_t y);

// Whether points can be added.
inline bool HPGLPBufTakesPoints(const HPGLPBuf* buf) {
    return buf != nullptr && buf->subPolygons != nullptr && buf->open != 0 && buf->current != nullptr;
}
// Whether the current sub-polygon would refuse a point.
inline bool HPGLPBufIsFull(const HPGLPBuf* buf) {
    return HPGLPBufTakesPoints(buf) && buf->current->count >= HPGL_POLYGON_POINTS;
}
// The trace line of a point that was not even computed.
void HPGLPBufReportFull();

// Appends one point to the current sub-polygon, which may then be full. A full one refuses it: 0, one trace line,
// nothing stored changes. 0 without a line when the buffer is not open.
inline int32_t HPGLPBufAddPoint(HPGLPBuf* buf, int32_t x, int32_t y) {
    if (!HPGLPBufTakesPoints(buf)) return 0;
    if (HPGLPBufIsFull(buf)) {
        HPGLPBufReportFull();
        return 0;
    }
    buf->current->points[buf->current->count++] = {x, y};
    return 1;
}

// Appends k points, for which there must be room, and answers where: the caller writes them.
inline HPGLPoint* HPGLPBufAppend(HPGLPBuf* buf, int32_t k) {
    assert(HPGLPBufTakesPoints(buf) && buf->current->count + k <= HPGL_POLYGON_POINTS);
    HPGLPoint* points = buf->current->points + buf->current->count;
    buf->current->count += k;
    return points;
}

// Appends k points; refused unless the count is below 2000 - k, so that a run never takes the last place. That it
// differs from a single point is deliberate.
int32_t HPGLPBufAddPoints(HPGLPBuf* buf, const HPGLPoint* points, int32_t k);

// Appends the first point again where the last one differs from it.
int32_t HPGLPBufCloseSubPolygon(HPGLPBuf* buf);
// Closes the current sub-polygon and the buffer.
int32_t HPGLPBufClose(HPGLPBuf* buf);
// Closes the current sub-polygon and goes on to the next; 0, and nothing changes, when there is none.
int32_t HPGLPBufNextSubPolygon(HPGLPBuf* buf);

// Points (the buffer's own) and count of the current sub-polygon.
int32_t HPGLPBufGetActual(const HPGLPBuf* buf, const HPGLPoint** points, int32_t* count);
// The same of sub-polygon i, which must be below the number in use.
int32_t HPGLPBufGetSubPolygon(const HPGLPBuf* buf, int32_t i, const HPGLPoint** points, int32_t* count);
// The first point of the current sub-polygon; 0 when it has none.
int32_t HPGLPBufFirstPoint(const HPGLPBuf* buf, HPGLPoint* point);

int32_t HPGLPBufIsOpen(const HPGLPBuf* buf);
int32_t HPGLPBufMaxPoints(const HPGLPBuf* buf);  // 2000, whatever the buffer
int32_t HPGLPBufCapacity(const HPGLPBuf* buf);
int32_t HPGLPBufUsed(const HPGLPBuf* buf);
int32_t HPGLPBufPoints(const HPGLPBuf* buf);  // of all sub-polygons in use
