#include "render/redraw_allowance.h"

#include <algorithm>
#include <cstdlib>

#include "geometry/scaling.h"
#include "trace/trace.h"

namespace {

// What is slower than filling, in pixels filled in the same time.
constexpr int64_t SIDE_ROW_WORK = 16;    // a side of an area, in each row that it crosses
constexpr int64_t LINE_EDGE_WORK = 100;  // a line's edge, which is smoothed, in each row and column

struct Window {
    int64_t width, height;  // pixels
};

// From the least to the greatest coordinate.
struct Reach {
    int64_t from, to;
};

Window windowOf(const HPGLDisplay* display) {
    return {int64_t{display->DSizeX} + HPGL_WINDOW_MARGIN, int64_t{display->DSizeY} + HPGL_WINDOW_MARGIN};
}

// Pixels of one axis that a reach covers inside the window.
int64_t covered(Reach reach, int64_t size) {
    return std::max<int64_t>(0, std::min(reach.to, size - 1) - std::max<int64_t>(reach.from, 0) + 1);
}

Reach reachOf(int32_t a, int32_t b, int64_t beyond) {
    return {std::min(a, b) - beyond, std::max(a, b) + beyond};
}

// Calls use(from, to) for every side of every sub-polygon, in pixels; the last point is joined to the first.
template <class Use>
void forEachSide(const HPGLDisplay* display, const HPGLPBuf* buf, Use use) {
    const Divisor USize = divisorOf(display->USize);
    for (int32_t i = 0; i < HPGLPBufUsed(buf); ++i) {
        const HPGLPoint* points = nullptr;
        int32_t count = 0;
        HPGLPBufGetSubPolygon(buf, i, &points, &count);
        OUTPoint from = {};
        if (count == 0) continue;  // PM1 without a point behind it
        for (int32_t k = -1; k < count; ++k) {
            const HPGLPoint& point = points[k < 0 ? count - 1 : k];
            const OUTPoint to = {HPGLmapX(display, point.x, USize), HPGLmapY(display, point.y, USize)};
            if (k >= 0) use(from, to);
            from = to;
        }
    }
}

int64_t workOfFilling(const HPGLDisplay* display, const HPGLPBuf* buf) {
    const Window window = windowOf(display);
    Reach across = {window.width, -1};
    Reach upward = {window.height, -1};
    int64_t rows = 0;
    forEachSide(display, buf, [&](const OUTPoint& from, const OUTPoint& to) {
        across = {std::min<int64_t>(across.from, to.x), std::max<int64_t>(across.to, to.x)};
        upward = {std::min<int64_t>(upward.from, to.y), std::max<int64_t>(upward.to, to.y)};
        rows += covered(reachOf(from.y, to.y, 0), window.height);
    });
    return covered(across, window.width) * covered(upward, window.height) + rows * SIDE_ROW_WORK;
}

// A line covers no more than its box, and no more than its width along two sides of it.
int64_t workOfEdging(const HPGLDisplay* display, int32_t penWidth, const HPGLPBuf* buf) {
    const Window window = windowOf(display);
    const int64_t width = std::max(1, HPGLmapLength(display, penWidth));
    int64_t work = 0;
    forEachSide(display, buf, [&](const OUTPoint& from, const OUTPoint& to) {
        const int64_t across = covered(reachOf(from.x, to.x, width / 2), window.width);
        const int64_t upward = covered(reachOf(from.y, to.y, width / 2), window.height);
        if (across == 0 || upward == 0) return;
        work += std::min(across * upward, (across + upward) * width) + (across + upward) * LINE_EDGE_WORK;
    });
    return work;
}

bool isUsedUp(const RedrawAllowance* allowance) {
    return allowance->points < 0 || allowance->pixels < 0;
}

}  // namespace

RedrawAllowance HPGLredrawAllowance(const CBlockList* blocks) {
    constexpr int64_t pointBytes = 8;
    const int64_t bytes = int64_t{HPGLgetListCount(blocks)} * HPGL_BLOCK_SIZE;
    RedrawAllowance allowance;
    allowance.points = std::max(HPGL_POINTS_AGAIN, bytes / pointBytes * HPGL_POINTS_AGAIN_A_POINT);
    allowance.pixels = std::max(HPGL_PIXELS_AGAIN, bytes * HPGL_PIXELS_AGAIN_A_BYTE);
    return allowance;
}

void HPGLbeginRedraws(RedrawAllowance* allowance) {
    allowance->edged = allowance->filled = false;
}

bool HPGLmayDrawPolygon(RedrawAllowance* allowance, const HPGLDisplay* display, int32_t penWidth, const HPGLPBuf* buf,
                        bool fill, const char* function) {
    bool& drawn = fill ? allowance->filled : allowance->edged;
    if (!drawn) return drawn = true;
    if (isUsedUp(allowance)) return false;
    allowance->points -= HPGLPBufPoints(buf) + HPGLPBufUsed(buf);
    if (allowance->points >= 0) {
        allowance->pixels -= fill ? workOfFilling(display, buf) : workOfEdging(display, penWidth, buf);
    }
    if (!isUsedUp(allowance)) return true;
    TRCTraceError(HPGLTraceHandle, "WARNING-%s: polygons are drawn too often, the rest of them is left out\n",
                  function);
    return false;
}
