#include "actions.h"

#include "display.h"
#include "main_window.h"
#include "scaling.h"
#include "setup_pass.h"
#include "shell_state.h"
#include "trace.h"
#include "zoom.h"

namespace {

using LeaveZoom = int32_t (*)(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY);

bool havePicture() {
    if (TheParser != nullptr && TheZoom != nullptr) return true;
    TRCTraceError(HPGLTraceHandle, "WARNING-HPGLmenuAction: there is no picture, ignore action\n");
    return false;
}

void goBackTo(LeaveZoom leave) {
    if (!havePicture()) return;
    ZoomRect view = {};
    leave(TheZoom, &view.MinX, &view.MinY, &view.MaxX, &view.MaxY);
    HPGLsetScaling(&TheDisplay, view.MinX, view.MinY, view.MaxX, view.MaxY);
    HPGLpaintBackground(TheDisplay.Window);
}

void rotate() {
    if (!havePicture()) return;
    RotationSign = -RotationSign;
    HPGLsetupPicture(TheParser, &TheDisplay, RotationSign);
    const HPGLGlobal* global = TheParser->global;
    HPGLdestroyZoom(TheZoom);
    TheZoom = HPGLinitZoom(global->MinX, global->MinY, global->MaxX, global->MaxY);
    KWMsize();
    HPGLpaintBackground(TheDisplay.Window);
}

}  // namespace

void HPGLmenuAction(uint32_t /*kind*/, uint32_t item) {
    switch (item) {
        case HPGL_MENU_EXIT:
        case HPGL_MENU_CANCEL:
        case HPGL_MENU_BACK:
            Wquit(TheShell.app);
            break;
        case HPGL_MENU_COMPLETE_PICTURE:
            goBackTo(HPGLflushZoomStack);
            break;
        case HPGL_MENU_LAST_ZOOM:
            goBackTo(HPGLpopZoomRect);
            break;
        case HPGL_MENU_ROTATE:
            rotate();
            break;
        default:
            break;
    }
}
