#include "geometry/zoom.h"

#include <cstdlib>
#include <utility>

#include "geometry/arithmetic.h"
#include "trace/trace.h"

namespace {

// Device to plotter units, relative to a view's upper corner.
int32_t mapBack(int32_t corner, int32_t device, int32_t winSize, int32_t USize, int32_t DSize) {
    return wrapAdd(corner, truncDiv(wrapMul(wrapSub(device, winSize), USize), DSize));
}

bool appendRect(ZoomData* zoom, const ZoomRect& rect) {
    return HPGLappendListElement(zoom->ZoomStack, &rect, 1, sizeof rect, nullptr, nullptr);
}

}  // namespace

ZoomData* HPGLinitZoom(int32_t MinX, int32_t MinY, int32_t MaxX, int32_t MaxY) {
    auto* zoom = static_cast<ZoomData*>(malloc(sizeof(ZoomData)));
    if (zoom == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGLinitZoom: not enough memroy for ZoomData (%d bytes)\n",
                      static_cast<int>(sizeof(ZoomData)));
        return nullptr;
    }
    *zoom = {};
    zoom->ZoomStack = static_cast<HPGLList*>(malloc(sizeof(HPGLList)));
    if (zoom->ZoomStack == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGLinitZoom: not enough memroy for ZoomStack (%d bytes)\n",
                      static_cast<int>(sizeof(HPGLList)));
        free(zoom);
        return nullptr;
    }
    HPGLinitList(zoom->ZoomStack, "zoom");
    appendRect(zoom, {MinX, MinY, MaxX, MaxY});
    TRCTraceInfo(HPGLTraceHandle, "\n\nHPGLinitZoom: Zoom Stack successfully initialized: %d %d %d %d\n", MinX, MinY,
                 MaxX, MaxY);
    return zoom;
}

int32_t HPGLdestroyZoom(ZoomData* zoom) {
    if (zoom != nullptr) {
        HPGLclearList(zoom->ZoomStack);
        free(zoom->ZoomStack);
        free(zoom);
    }
    TRCTraceInfo(HPGLTraceHandle, "\nHPGLdestroyZoom: Zoom Stack successfully destroyed\n");
    return 1;
}

int32_t calcNewZoomRect(ZoomData* zoom, int32_t USize, int32_t DSize, int32_t WinSizeX, int32_t WinSizeY,
                        ZoomRect* newRect) {
    TRCTraceInfo(HPGLTraceHandle, "calcNewZoomRect: USize: %d  DSize: %d  WinSizeX: %d  WinSizeY: %d\n", USize, DSize,
                 WinSizeX, WinSizeY);
    ZoomRect top = {};
    HPGLgetZoomRect(zoom, &top.MinX, &top.MinY, &top.MaxX, &top.MaxY);
    if (zoom->StartX == zoom->CurX || zoom->StartY == zoom->CurY) {
        TRCTraceError(HPGLTraceHandle, "WARNING-calcNewZoomRect: empty ZoomRectangle, will be ignored\n");
        return 0;
    }
    newRect->MinX = mapBack(top.MaxX, zoom->StartX, WinSizeX, USize, DSize);
    newRect->MaxX = mapBack(top.MaxX, zoom->CurX, WinSizeX, USize, DSize);
    newRect->MinY = mapBack(top.MaxY, zoom->StartY, WinSizeY, USize, DSize);
    newRect->MaxY = mapBack(top.MaxY, zoom->CurY, WinSizeY, USize, DSize);
    if (newRect->MinX == newRect->MaxX || newRect->MinY == newRect->MaxY) {
        TRCTraceError(HPGLTraceHandle,
                      "WARNING-calcNewZoomRect: NewZoomRectangle: at least one Dimension is 0 (Width = %d  Height = %d "
                      ")\n",
                      wrapSub(newRect->MinX, newRect->MaxX), wrapSub(newRect->MinY, newRect->MaxY));
        return 0;
    }
    if (newRect->MinX > newRect->MaxX) std::swap(newRect->MinX, newRect->MaxX);
    if (newRect->MinY > newRect->MaxY) std::swap(newRect->MinY, newRect->MaxY);
    TRCTraceInfo(HPGLTraceHandle, "calcNewZoomRect: NewZoomRectangle: %d %d %d %d\n", newRect->MinX, newRect->MinY,
                 newRect->MaxX, newRect->MaxY);
    appendRect(zoom, *newRect);
    return 1;
}

int32_t HPGLpopZoomRect(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY) {
    if (zoom == nullptr) {
        TRCTraceError(HPGLTraceHandle, "WARNING-HPGLpopZoomRect: Zoom == 0\n");
        return 0;
    }
    const bool removed =
        HPGLgetListCount(zoom->ZoomStack) >= 2 && HPGLremoveLastListElement(zoom->ZoomStack, nullptr, nullptr, nullptr);
    if (HPGLgetZoomRect(zoom, MinX, MinY, MaxX, MaxY) != 0) {
        TRCTraceInfo(HPGLTraceHandle, "HPGLpopZoomRect: NewZoomRect: %d %d %d %d\n", *MinX, *MinY, *MaxX, *MaxY);
    }
    return removed ? 1 : 0;
}

int32_t HPGLflushZoomStack(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY) {
    while (HPGLpopZoomRect(zoom, MinX, MinY, MaxX, MaxY) != 0) {
    }
    if (HPGLgetZoomRect(zoom, MinX, MinY, MaxX, MaxY) != 0) {
        TRCTraceInfo(HPGLTraceHandle, "HPGLflushZoomStack: NewZoomRect: %d %d %d %d\n", *MinX, *MinY, *MaxX, *MaxY);
    }
    return 1;
}

int32_t HPGLgetZoomRect(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY) {
    void* data = nullptr;
    if (zoom == nullptr || !HPGLgotoLast(zoom->ZoomStack)) return 0;
    if (!HPGLgetActualListData(zoom->ZoomStack, &data, nullptr, nullptr)) return 0;
    const auto* rect = static_cast<const ZoomRect*>(data);
    *MinX = rect->MinX;
    *MinY = rect->MinY;
    *MaxX = rect->MaxX;
    *MaxY = rect->MaxY;
    return 1;
}
