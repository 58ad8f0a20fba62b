// The toolkit without its output device: application, windows, bars, panels, colours, channel.
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "recorder/world.h"
#include "toolkit/actbar.h"
#include "toolkit/cont.h"
#include "toolkit/helpl.h"
#include "toolkit/hlp.h"
#include "toolkit/info.h"
#include "toolkit/pssetup.h"
#include "toolkit/shl.h"
#include "toolkit/w.h"
#include "toolkit/wclr.h"
#include "toolkit/wd.h"
#include "toolkit/wi.h"

using namespace recorder;

namespace {

// Windows that script.mdiClient names.
constexpr uintptr_t MAIN_WINDOW_ID = 0x2000;
constexpr uintptr_t MDI_CLIENT_ID = 0x2001;
constexpr uintptr_t ACCELERATOR_TABLE = 0x2002;

// -I=number and -P=number, letters in either case.
void takeNotification(const char* argument) {
    if (std::strlen(argument) < 4 || argument[0] != '-' || argument[2] != '=') return;
    const char* value = argument + 3;
    switch (argument[1]) {
        case 'I':
        case 'i':
            world.variables.notifyId = static_cast<uint32_t>(std::atoi(value));
            break;
        case 'P':
        case 'p':
            world.variables.notifyWindow = systemHandle<void*>(static_cast<uintptr_t>(std::atol(value)));
            break;
        default:
            break;
    }
}

// Copies values one behind the other into `buffer`. A key without a value, or without room for it, gives null.
void fillByKey(const std::map<std::string, std::string>& values, std::span<const char* const> keys, const char** found,
               char* buffer, int32_t size) {
    char* const end = buffer + size;
    for (size_t i = 0; i < keys.size(); ++i) {
        const auto value = values.find(keys[i]);
        const bool fits = value != values.end() && std::cmp_less(value->second.size(), end - buffer);
        found[i] = fits ? buffer : nullptr;
        if (fits) buffer += copyCut(value->second, buffer, static_cast<uint32_t>(end - buffer)) + 1;
    }
}

}  // namespace

// ---- application ----------------------------------------------------------------------------------------------------

uint64_t Wqueryversion(uint32_t kind) {
    return note(__func__, kind) ? script.version : 0;
}

WHandle WIinitialise(int32_t argc, char** argv, uint32_t flag) {
    const auto arguments = list<const char*>(argv + 1, argc - 1);
    if (!note(__func__, argc, flag, arguments)) return 0;
    for (const char* argument : arguments)
        takeNotification(argument);
    return newHandle(__func__);
}

void* WIgetvar(WHandle app, uint32_t kind) {
    if (!note(__func__, app, kind)) return nullptr;
    if (script.mdiClient) {
        world.variables.mainWindow = systemHandle<void*>(MAIN_WINDOW_ID);
        world.variables.mdiClient = systemHandle<void*>(MDI_CLIENT_ID);
    }
    switch (kind) {
        case 0:
            return &world.state;
        case 1:
            return &world.variables;
        default:
            return nullptr;
    }
}

int32_t WIstdinit_cfg(WHandle app, const char* application, const char* const* keys, const char** values, int32_t count,
                      char* buffer, int32_t size) {
    if (!note(__func__, app, application, count, size, list(keys, count))) return 0;
    fillByKey(script.configuration, list(keys, count), values, buffer, size);
    return 1;
}

int32_t Wloadtxt(WHandle app, const char* application, const char* const* keys, const char** texts, int32_t count,
                 char* buffer, int32_t size) {
    if (!note(__func__, app, application, count, size, list(keys, count))) return 0;
    fillByKey(script.texts, list(keys, count), texts, buffer, size);
    return 1;
}

void* WIwnquerymdiaccel() {
    return note(__func__) ? systemHandle<void*>(ACCELERATOR_TABLE) : nullptr;
}

void WIsendmsgs(WHandle app) {
    if (!note(__func__, app)) return;
    while (!world.queue.empty()) {
        const Queued next = world.queue.front();
        world.queue.pop_front();
        deliver(next.object, next.message);
    }
    world.state.messagesPending = 0;
}

void Wquit(WHandle app) {
    if (note(__func__, app)) world.state.quit = 1;
}

int32_t Wregexitproc(WHandle app, WExitProc proc) {
    if (!note(__func__, app)) return 0;
    world.exitProcedure = proc;
    return 1;
}

void Wfatalerror(WHandle app, const char* text) {
    const bool ends = note(__func__, app, text);
    report(__func__, text);
    if (!ends) return;
    if (world.exitProcedure) world.exitProcedure(app, EXIT_FAILURE);
    endProcess(EXIT_FAILURE);
}

