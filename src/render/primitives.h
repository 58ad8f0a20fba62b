// The drawing primitives: from scaled plotter units to calls of the output device, and the only place where polygon
// buffers become drawing. Each takes the display record, of which it reads the transform, and answers 1 unless said
// otherwise. A pen width is in scaled plotter units; where it maps to more than one pixel, lines and boxes are drawn as
// geometric lines, otherwise as thin ones.
#pragma once

#include <cstdint>

#include "render/display.h"
#include "render/polygon_buffer.h"

int32_t HPGLdrawLine(const HPGLDisplay* display, int32_t penWidth, int32_t x1, int32_t y1, int32_t x2, int32_t y2);

// The same along a run of points, at most HPGL_MAX_RUN (0 for more): each is mapped once, and all of them before the
// first is drawn, for then no mapping waits for a line.
inline constexpr int32_t HPGL_MAX_RUN = 128;
int32_t HPGLdrawLines(const HPGLDisplay* display, int32_t penWidth, const HPGLPoint* points, int32_t count);

// A box with the corner (x, y); width and height may be negative. Filled, the pen width plays no part.
int32_t HPGLdrawBox(const HPGLDisplay* display, int32_t penWidth, int32_t x, int32_t y, int32_t width, int32_t height,
                    bool fill);

// Every sub-polygon in use: as an outline one geometric line each, whatever the width; filled all as one area, each
// with its first point repeated, empty ones left out. 0 without device arrays or buffer.
int32_t HPGLdrawPolygon(const HPGLDisplay* display, int32_t penWidth, const HPGLPBuf* buf, bool fill);

// The palette index for lines and fills.
int32_t HPGLsetPenColour(const HPGLDisplay* display, int32_t colour);

// Room for the points of one pass: (pointsEach + 2) x subPolygons points and subPolygons counts. 1 when both are there.
int32_t HPGLallocDeviceArrays(HPGLDisplay* display, int32_t subPolygons, int32_t pointsEach);
int32_t HPGLfreeDeviceArrays(HPGLDisplay* display);
