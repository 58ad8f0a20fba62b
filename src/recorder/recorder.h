// The recorder: a second toolkit and platform. Every operation is written down instead of done, and the world's
// answers (sizes, mouse, fonts, messages, failures) come from a script. hpgldump and the unit tests link it.
//
// Life of one test: reset(), change `script`, call the viewer, look at `calls`.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows.h"
#include "toolkit/w.h"
#include "toolkit/wclr.h"
#include "toolkit/wd.h"
#include "toolkit/wi.h"

namespace recorder {

// One font family as EnumFontFamiliesA reports it.
struct Family {
    std::string fullName;
    DWORD type = TRUETYPE_FONTTYPE;
    int faces = 1;  // how often the enumeration of this family would call back
};

// What the world answers. All sizes in device pixels.
struct Script {
    int32_t width = 500;  // OUTquerysize and Wquerywinsize
    int32_t height = 500;
    int32_t mouseX = 0;  // Wgetmousepos
    int32_t mouseY = 0;
    std::vector<int32_t> fontSizes = {2, 4, 6, 8, 10, 13, 16, 19, 22, 27, 32, 37, 42, 47, 52, 62, 72, 82, 92};
    int32_t allFonts = 0;               // WFqueryfontval(0, 5)
    std::vector<Family> families;       // EnumFontFamiliesA
    int32_t fontsAccepted = INT32_MAX;  // WFcreate answers 0 once it has made so many

    // Operations that fail: named here, they answer 0 (OpenFile, _lwrite, _lclose: HFILE_ERROR) and do nothing. A file
    // name may stand behind OpenFile and a blank to fail that file only. Wfatalerror named here reports, but returns.
    std::set<std::string> failing;

    std::map<std::string, std::string> environment;    // in front of the process's own; empty value: unset
    std::map<std::string, std::string> configuration;  // WIstdinit_cfg, by key
    std::map<std::string, std::string> texts;          // Wloadtxt, by key
    bool inventProfile = false;    // fixed values of the "intl" section, version 10.0 and processor type 8664, so that
                                   // a log compares byte by byte
    bool quiet = false;            // MessageBoxA, Wfatalerror and Werrorbox: not to stderr as well
    DWORD platformId = 2;          // GetVersionExA
    std::set<HWND> windows;        // IsWindow is true for these
    std::function<void()> atExit;  // runs before ExitProcess and Wfatalerror end the process: the last look at `calls`

    // What the user chose in the print set-up panel (PSSETUPqueryValue).
    uint32_t printDestination = 1;
    uint32_t printFormat = 1;
    std::string printName = "plot.pdf";

    // QRVEL as the version check sees it.
    bool moduleLoaded = true;
    bool versionEntry = true;
    uintptr_t moduleHandle = 0x1000;  // LoadLibraryA
    uint64_t version = W_VERSION;

    // What the loop gets, in this order: first messages, then, one a turn, procedures to run (each followed by a null
    // message); when both are used up GetMessageA answers 0.
    std::deque<MSG> messages;
    std::deque<std::function<void()>> turns;
    std::set<UINT> hotKeys;             // Wwntranshotkey consumes these message ids
    std::set<UINT> systemAccelerators;  // TranslateMDISysAccel takes messages of these ids
    std::set<UINT> accelerators;        // TranslateAcceleratorA takes messages of these ids
    bool mdiClient = false;             // the variables record names a main window and an MDI client
    bool deliverPaint = false;  // Wupdate and showing the shell queue a paint message; otherwise only written down
};

extern Script script;

// Every call, one line each, "NAME arguments…\n", in the order made. Strings stand in double quotes, control bytes in
// them as in C; handles are decimal numbers, a null string is null, a MSG its window, id and two parameters. Arrays
// stand last, behind their count; what the call fills in, callbacks with their parameter and the program's own name are
// left out.
// Output calls of the drawing child (OUTline … OUTchars_len, colours) are written without the child's handle, the way
// hpgldump prints them:
//   OUTline x1 y1 x2 y2 · OUTgeomline width n x y … · OUTboxr0/1/2 x y w h · OUTwinsolidpolygons n c1 … cn x y … ·
//   OUTlinecolour c · OUTfillcolour c · OUTsettext a b c d e f · OUTchars_len x y n HEX · OUTtrackbox x y w h flags ·
//   OUTsetbackground c · OUTreset · OUTendpaint · OUTquerysize · OUTquery kind
extern std::string calls;

// Nothing is written down, here or into the sink, while this is off (it is on after reset).
extern bool recording;

// When set, the lines of the output calls that draw or set an attribute (OUTline, OUTgeomline, OUTboxr0, OUTboxr1,
// OUTwinsolidpolygons, OUTlinecolour, OUTfillcolour, OUTsettext, OUTchars_len) go here instead, with their newline, and
// other calls are not written down.
extern std::function<void(std::string_view line)> drawingSink;

// The entries of the colour table made last.
extern std::vector<WColour> palette;

// Texts of every message box, oldest first: "title: text"; the title of Wfatalerror and Werrorbox is their name.
extern std::vector<std::string> messageBoxes;

// Everything as it is in a fresh process: script, calls, handles, queues, window procedures.
void reset();

// The handle that an operation answered last, by the operation's name ("Wcreateobject", "Wcreatechild", …); 0 if none.
// "container" is the one that SHLcreate hands out.
WHandle handleOf(const std::string& operation);

// Calls the registered window procedure.
void deliver(WHandle object, uint32_t message, uint32_t first = 0, uint32_t second = 0);

// Hands one chunk to the callback that WDstdopen was given. False when the channel is not open.
bool sendChunk(std::string_view bytes, uint32_t kind);

}  // namespace recorder
