// The interpreter: the drawing pass over the compact code, run on every paint.
#pragma once

#include <cstdint>

#include "hpgl/parser.h"
#include "render/display.h"

// Draws the picture on the display. flag is the rotation sign, for SC. Resets the width of every pen first; nothing
// else carries over from one pass to the next. 1 when the whole compact code was walked; 0 when a Bézier curve could
// get no buffer, which ends the pass at once.
int32_t HPGLinterpretCompactCode(ParseInt* view, HPGLDisplay* display, int32_t flag);
