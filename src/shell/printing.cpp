#include "shell/printing.h"

#include "render/interpreter.h"
#include "shell/actions.h"
#include "shell/shell_state.h"
#include "toolkit/out.h"
#include "toolkit/pssetup.h"

namespace {

constexpr uint32_t NAME_LENGTH = 127;  // characters of an output's name

struct Choice {
    uint32_t destination;
    uint32_t format;
    char name[NAME_LENGTH + 1];
};

Choice readChoice(WHandle setup) {
    Choice choice = {};
    uint32_t nameSize = NAME_LENGTH;
    PSSETUPqueryValue(setup, PSSETUP_DESTINATION, &choice.destination, nullptr);
    PSSETUPqueryValue(setup, PSSETUP_FORMAT, &choice.format, nullptr);
    PSSETUPqueryValue(setup, PSSETUP_NAME, &nameSize, choice.name);
    return choice;
}

void print() {
    if (!HPGLhavePicture("HPGLprintSetupAction")) return;
    const WHandle child = TheShell.display.Window;
    Choice choice = readChoice(TheShell.printSetup);
    PSSETUPhide(TheShell.printSetup);
    PSSETUPtransDestAndFormatValues(&choice.destination, &choice.format);
    HPGLopenOutputDevice(child, choice.destination, choice.format, choice.name);
    OUTreset(child);
    HPGLinterpretCompactCode(TheShell.parser, &TheShell.display, TheShell.RotationSign);
    OUTendpaint(child);
    OUTclosedevice(child);
}

}  // namespace

void HPGLprintSetupAction(uint32_t notification) {
    switch (notification) {
        case PSSETUP_CANCELLED:
            PSSETUPhide(TheShell.printSetup);
            break;
        case PSSETUP_GONE:
            // Deliberate: the handle is kept, and a later "Print" uses it as it is.
            PSSETUPdestroy(TheShell.printSetup);
            break;
        case PSSETUP_PRINT:
            print();
            break;
        default:
            break;
    }
}

int32_t HPGLopenOutputDevice(WHandle child, uint32_t destination, uint32_t format, const char* name) {
    const void* where = name;
    if (destination == OUT_TO_HOST) where = &TheShell.channel;
    OUTopendevice(child, destination, format, where);
    return 1;
}
