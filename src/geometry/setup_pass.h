// The set-up pass: one walk over the compact code before a picture is first drawn, and again when it is turned.
#pragma once

#include <cstdint>

#include "display.h"
#include "parser.h"

// Computes the extents of all that is drawn (HPGL_EMPTY_MIN and HPGL_EMPTY_MAX when nothing is), marks the pens that
// the picture selects, stores the colours that it gives them, makes the colour table of the used pens and creates or
// resets the output device. The used flags of pens 0 and 1 are kept, so that palette entry 0 is the white of the
// background. Always 1.
int32_t HPGLsetupPicture(ParseInt* picture, HPGLDisplay* display, int32_t rotationSign);
