#include "shell/drawing_window.h"

#include "platform/windows.h"
#include "shell/shell_state.h"
#include "trace/trace.h"

void HPGLsetCoordLimits(HPGLTransform* transform) {
    constexpr DWORD NT_FAMILY = 2;
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const bool narrow = GetVersionExA(&version) != 0 && version.dwPlatformId != NT_FAMILY;
    transform->CoordMax = narrow ? 32767 : std::numeric_limits<int32_t>::max();
    transform->CoordMin = narrow ? -32768 : std::numeric_limits<int32_t>::min();
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
    HPGLDisplay* display = &TheShell.display;
    int32_t width = 0;
    int32_t height = 0;
    Wquerywinsize(TheShell.object, &width, &height);
    Wsetwinpos(display->Window, 0, 0, width, height);
    HPGLqueryDeviceSize(display, &display->DSizeX, &display->DSizeY);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMsize: DSizeX:  %d,  DSizeY:  %d\n", display->DSizeX,
             display->DSizeY);
    ZoomRect view = {};
    const bool found = HPGLgetZoomRect(TheShell.zoom, &view.MinX, &view.MinY, &view.MaxX, &view.MaxY) != 0;
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMsize: MinX:  %d, MinY:  %d, MaxX:  %d, MaxY:  %d\n", view.MinX,
             view.MinY, view.MaxX, view.MaxY);
    return found ? HPGLsetScaling(display, view.MinX, view.MinY, view.MaxX, view.MaxY) : 0;
}

int32_t HPGLpaintBackground(WHandle child) {
    int32_t width = 0;
    int32_t height = 0;
    OUTquerysize(child, &width, &height);
    OUTreset(child);
    OUTfillcolour(child, 0);
    OUTboxr2(child, 0, 0, width, height);
    Wupdate(child, 1);
    return 1;
}
