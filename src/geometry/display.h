// The display record: what ties the picture, in plotter units, to the drawing window, in device pixels. One for the
// whole process, filled by the shell, and beside it the other process-wide state that geometry reads.
//
// Plotter units are signed 32-bit with y growing upward; scaled plotter units are plotter units times the factors of
// SC; device units are pixels of the drawing window, y growing upward.
#pragma once

#include <cstdint>

#include "out.h"
#include "parser.h"
#include "wclr.h"

struct ZoomData;

inline constexpr int32_t HPGL_PALETTE_SIZE = 256;  // entries that are allocated
inline constexpr int32_t HPGL_MAX_COLOURS = 64;    // pens that get an entry of their own

// All zero is a valid display without a window.
struct HPGLDisplay {
    WHandle Window;       // the drawing child, the first argument of every output call
    WHandle Application;  // owns colour tables
    WHandle FontOwner;    // the object for which label fonts are made
    WHandle MainObject;   // whose window the drawing child fills

    // The transform; written by the scaling alone.
    int32_t DSizeX, DSizeY;   // usable size of the drawing window, pixels
    int32_t DSize;            // of the deciding axis: DSizeX or DSizeY
    int32_t USize;            // the view's extent on the deciding axis, scaled plotter units
    int32_t MaxX, MaxY;       // upper right corner of the view, scaled plotter units
    double FactorX, FactorY;  // pixels a unit on each axis, for the trace and the choice of the axis

    int32_t RubberColour;  // of the rubber band: the palette's closing entry

    WColour* Palette;     // HPGL_PALETTE_SIZE entries, owned; null before the first set-up pass
    WHandle ColourTable;  // made of them
    int32_t ColourCount;  // entries of pens
    bool DeviceExists;    // the output device has been made; it serves every later picture

    // Room for the polygons of one pass, owned; null outside one.
    OUTPoint* DevicePoints;
    int32_t* DeviceCounts;
};

extern HPGLDisplay TheDisplay;

// The picture shown and its zoom stack; null when there is none.
extern ParseInt* TheParser;
extern ZoomData* TheZoom;

// 1, or -1 while the picture is turned by 180 degrees. It takes effect through SC alone.
extern int32_t RotationSign;

// Limits of the device coordinates of lines: 32 bits, or 16 where the window system can do no more.
extern int32_t CoordMax;
extern int32_t CoordMin;

// Sets the limits from the platform.
void HPGLsetCoordLimits();

// Gives the picture's colour table and palette back.
void HPGLreleaseColours(HPGLDisplay* display);
