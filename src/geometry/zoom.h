// The zoom stack: the views from the whole picture (bottom) to the present one (top), and where the mouse opens
// another.
//
// Life of one, per picture: HPGLinitZoom with the picture's extents, calcNewZoomRect for every rectangle that the mouse
// has opened, HPGLpopZoomRect and HPGLflushZoomStack for the menu, HPGLdestroyZoom.
#pragma once

#include <cstdint>

#include "hpgl/list.h"

// A view in scaled plotter units. Min < Max on both axes, but for the bottom one, which is as the set-up pass gives it.
struct ZoomRect {
    int32_t MinX, MinY, MaxX, MaxY;
};

struct ZoomData {
    HPGLList* ZoomStack;     // named "zoom"; elements are ZoomRect
    int32_t StartX, StartY;  // device pixels where the button went down
    int32_t CurX, CurY;      // device pixels of the last mouse position read
    int32_t Tracking;        // 1 from button down until a button up whose rectangle was taken
    int32_t spare;
};

// A stack with the whole picture's rectangle; null, after an error line, when memory is lacking.
ZoomData* HPGLinitZoom(int32_t MinX, int32_t MinY, int32_t MaxX, int32_t MaxY);

// Frees a stack, or none. Always 1.
int32_t HPGLdestroyZoom(ZoomData* zoom);

// The rectangle between start and current position, pushed on the stack. WinSizeX, WinSizeY: usable window in pixels.
// Refused with a warning (0) when it is empty in pixels or in plotter units; *newRect may have been written then.
int32_t calcNewZoomRect(ZoomData* zoom, int32_t USize, int32_t DSize, int32_t WinSizeX, int32_t WinSizeY,
                        ZoomRect* newRect);

// Removes the top, but never the last rectangle; the outputs become the new top. 1 when one was removed.
int32_t HPGLpopZoomRect(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY);

// Removes all but the last; the outputs become that. Always 1.
int32_t HPGLflushZoomStack(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY);

// The top, which stays; 0 and untouched outputs when there is none.
int32_t HPGLgetZoomRect(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY);
