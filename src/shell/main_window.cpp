#include "shell/main_window.h"

#include "render/interpreter.h"
#include "shell/actions.h"
#include "shell/drawing_window.h"
#include "shell/mouse_zoom.h"
#include "shell/printing.h"
#include "shell/shell_state.h"
#include "toolkit/info.h"
#include "toolkit/out.h"
#include "trace/trace.h"

namespace {

void paint(WHandle object) {
    // Deliberate: the text names the size handler.
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMsize: InitialDataLoaded: %d\n", TheShell.InitialDataLoaded ? 1 : 0);
    if (!TheShell.InitialDataLoaded || object != TheShell.display.Window) return;
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMpaint\n");
    OUTreset(object);
    if (TheShell.parser != nullptr) HPGLinterpretCompactCode(TheShell.parser, &TheShell.display, TheShell.RotationSign);
    OUTendpaint(object);
}

int32_t zoomEvent(uint32_t button) {
    switch (button) {
        case W_MOUSE_PRESS:
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMmouse: HPGL_BUTTON_DOWN\n");
            return HPGL_BUTTON_DOWN;
        case W_MOUSE_RELEASE:
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMmouse: HPGL_BUTTON_UP\n");
            return HPGL_BUTTON_UP;
        case W_MOUSE_DRAG:
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-KWMmouse: HPGL_BUTTON_DRAG\n");
            return HPGL_BUTTON_DRAG;
        default:
            return HPGL_BUTTON_OTHER;
    }
}

void mouse(uint32_t button) {
    if (!TheShell.InitialDataLoaded) return;
    const int32_t event = zoomEvent(button);
    if (HPGLpushZoomRect(TheShell.zoom, &TheShell.display, event) == 0 || event != HPGL_BUTTON_UP) return;
    ZoomRect view = {};
    HPGLgetZoomRect(TheShell.zoom, &view.MinX, &view.MinY, &view.MaxX, &view.MaxY);
    HPGLsetScaling(&TheShell.display, view.MinX, view.MinY, view.MaxX, view.MaxY);
    HPGLpaintBackground(TheShell.display.Window);
}

void action(uint32_t kind, uint32_t parameter) {
    switch (kind) {
        case W_ACTION_HELP_LINE:
            HPGLuserAction(parameter);
            break;
        case W_ACTION_INFO:
            INFOdestroy(TheShell.info);
            HPGLuserAction(parameter);
            break;
        case W_ACTION_MENU_SPARE:
        case W_ACTION_MENU_HELP:
        case W_ACTION_MENU:
            HPGLmenuAction(kind, parameter);
            break;
        case W_ACTION_PRINT_SETUP:
            HPGLprintSetupAction(parameter);
            break;
        default:
            break;
    }
}

}  // namespace

void MAINmsgproc(WHandle object, uint32_t message, uint32_t first, uint32_t second) {
    switch (message) {
        case W_MSG_SIZE:
            KWMsize();
            break;
        case W_MSG_PAINT:
            paint(object);
            break;
        case W_MSG_MOUSE:
            mouse(first);
            break;
        case W_MSG_ACTION:
            action(first, second);
            break;
        default:
            break;
    }
}
