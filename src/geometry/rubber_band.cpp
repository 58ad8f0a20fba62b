#include "rubber_band.h"

#include <algorithm>

#include "arithmetic.h"

int32_t HPGLdrawRubberBand(HPGLDisplay* display, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    const int32_t left = std::min(x1, x2);
    const int32_t width = wrapSub(std::max(x1, x2), left);
    // Deliberate: the left edge decides about the vertical pair, so that the height can be negative; the device
    // normalises such boxes.
    const bool upward = left <= y2;
    const int32_t bottom = upward ? y1 : y2;
    const int32_t height = upward ? wrapSub(y2, y1) : wrapSub(y1, y2);
    if (width == 0 || height == 0) return 0;
    OUTreset(display->Window);
    OUTlinecolour(display->Window, display->RubberColour);
    OUTtrackbox(display->Window, left, bottom, width, height, 0);
    OUTendpaint(display->Window);
    return 1;
}
