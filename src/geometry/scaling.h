// Scaling: one isotropic ratio DSize / USize, chosen so that the whole view fits the window, which is anchored at the
// view's upper right corner. All integer arithmetic is 32-bit, wrapping, truncating toward zero.
#pragma once

#include <cstdint>

#include "arithmetic.h"
#include "display.h"

// Pixels of the drawing window that the picture leaves free on each axis.
inline constexpr int32_t HPGL_WINDOW_MARGIN = 4;
// Added to every mapped point, so that the corner lies inside the margin; the zoom's inverse does not take it off,
// which is deliberate.
inline constexpr int32_t HPGL_MAPPING_OFFSET = 2;

// Fits the view (scaled plotter units) into DSizeX x DSizeY. When both axes agree, and when a factor is not a number, Y
// decides. Always 1.
int32_t HPGLsetScaling(HPGLDisplay* display, int32_t MinX, int32_t MinY, int32_t MaxX, int32_t MaxY);

// The window has another size, or the picture another view: the drawing child fills the main object's window, and the
// top of the zoom stack is fitted into it. Without a stack nothing is scaled and the result is 0.
int32_t KWMsize();

// Usable size of the drawing window in pixels. Always 1.
int32_t HPGLqueryDeviceSize(const HPGLDisplay* display, int32_t* width, int32_t* height);

// Point mapping, scaled plotter units to pixels. The product is formed before the division and wraps. USize is the
// display's: whoever maps many points hands it over, made once.
inline int32_t HPGLmapX(const HPGLDisplay* display, int32_t x, Divisor USize) {
    const int32_t offset = truncDiv(wrapMul(wrapSub(display->MaxX, x), display->DSize), USize);
    return wrapAdd(wrapSub(display->DSizeX, offset), HPGL_MAPPING_OFFSET);
}
inline int32_t HPGLmapY(const HPGLDisplay* display, int32_t y, Divisor USize) {
    const int32_t offset = truncDiv(wrapMul(wrapSub(display->MaxY, y), display->DSize), USize);
    return wrapAdd(wrapSub(display->DSizeY, offset), HPGL_MAPPING_OFFSET);
}
inline int32_t HPGLmapX(const HPGLDisplay* display, int32_t x) {
    return HPGLmapX(display, x, divisorOf(display->USize));
}
inline int32_t HPGLmapY(const HPGLDisplay* display, int32_t y) {
    return HPGLmapY(display, y, divisorOf(display->USize));
}

// Length mapping: pen widths, boxes, characters.
inline int32_t HPGLmapLength(const HPGLDisplay* display, int32_t length) {
    return truncDiv(wrapMul(display->DSize, length), display->USize);
}

// A device coordinate of 0 or less is bounded from below only, a positive one from above only.
inline int32_t HPGLclamp(int32_t v) {
    if (v < 1) return v < CoordMin ? CoordMin : v;
    return v > CoordMax ? CoordMax : v;
}
