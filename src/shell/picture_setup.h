// The set-up of a picture before it is first drawn, and again when it is turned: extents, colours, output device.
#pragma once

#include <cstdint>

#include "hpgl/parser.h"
#include "render/display.h"

inline constexpr int32_t HPGL_PALETTE_SIZE = 256;  // entries that are allocated
inline constexpr int32_t HPGL_MAX_COLOURS = 64;    // pens that get an entry of their own

// Finds the picture's extents and its pens' colours, makes the colour table of the used pens and creates or resets the
// output device. Always 1.
int32_t HPGLsetupPicture(ParseInt* picture, HPGLDisplay* display, int32_t rotationSign);

// Gives the picture's colour table and palette back.
void HPGLreleaseColours(HPGLDisplay* display);
