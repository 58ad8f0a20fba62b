// The mouse that opens a new view, and the rubber band: the box that is drawn meanwhile.
#pragma once

#include <cstdint>

#include "geometry/zoom.h"
#include "render/display.h"

enum ZoomEvent : int32_t { HPGL_BUTTON_DOWN = 1, HPGL_BUTTON_UP = 2, HPGL_BUTTON_DRAG = 3, HPGL_BUTTON_OTHER = 4 };

// One mouse event; positions come from Wgetmousepos. A button up makes the rectangle since the button down the present
// view, unless that is refused: then 0, the view stays, and tracking goes on. 0 too when there is no stack.
int32_t HPGLpushZoomRect(ZoomData* zoom, HPGLDisplay* display, int32_t event);

// Draws the box between two device points, or takes away the same one drawn before. 0 when it is empty.
int32_t HPGLdrawRubberBand(HPGLDisplay* display, int32_t x1, int32_t y1, int32_t x2, int32_t y2);
