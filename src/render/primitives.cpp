#include "render/primitives.h"

#include <cassert>
#include <cstdlib>

#include "geometry/scaling.h"
#include "trace/trace.h"

namespace {

// Answers how many points were mapped.
int32_t mapPoints(const HPGLDisplay* display, const HPGLPoint* points, int32_t count, OUTPoint* to) {
    const Divisor USize = divisorOf(display->USize);
    for (int32_t i = 0; i < count; ++i) {
        to[i] = {HPGLmapX(display, points[i].x, USize), HPGLmapY(display, points[i].y, USize)};
    }
    return count;
}

void drawOutlines(const HPGLDisplay* display, int32_t width, const HPGLPBuf* buf) {
    for (int32_t i = 0; i < HPGLPBufUsed(buf); ++i) {
        const HPGLPoint* points = nullptr;
        int32_t count = 0;
        HPGLPBufGetSubPolygon(buf, i, &points, &count);
        mapPoints(display, points, count, display->DevicePoints);
        OUTgeomline(display->Window, display->DevicePoints, count, width);
    }
}

void fillPolygons(const HPGLDisplay* display, const HPGLPBuf* buf) {
    OUTPoint* to = display->DevicePoints;
    int32_t polygons = 0;
    for (int32_t i = 0; i < HPGLPBufUsed(buf); ++i) {
        const HPGLPoint* points = nullptr;
        int32_t count = 0;
        HPGLPBufGetSubPolygon(buf, i, &points, &count);
        if (count == 0) continue;
        mapPoints(display, points, count, to);
        to[count] = to[0];
        display->DeviceCounts[polygons++] = count + 1;
        to += count + 1;
    }
    OUTwinsolidpolygons(display->Window, display->DevicePoints, display->DeviceCounts, polygons);
}

// Between the first two of the points, in pixels.
void drawLine(WHandle window, int32_t width, const OUTPoint* ends) {
    const bool thin = width <= 1;
    if (thin) {
        OUTline(window, ends[0].x, ends[0].y, ends[1].x, ends[1].y);
    } else {
        OUTgeomline(window, ends, 2, width);
    }
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGLdrawLine: %s: %d %d %d %d\n", thin ? "Thinline" : "Geomline", ends[0].x,
             ends[0].y, ends[1].x, ends[1].y);
}

}  // namespace

int32_t HPGLdrawLines(const HPGLDisplay* display, int32_t penWidth, const HPGLPoint* points, int32_t count) {
    OUTPoint mapped[HPGL_MAX_RUN];
    assert(count <= HPGL_MAX_RUN);
    if (count > HPGL_MAX_RUN) return 0;
    mapPoints(display, points, count, mapped);
    for (int32_t i = 0; i < count; ++i) {
        mapped[i] = {HPGLclamp(display, mapped[i].x), HPGLclamp(display, mapped[i].y)};
    }
    const int32_t width = HPGLmapLength(display, penWidth);
    for (int32_t i = 1; i < count; ++i) {
        drawLine(display->Window, width, &mapped[i - 1]);
    }
    return 1;
}

int32_t HPGLdrawLine(const HPGLDisplay* display, int32_t penWidth, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    const HPGLPoint points[2] = {{x1, y1}, {x2, y2}};
    return HPGLdrawLines(display, penWidth, points, 2);
}

int32_t HPGLdrawBox(const HPGLDisplay* display, int32_t penWidth, int32_t x, int32_t y, int32_t width, int32_t height,
                    bool fill) {
    const int32_t left = HPGLmapX(display, x);
    const int32_t bottom = HPGLmapY(display, y);
    const int32_t w = HPGLmapLength(display, width);
    const int32_t h = HPGLmapLength(display, height);
    const int32_t lineWidth = HPGLmapLength(display, penWidth);
    if (fill) {
        OUTboxr1(display->Window, left, bottom, w, h);
    } else if (lineWidth > 1) {
        const int32_t right = wrapAdd(left, w);
        const int32_t top = wrapAdd(bottom, h);
        const OUTPoint path[5] = {{left, bottom}, {right, bottom}, {right, top}, {left, top}, {left, bottom}};
        OUTgeomline(display->Window, path, 5, lineWidth);
    } else {
        OUTboxr0(display->Window, left, bottom, w, h);
    }
    return 1;
}

int32_t HPGLdrawPolygon(const HPGLDisplay* display, int32_t penWidth, const HPGLPBuf* buf, bool fill) {
    if (display->DevicePoints == nullptr || display->DeviceCounts == nullptr) return 0;
    if (buf == nullptr || buf->subPolygons == nullptr) return 0;
    if (fill) {
        fillPolygons(display, buf);
    } else {
        drawOutlines(display, HPGLmapLength(display, penWidth), buf);
    }
    return 1;
}

int32_t HPGLsetPenColour(const HPGLDisplay* display, int32_t colour) {
    OUTlinecolour(display->Window, colour);
    OUTfillcolour(display->Window, colour);
    return 1;
}

int32_t HPGLallocDeviceArrays(HPGLDisplay* display, int32_t subPolygons, int32_t pointsEach) {
    const size_t points = (static_cast<size_t>(pointsEach) + 2) * static_cast<size_t>(subPolygons);
    HPGLfreeDeviceArrays(display);  // what a pass that ended early has left
    display->DevicePoints = static_cast<OUTPoint*>(malloc(points * sizeof(OUTPoint)));
    display->DeviceCounts = static_cast<int32_t*>(malloc(static_cast<size_t>(subPolygons) * sizeof(int32_t)));
    return display->DevicePoints != nullptr && display->DeviceCounts != nullptr ? 1 : 0;
}

int32_t HPGLfreeDeviceArrays(HPGLDisplay* display) {
    free(display->DevicePoints);
    free(display->DeviceCounts);
    display->DevicePoints = nullptr;
    display->DeviceCounts = nullptr;
    return 1;
}
