// The walk of the set-up pass: once over the compact code before a picture is first drawn, and again when it is turned.
#pragma once

#include <cstdint>

#include "hpgl/parser.h"

// Stores the extents of all that is drawn, in scaled plotter units (HPGL_EMPTY_MIN and HPGL_EMPTY_MAX when nothing is),
// marks the pens that the picture selects and stores the colours that it gives them. The used flags of pens 0 and 1 are
// kept, so that palette entry 0 is the white of the background.
void HPGLfindExtents(ParseInt* picture, int32_t rotationSign);
