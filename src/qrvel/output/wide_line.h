// Lines wider than a pixel, with round ends.
#pragma once

#include "qrvel/output/pixel_area.h"

namespace qrvel {

// Draws the line between two points, `width` pixels wide (from 2), smoothed at its border; equal points give a disc.
// Consecutive lines join roundly. Any coordinates and widths: the time is bounded by the area.
void drawWideLine(const PixelArea& area, int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t width,
                  uint32_t colour);

}  // namespace qrvel
