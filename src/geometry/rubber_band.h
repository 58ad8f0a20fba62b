// The rubber band: the box that is drawn while the mouse opens a new view.
#pragma once

#include <cstdint>

#include "display.h"

// Draws the box between two device points, or takes away the same one drawn before. 0 when it is empty.
int32_t HPGLdrawRubberBand(HPGLDisplay* display, int32_t x1, int32_t y1, int32_t x2, int32_t y2);
