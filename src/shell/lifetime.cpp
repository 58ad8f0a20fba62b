#include "shell/lifetime.h"

#include <cstdlib>

#include "geometry/zoom.h"
#include "shell/drawing_window.h"
#include "shell/function_keys.h"
#include "shell/intake.h"
#include "shell/main_loop.h"
#include "shell/main_window.h"
#include "shell/menus.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"
#include "shell/texts.h"
#include "shell/toolkit_start.h"
#include "toolkit/actbar.h"
#include "toolkit/cont.h"
#include "toolkit/helpl.h"
#include "toolkit/hlp.h"
#include "toolkit/out.h"
#include "toolkit/pssetup.h"
#include "toolkit/shl.h"
#include "toolkit/wd.h"
#include "toolkit/wi.h"
#include "trace/trace.h"

namespace {

constexpr char APPLICATION[] = "HPGL";
constexpr int32_t CONFIGURATION_SIZE = 128;
constexpr uint32_t SHELL_FLAGS = 3728;  // the toolkit's own

struct Configuration {
    const char* echo;   // "LOGF": base of the echo file's name
    const char* trace;  // "INST": base of the trace file's name
    char buffer[CONFIGURATION_SIZE];
};

void readConfiguration(WHandle app, Configuration* configuration) {
    constexpr const char* keys[] = {"LANG", "LOGF", "INST"};  // the first is the toolkit's own affair
    const char* values[] = {nullptr, nullptr, nullptr};
    WIstdinit_cfg(app, APPLICATION, keys, values, 3, configuration->buffer, CONFIGURATION_SIZE);
    configuration->echo = values[1];
    configuration->trace = values[2];
}

void openLogs(const Configuration& configuration) {
    char traceName[HPGL_LOG_NAME_SIZE] = "";
    if (configuration.echo != nullptr) {
        TRCMakeLogName(TheShell.echoName, sizeof TheShell.echoName, configuration.echo);
    }
    TRCMakeLogName(traceName, sizeof traceName, configuration.trace != nullptr ? configuration.trace : "dev_hp");
    TRCOpenViewer(traceName);
    TRCTraceError(HPGLTraceHandle, "HPGL-Viewer started\n");
}

void createWindows() {
    HPGLShell& shell = TheShell;
    shell.windowClass = Wregisterclass(shell.app, MAINmsgproc);
    shell.object = Wcreateobject(shell.app, shell.windowClass, 0, 1);
    shell.shell = SHLcreate(shell.app, &shell.container, TheShell.texts.title[0], 0, SHELL_FLAGS);
    shell.actionBar = HPGLcreateActionBar(shell.shell, shell.object);
    shell.helpLine = HPGLcreateHelpLine(shell.shell, shell.object);
    CONTstdcreate(shell.container, shell.windowClass, 0, 0, 0, 0);
    CONTdrawbackground(shell.container, 1);
    shell.helpName = WHLPregistername(APPLICATION);
    shell.help = HLPcreate(shell.shell, "Bitmap-Hilfe", 0);
    TheShell.display.Window = Wcreatechild(shell.app, shell.container);
    TheShell.display.Application = shell.app;
    TheShell.display.FontOwner = shell.object;
}

char* openChannel() {
    auto* wdbuff = static_cast<char*>(malloc(WD_RECEIVE_BUFFER));
    if (wdbuff == nullptr) {
        Wfatalerror(TheShell.app, "Kein Speicher fuer wdbuff vorhanden\n");
    } else if (!initTolk(TheShell.app, wdbuff, 8, CallbackData, 1)) {
        Wfatalerror(TheShell.app, "Kann Verbindung zum Tolk nicht initialisieren\n:");
    }
    return wdbuff;
}

void destroyWindows() {
    const HPGLShell& shell = TheShell;
    if (shell.printSetup != 0) PSSETUPdestroy(shell.printSetup);
    if (TheShell.display.Window != 0) {
        OUTdestroy(TheShell.display.Window);
        Wdestroychild(TheShell.display.Window);
    }
    if (shell.help != 0) HLPdestroy(shell.help);
    if (shell.container != 0) CONTdestroy(shell.container);
    if (shell.helpLine != 0) HELPLdestroy(shell.helpLine);
    if (shell.actionBar != 0) ACTBARdestroy(shell.actionBar);
    if (shell.shell != 0) SHLdestroy(shell.shell);
    if (shell.object != 0) Wdestroyobject(shell.object);
}

void destroyPicture() {
    HPGLreleaseColours(&TheShell.display);
    HPGLdestroyParser(TheShell.parser);
    TheShell.parser = nullptr;
    HPGLdestroyZoom(TheShell.zoom);
    TheShell.zoom = nullptr;
}

}  // namespace

int32_t HPGLrunApplication(int32_t count, char** values) {
    auto* textBuffer = static_cast<char*>(malloc(HPGL_TEXT_BUFFER_SIZE));
    HPGLsetCoordLimits(&TheShell.display);
    Configuration configuration = {};
    TheShell.app = HPGLinitToolkit(count, values);
    readConfiguration(TheShell.app, &configuration);
    if (TheShell.app == 0) Wfatalerror(TheShell.app, "Gbtmp: unable to initialize W");
    openLogs(configuration);
    HPGLloadTexts(TheShell.app, textBuffer, &TheShell.texts);
    createWindows();
    char* wdbuff = openChannel();
    TheShell.printSetup = PSSETUPcreate(TheShell.container, TheShell.shell, 5, 0, 0, 2);

    HPGLrunMainLoop(TheShell.app);

    free(wdbuff);
    closeTolk();
    destroyWindows();
    free(textBuffer);
    destroyPicture();
    Wterminate(TheShell.app);
    return 0;
}
