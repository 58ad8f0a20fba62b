// The plotter as one pass sees it. For the interpreter and its tests.
#pragma once

#include <cstdint>

#include "geometry/plot_walk.h"
#include "hpgl/parser.h"
#include "render/display.h"
#include "render/polygon_buffer.h"
#include "render/redraw_allowance.h"

// A label font as AD and SD define it. The fields are the kinds 1 to 7 of their parameters, in that order.
struct HPGLFontDef {
    int32_t symbolSet = 277;
    int32_t spacing = 0;
    int32_t characterWidth = 113;   // plotter units a character
    int32_t characterHeight = 162;  // plotter units
    int32_t posture = 0;
    int32_t strokeWeight = 0;
    int32_t typeface = 48;
};

struct HPGLInterpState : HPGLWalk {
    ParseInt* view = nullptr;
    HPGLDisplay* display = nullptr;
    bool polygonMode = false;
    int32_t pen = 1;
    int32_t widthOverride = 0;   // of characters, plotter units; 0: the font's
    int32_t heightOverride = 0;  // likewise
    HPGLFontDef standardFont;
    HPGLFontDef alternateFont;
    const HPGLFontDef* font = &standardFont;
    HPGLPBuf* polygon = nullptr;  // PM: HPGL_MAIN_POLYGONS sub-polygons
    HPGLPBuf* local = nullptr;    // one circle, arc, wedge or curve in the making
    RedrawAllowance redraws;      // of FP and EP
};

inline constexpr int32_t HPGL_MAIN_POLYGONS = 256;
inline constexpr int32_t HPGL_CURVE_SEGMENTS = 20;

// Adds the points of a cubic Bézier curve behind its start: segments + 1 of them, the last one the end.
void HPGLaddBezierPoints(HPGLPBuf* buf, HPGLPoint p0, HPGLPoint p1, HPGLPoint p2, HPGLPoint p3, int32_t segments);
