#include "scaling.h"

#include "trace.h"
#include "zoom.h"

int32_t HPGLsetScaling(HPGLDisplay* display, int32_t MinX, int32_t MinY, int32_t MaxX, int32_t MaxY) {
    const int32_t width = wrapSub(MaxX, MinX);
    const int32_t height = wrapSub(MaxY, MinY);
    display->FactorX = static_cast<double>(display->DSizeX) / static_cast<double>(width);
    display->FactorY = static_cast<double>(display->DSizeY) / static_cast<double>(height);
    const bool xDecides = display->FactorY > display->FactorX;
    display->DSize = xDecides ? display->DSizeX : display->DSizeY;
    display->USize = xDecides ? width : height;
    display->MaxX = MaxX;
    display->MaxY = MaxY;
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "\nHPGLsetScaling: FactorX:  %f  FactorY:  %f  MaxX:  %ld  MaxY:   %ld\n",
             display->FactorX, display->FactorY, static_cast<long>(MaxX), static_cast<long>(MaxY));
    return 1;
}

int32_t HPGLqueryDeviceSize(const HPGLDisplay* display, int32_t* width, int32_t* height) {
    *width = 0;
    *height = 0;
    OUTquerysize(display->Window, width, height);
    *width = wrapSub(*width, HPGL_WINDOW_MARGIN);
    *height = wrapSub(*height, HPGL_WINDOW_MARGIN);
    return 1;
}

int32_t KWMsize() {
    HPGLDisplay* display = &TheDisplay;
    int32_t width = 0;
    int32_t height = 0;
    Wquerywinsize(display->MainObject, &width, &height);
    Wsetwinpos(display->Window, 0, 0, width, height);
    HPGLqueryDeviceSize(display, &display->DSizeX, &display->DSizeY);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMsize: DSizeX:  %d,  DSizeY:  %d\n", display->DSizeX,
             display->DSizeY);
    ZoomRect view = {};
    const bool found = HPGLgetZoomRect(TheZoom, &view.MinX, &view.MinY, &view.MaxX, &view.MaxY) != 0;
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMsize: MinX:  %d, MinY:  %d, MaxX:  %d, MaxY:  %d\n", view.MinX,
             view.MinY, view.MaxX, view.MaxY);
    return found ? HPGLsetScaling(display, view.MinX, view.MinY, view.MaxX, view.MaxY) : 0;
}
