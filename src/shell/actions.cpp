#include "shell/actions.h"

#include <cstdlib>

#include "geometry/zoom.h"
#include "shell/drawing_window.h"
#include "shell/menus.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"
#include "toolkit/helpl.h"
#include "toolkit/hlp.h"
#include "toolkit/info.h"
#include "toolkit/pssetup.h"
#include "trace/trace.h"

namespace {

using LeaveZoom = int32_t (*)(ZoomData* zoom, int32_t* MinX, int32_t* MinY, int32_t* MaxX, int32_t* MaxY);

// ---- the menu -------------------------------------------------------------------------------------------------------

void goBackTo(LeaveZoom leave) {
    if (!HPGLhavePicture("HPGLmenuAction")) return;
    ZoomRect view = {};
    leave(TheShell.zoom, &view.MinX, &view.MinY, &view.MaxX, &view.MaxY);
    HPGLsetScaling(&TheShell.display, view.MinX, view.MinY, view.MaxX, view.MaxY);
    HPGLpaintBackground(TheShell.display.Window);
}

void rotate() {
    if (!HPGLhavePicture("HPGLmenuAction")) return;
    TheShell.RotationSign = -TheShell.RotationSign;
    HPGLsetupPicture(TheShell.parser, &TheShell.display, TheShell.RotationSign);
    const HPGLGlobal* global = TheShell.parser->global;
    HPGLdestroyZoom(TheShell.zoom);
    TheShell.zoom = HPGLinitZoom(global->MinX, global->MinY, global->MaxX, global->MaxY);
    KWMsize();
    HPGLpaintBackground(TheShell.display.Window);
}

// ---- the help line --------------------------------------------------------------------------------------------------

constexpr uint32_t HELP_LEVEL = 4;

void requestHelp(uint32_t level) {
    if (TheShell.help == 0) {
        Werrorbox(TheShell.app, "No Help available", level);
    } else {
        WHLPhelprequest(TheShell.help, TheShell.helpName, level);
    }
}

void menuOperation(int32_t operation) {
    switch (operation) {
        case 1:
        case 3:
        case 4:
            Wquit(TheShell.app);
            break;
        case 2:
            requestHelp(HELP_LEVEL);
            break;
        default:
            break;
    }
}

}  // namespace

bool HPGLhavePicture(const char* procedure) {
    if (TheShell.parser != nullptr && TheShell.zoom != nullptr) return true;
    TRCTraceError(HPGLTraceHandle, "WARNING-%s: there is no picture, ignore action\n", procedure);
    return false;
}

void HPGLmenuAction(uint32_t /*kind*/, uint32_t item) {
    switch (item) {
        case HPGL_MENU_PRINT:
            PSSETUPshow(TheShell.printSetup);
            break;
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
        case HPGL_MENU_PRODUCT_INFORMATION:
            TheShell.info = INFOcreate(TheShell.container, TheShell.shell, 1, 0, 5, 0);
            break;
        default:
            break;
    }
}

void HPGLuserAction(uint32_t action) {
    char classLetter = ' ';
    const char* argument = ACThandleaction(TheShell.helpLine, action, &classLetter);
    switch (classLetter) {
        case 'M':
        case 'm':
            menuOperation(atoi(argument));
            break;
        case 'Q':
        case 'q':
            Wquit(TheShell.app);
            break;
        case 'S':
        case 's':  // saving is not offered
            break;
        default:
            TRCTraceError(HPGLTraceHandle, "Unbekannte userdefinierte operation: %c   Action:  %s\n", classLetter,
                          argument);
            break;
    }
}
