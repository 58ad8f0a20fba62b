#include "shell/mouse_zoom.h"

#include <algorithm>

#include "shell/drawing_window.h"
#include "trace/trace.h"

namespace {

void drawBand(const ZoomData* zoom, HPGLDisplay* display) {
    HPGLdrawRubberBand(display, zoom->CurX, zoom->CurY, zoom->StartX, zoom->StartY);
}

void readMouse(ZoomData* zoom, const HPGLDisplay* display) {
    Wgetmousepos(display->Window, &zoom->CurX, &zoom->CurY);
}

int32_t buttonDown(ZoomData* zoom, const HPGLDisplay* display) {
    zoom->Tracking = 1;
    readMouse(zoom, display);
    zoom->StartX = zoom->CurX;
    zoom->StartY = zoom->CurY;
    TRCTraceInfo(HPGLTraceHandle, "HPGLpushZoomRect: Button down at %d %d\n", zoom->StartX, zoom->StartY);
    return 1;
}

int32_t buttonDrag(ZoomData* zoom, HPGLDisplay* display) {
    if (zoom->Tracking == 0) return 1;
    drawBand(zoom, display);  // takes the one before away
    readMouse(zoom, display);
    drawBand(zoom, display);
    return 1;
}

int32_t buttonUp(ZoomData* zoom, HPGLDisplay* display) {
    drawBand(zoom, display);
    readMouse(zoom, display);
    TRCTraceInfo(HPGLTraceHandle, "HPGLpushZoomRect: Button up at %d %d\n", zoom->CurX, zoom->CurY);
    int32_t winSizeX = 0;
    int32_t winSizeY = 0;
    HPGLqueryDeviceSize(display, &winSizeX, &winSizeY);
    ZoomRect rect;
    if (calcNewZoomRect(zoom, display->USize, display->DSize, winSizeX, winSizeY, &rect) == 0) return 0;
    zoom->Tracking = 0;
    HPGLsetScaling(display, rect.MinX, rect.MinY, rect.MaxX, rect.MaxY);
    return 1;
}

}  // namespace

int32_t HPGLpushZoomRect(ZoomData* zoom, HPGLDisplay* display, int32_t event) {
    if (zoom == nullptr) return 0;
    switch (event) {
        case HPGL_BUTTON_DOWN:
            return buttonDown(zoom, display);
        case HPGL_BUTTON_UP:
            return buttonUp(zoom, display);
        case HPGL_BUTTON_DRAG:
            return buttonDrag(zoom, display);
        default:
            return 1;
    }
}

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
