// Scaling: one isotropic ratio DSize / USize, chosen so that the whole view fits the window, which is anchored at the
// view's upper right corner. All integer arithmetic is 32-bit, wrapping, truncating toward zero.
//
// Plotter units are signed 32-bit with y growing upward; scaled plotter units are plotter units times the factors of
// SC; device units are pixels of the drawing window, y growing upward.
#pragma once

#include <cstdint>
#include <limits>

#include "geometry/arithmetic.h"

// From scaled plotter units to device units. Written by HPGLsetScaling, but for the sizes and the limits.
struct HPGLTransform {
    int32_t DSizeX = 0, DSizeY = 0;   // usable size of the drawing window, pixels
    int32_t DSize = 0;                // of the deciding axis: DSizeX or DSizeY
    int32_t USize = 0;                // the view's extent on the deciding axis, scaled plotter units
    int32_t MaxX = 0, MaxY = 0;       // upper right corner of the view, scaled plotter units
    double FactorX = 0, FactorY = 0;  // pixels a unit on each axis, for the trace and the choice of the axis

    // Limits of the device coordinates of lines: 32 bits, or 16 where the window system can do no more.
    int32_t CoordMax = std::numeric_limits<int32_t>::max();
    int32_t CoordMin = std::numeric_limits<int32_t>::min();
};

// Pixels of the drawing window that the picture leaves free on each axis.
inline constexpr int32_t HPGL_WINDOW_MARGIN = 4;
// Added to every mapped point, so that the corner lies inside the margin; the zoom's inverse does not take it off,
// which is deliberate.
inline constexpr int32_t HPGL_MAPPING_OFFSET = 2;

// Fits the view (scaled plotter units) into DSizeX x DSizeY. When both axes agree, and when a factor is not a number, Y
// decides. Always 1.
int32_t HPGLsetScaling(HPGLTransform* transform, int32_t MinX, int32_t MinY, int32_t MaxX, int32_t MaxY);

// Point mapping, scaled plotter units to pixels. The product is formed before the division and wraps. USize is the
// transform's: whoever maps many points hands it over, made once.
inline int32_t HPGLmapX(const HPGLTransform* transform, int32_t x, Divisor USize) {
    const int32_t offset = truncDiv(wrapMul(wrapSub(transform->MaxX, x), transform->DSize), USize);
    return wrapAdd(wrapSub(transform->DSizeX, offset), HPGL_MAPPING_OFFSET);
}
inline int32_t HPGLmapY(const HPGLTransform* transform, int32_t y, Divisor USize) {
    const int32_t offset = truncDiv(wrapMul(wrapSub(transform->MaxY, y), transform->DSize), USize);
    return wrapAdd(wrapSub(transform->DSizeY, offset), HPGL_MAPPING_OFFSET);
}
inline int32_t HPGLmapX(const HPGLTransform* transform, int32_t x) {
    return HPGLmapX(transform, x, divisorOf(transform->USize));
}
inline int32_t HPGLmapY(const HPGLTransform* transform, int32_t y) {
    return HPGLmapY(transform, y, divisorOf(transform->USize));
}

// Length mapping: pen widths, boxes, characters.
inline int32_t HPGLmapLength(const HPGLTransform* transform, int32_t length) {
    return truncDiv(wrapMul(transform->DSize, length), transform->USize);
}

// A device coordinate of 0 or less is bounded from below only, a positive one from above only. Both limits are read
// whatever the coordinate, so that a loop over many points reads them once.
inline int32_t HPGLclamp(const HPGLTransform* transform, int32_t v) {
    const int32_t least = transform->CoordMin;
    const int32_t most = transform->CoordMax;
    if (v < 1) return v < least ? least : v;
    return v > most ? most : v;
}
