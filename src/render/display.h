// The display record: what ties the picture, in plotter units, to the drawing window, in device pixels. The shell owns
// and fills it; drawing reads it.
#pragma once

#include <cstdint>

#include "geometry/scaling.h"
#include "toolkit/out.h"
#include "toolkit/wclr.h"

// As it is made: a valid display without a window.
struct HPGLDisplay : HPGLTransform {
    WHandle Window = 0;       // the drawing child, the first argument of every output call
    WHandle Application = 0;  // owns colour tables
    WHandle FontOwner = 0;    // the object for which label fonts are made

    int32_t RubberColour = 0;  // of the rubber band: the palette's closing entry

    WColour* Palette = nullptr;  // owned; null before the first set-up pass
    WHandle ColourTable = 0;     // made of its entries
    int32_t ColourCount = 0;     // entries of pens
    bool DeviceExists = false;   // the output device has been made; it serves every later picture

    // Room for the polygons of one pass, owned; null outside one.
    OUTPoint* DevicePoints = nullptr;
    int32_t* DeviceCounts = nullptr;
};