void Wterminate(WHandle app) {
    note(__func__, app);
}

void Wtrace(WHandle app, const char* format, ...) {
    std::array<char, 1024> text{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    note(__func__, app, text.data());
}

void Werrorbox(WHandle app, const char* text, uint32_t level) {
    if (note(__func__, app, text, level)) report(__func__, text);
}

int32_t Wwntranshotkey(const tagMSG* message, uint32_t id) {
    return note(__func__, *message, id) && script.hotKeys.contains(message->message);
}

void WTTIwnmousemsg(void* window, uint32_t id) {
    note(__func__, window, id);
}

// ---- objects and windows --------------------------------------------------------------------------------------------

WHandle Wregisterclass(WHandle app, WMsgProc proc) {
    if (!note(__func__, app)) return 0;
    world.windowProcedure = proc;
    return newHandle(__func__);
}

WHandle Wcreateobject(WHandle app, WHandle windowClass, uint32_t kind, uint32_t flags) {
    return create(__func__, app, windowClass, kind, flags);
}

void Wdestroyobject(WHandle object) {
    note(__func__, object);
}

WHandle Wcreatechild(WHandle app, WHandle container) {
    return create(__func__, app, container);
}
void Wdestroychild(WHandle child) {
    note(__func__, child);
}

int32_t Wquerywinsize(WHandle object, int32_t* width, int32_t* height) {
    if (!note(__func__, object)) return 0;
    *width = script.width;
    *height = script.height;
    return 1;
}

int32_t Wsetwinpos(WHandle child, int32_t x, int32_t y, int32_t width, int32_t height) {
    return note(__func__, child, x, y, width, height);
}

int32_t Wupdate(WHandle child, uint32_t flag) {
    if (!note(__func__, child, flag)) return 0;
    queuePaint(child);
    return 1;
}

int32_t Wsetfocus(WHandle child) {
    return note(__func__, child);
}

int32_t Wgetmousepos(WHandle child, int32_t* x, int32_t* y) {
    if (!note(__func__, child)) return 0;
    *x = script.mouseX;
    *y = script.mouseY;
    return 1;
}

// ---- shell and container --------------------------------------------------------------------------------------------

WHandle SHLcreate(WHandle app, WHandle* container, const char* title, uint32_t kind, uint32_t flags) {
    if (!note(__func__, app, title, kind, flags)) return 0;
    *container = newHandle("container");
    return newHandle(__func__);
}

void SHLdestroy(WHandle shell) {
    note(__func__, shell);
}

int32_t SHLsetpos(WHandle shell, int32_t x, int32_t y, int32_t width, int32_t height, uint32_t flags) {
    if (!note(__func__, shell, x, y, width, height, flags)) return 0;
    if (flags & SHL_SHOW) {
        queueMessage(handleOf("Wcreateobject"), W_MSG_SIZE);
        queuePaint(handleOf("Wcreatechild"));
    }
    return 1;
}

WHandle SHLquerywid(WHandle shell, uint32_t part) {
    return create(__func__, shell, part);
}
int32_t SHLupdatesizes(WHandle shell) {
    return note(__func__, shell);
}

int32_t CONTstdcreate(WHandle container, WHandle windowClass, uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return note(__func__, container, windowClass, a, b, c, d);
}

int32_t CONTdrawbackground(WHandle container, uint32_t on) {
    return note(__func__, container, on);
}
void CONTdestroy(WHandle container) {
    note(__func__, container);
}

// ---- action bar -----------------------------------------------------------------------------------------------------

namespace {

// As many as the bar has rows; the calls do not say it again.
std::span<const char* const> textsOfBar(const char* const* texts) {
    return {texts, world.rows.size()};
}

}  // namespace

WHandle ACTBARcreate(WHandle shellPart, WHandle object, ACTBARRow* rows, int32_t count) {
    const auto listed = list<ACTBARRow>(rows, count);
    if (!note(__func__, shellPart, object, count, listed)) return 0;
    world.rows = {rows, listed.size()};
    world.barTexts.clear();
    return newHandle(__func__);
}

int32_t ACTBARsetmp1(WHandle bar, uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return note(__func__, bar, a, b, c, d);
}

int32_t ACTBARset(WHandle bar, WHandle object, const char* const* texts) {
    const auto listed = textsOfBar(texts);
    if (!note(__func__, bar, object, listed)) return 0;
    world.barTexts.assign(listed.begin(), listed.end());
    for (size_t i = 0; i < listed.size(); ++i)
        world.rows[i].text = listed[i];
    return 1;
}

int32_t ACTBARreset(WHandle bar) {
    return note(__func__, bar);
}

int32_t ACTBARchanges(WHandle bar, WHandle shell, WHandle object, const char* const* texts) {
    const auto listed = textsOfBar(texts);
    return note(__func__, bar, shell, object, listed) &&
           world.barTexts != std::vector<std::string>(listed.begin(), listed.end());
}

int32_t ACTBARsetflag(WHandle bar, uint32_t row, uint32_t flag, uint32_t value) {
    return note(__func__, bar, row, flag, value);
}

void ACTBARdestroy(WHandle bar) {
    if (note(__func__, bar)) world.rows = {};
}

// ---- help line and its actions --------------------------------------------------------------------------------------

WHandle HELPLcreate(WHandle shell, WHandle shellPart, uint32_t a, uint32_t b) {
    return create(__func__, shell, shellPart, a, b);
}

int32_t HELPLinit(WHandle helpLine, uint32_t set, const char* const* texts, const HELPLKey* keys,
                  const HELPLButton* buttons, int32_t count) {
    return note(__func__, helpLine, set, count, list(texts, count), list(keys, count), list(buttons, count));
}

int32_t HELPLset_buttons(WHandle helpLine, uint32_t set) {
    return note(__func__, helpLine, set);
}

int32_t HELPLmake_hlpl(WHandle helpLine, WHandle object, uint32_t set) {
    return note(__func__, helpLine, object, set);
}

void HELPLdestroy(WHandle helpLine) {
    if (note(__func__, helpLine)) world.actions.clear();
}

int32_t ACTappend(WHandle helpLine, uint32_t set, const char* actionClass, const char* button, const char* argument) {
    if (!note(__func__, helpLine, set, actionClass, button, argument)) return 0;
    world.actions[static_cast<uint32_t>(std::atoi(button))] = {actionClass[0], argument};
    return 1;
}

const char* ACThandleaction(WHandle helpLine, uint32_t action, char* actionClass) {
    static const ButtonAction none;
    if (!note(__func__, helpLine, action)) return "";
    const auto found = world.actions.find(action);
    const ButtonAction& answer = found != world.actions.end() ? found->second : none;
    *actionClass = answer.letter;
    return answer.argument.c_str();
}

// ---- panels ---------------------------------------------------------------------------------------------------------

WHandle WHLPregistername(const char* application) {
    return create(__func__, application);
}
WHandle HLPcreate(WHandle shell, const char* title, uint32_t flags) {
    return create(__func__, shell, title, flags);
}
void HLPdestroy(WHandle help) {
    note(__func__, help);
}
int32_t WHLPhelprequest(WHandle help, WHandle name, uint32_t level) {
    return note(__func__, help, name, level);
}

WHandle INFOcreate(WHandle container, WHandle shell, uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return create(__func__, container, shell, a, b, c, d);
}

void INFOdestroy(WHandle info) {
    note(__func__, info);
}

WHandle PSSETUPcreate(WHandle container, WHandle shell, uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return create(__func__, container, shell, a, b, c, d);
}

void PSSETUPdestroy(WHandle setup) {
    note(__func__, setup);
}
int32_t PSSETUPshow(WHandle setup) {
    return note(__func__, setup);
}
int32_t PSSETUPhide(WHandle setup) {
    return note(__func__, setup);
}

int32_t PSSETUPqueryValue(WHandle setup, uint32_t number, uint32_t* value, char* buffer) {
    if (!note(__func__, setup, number)) return 0;
    switch (number) {
        case PSSETUP_DESTINATION:
            *value = script.printDestination;
            return 1;
        case PSSETUP_FORMAT:
            *value = script.printFormat;
            return 1;
        case PSSETUP_NAME:
            *value = copyCut(script.printName, buffer, *value);
            return 1;
        default:
            return 0;
    }
}

int32_t PSSETUPtransDestAndFormatValues(uint32_t* destination, uint32_t* format) {
    return note(__func__, *destination, *format);
}

// ---- colours and channel --------------------------------------------------------------------------------------------

WHandle WCLRcreate(WHandle app, const WColour* entries, int32_t count) {
    const auto listed = list(entries, count);
    if (!note(__func__, app, count, listed)) return 0;
    palette.assign(listed.begin(), listed.end());
    return newHandle(__func__);
}

void WCLRdestroy(WHandle colourTable) {
    note(__func__, colourTable);
}

WHandle WDstdopen(WHandle app, char*, uint32_t kind, WDCallback callback, uint32_t flag) {
    if (!note(__func__, app, kind, flag)) return 0;
    world.channel = callback;
    return newHandle(__func__);
}

void WDstdclose(WHandle channel) {
    if (note(__func__, channel)) world.channel = nullptr;
}
