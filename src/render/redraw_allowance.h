// How much of a pass FP and EP may take by drawing the same polygon again and again.
//
// Two letters draw half a million points, or every pixel of the window, and a hostile file could have them do so for
// hours. So there are bounds, which are ours: the language has none. The first FP and the first EP of each polygon are
// free; what the others draw is counted, in points of the polygon and in pixels of the window.
#pragma once

#include <cstdint>

#include "hpgl/compact_code.h"
#include "render/display.h"
#include "render/polygon_buffer.h"

// A pass may draw as much again as this, or as this much for what its data has room for, whichever is more. Each
// sub-polygon counts as one point besides its own.
inline constexpr int64_t HPGL_POINTS_AGAIN = 20'000'000;
inline constexpr int64_t HPGL_POINTS_AGAIN_A_POINT = 4;
inline constexpr int64_t HPGL_PIXELS_AGAIN = 1'000'000'000;
inline constexpr int64_t HPGL_PIXELS_AGAIN_A_BYTE = 1'000;

// What one pass may still do, and what it has done with the present polygon.
struct RedrawAllowance {
    int64_t points = 0;  // below 0, as pixels: used up
    int64_t pixels = 0;
    bool edged = false;
    bool filled = false;
};

// For one pass over the picture.
RedrawAllowance HPGLredrawAllowance(const CBlockList* blocks);

// Another polygon begins.
void HPGLbeginRedraws(RedrawAllowance* allowance);

// Whether the polygon may be drawn: it is counted, unless it is its first time. False from the first on that is too
// much, with one warning that names the function. penWidth as for HPGLdrawPolygon.
bool HPGLmayDrawPolygon(RedrawAllowance* allowance, const HPGLDisplay* display, int32_t penWidth, const HPGLPBuf* buf,
                        bool fill, const char* function);
