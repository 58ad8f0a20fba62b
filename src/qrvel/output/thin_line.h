// Lines of one pixel, straight into the pixels of a surface.
#pragma once

#include "qrvel/output/pixel_area.h"

namespace qrvel {

// A line whose ends both lie inside, and one that is cut to the area.
void drawThinLineInside(const PixelArea& area, int32_t x1, int32_t y1, int32_t x2, int32_t y2, uint32_t colour);
void drawThinLineCut(const PixelArea& area, int32_t x1, int32_t y1, int32_t x2, int32_t y2, uint32_t colour);

// Draws the line between two points, both included. Any coordinates will do: what lies outside is cut off first, so
// the time is bounded by the longer side of the area, and inside exactly the pixels are set that the uncut line has.
// A line and its reverse set the same pixels.
inline void drawThinLine(const PixelArea& area, int32_t x1, int32_t y1, int32_t x2, int32_t y2, uint32_t colour) {
    if (area.contains(x1, y1) && area.contains(x2, y2)) {
        drawThinLineInside(area, x1, y1, x2, y2, colour);
    } else if (!area.isBeside(x1, y1, x2, y2)) {
        drawThinLineCut(area, x1, y1, x2, y2, colour);
    }
}

}  // namespace qrvel
