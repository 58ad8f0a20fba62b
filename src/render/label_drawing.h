// Labels: text in the toolkit's scalable fonts, stretched to the size that the picture gives it.
#pragma once

#include <cstdint>

#include "render/display.h"

// Registers the system's TrueType fonts with the toolkit in a fixed series of sizes, one face a family. Always 1.
int32_t HPGLinitFonts(HPGLDisplay* display);

// Draws `length` characters (no terminator needed) with their baseline's start at (*x, *y), which stay: a label does
// not move the pen. Width of one character and height of capitals like the position in scaled plotter units. Nothing is
// drawn, without a message, where every device font is higher than that. Always 1.
int32_t HPGLdrawLabel(const HPGLDisplay* display, const int32_t* x, const int32_t* y, const char* text, int32_t length,
                      int32_t characterWidth, int32_t characterHeight);

// Sets the size of the text that follows, in pixels; 0 when no device font fits into the height.
int32_t HPGLsetLabelFont(WHandle device, int32_t textWidth, int32_t textHeight);
