// The W toolkit: application-independent window operations, and the types that every other prefix uses.
//
// Objects are 32-bit handles; 0 is none. An operation that is handed 0, a stale handle or one of another kind does
// nothing, answers 0 and writes a line to the toolkit's own trace (Wtrace). Strings that go in are copied unless
// said otherwise; nothing that comes out is owned by the viewer unless said otherwise.
// One thread: every operation is called, and every callback arrives, on the GUI thread.
#pragma once

#include <cstdint>

using WHandle = uint32_t;

// The toolkit's version that the viewer is built for; Wqueryversion(0) must answer exactly this.
inline constexpr uint32_t W_VERSION = 0x00401000;

// The toolkit's own messages, as a window procedure receives them (not the window system's ids).
enum WMessage : uint32_t {
    W_MSG_SIZE = 1,    // no parameters
    W_MSG_PAINT = 2,   // no parameters
    W_MSG_MOUSE = 5,   // first: a WMouse
    W_MSG_ACTION = 7,  // first: a WActionKind, second: the action's id
};

// Of the left button.
enum WMouse : uint32_t { W_MOUSE_PRESS = 0, W_MOUSE_RELEASE = 1, W_MOUSE_DRAG = 2 };

// What an action comes from. The bars are told theirs by the viewer.
enum WActionKind : uint32_t {
    W_ACTION_HELP_LINE = 0,
    W_ACTION_INFO = 1,
    W_ACTION_MENU_SPARE = 2,  // which no item has
    W_ACTION_MENU_HELP = 3,   // an item of the help pull-down
    W_ACTION_MENU = 4,        // any other item
    W_ACTION_PRINT_SETUP = 5,
};

// A window procedure: object the message is for, message, first and second parameter.
using WMsgProc = void (*)(WHandle object, uint32_t message, uint32_t first, uint32_t second);

// An exit procedure: application, exit status.
using WExitProc = void (*)(WHandle app, int32_t status);

extern "C" {

// The toolkit's version; kind is 0. Looked up by name in the loaded library, never linked.
uint64_t Wqueryversion(uint32_t kind);

// Makes `proc` a window class; answers the class handle, 0 on failure.
WHandle Wregisterclass(WHandle app, WMsgProc proc);

// Makes an object of a class; the viewer passes 0 and 1. The object is what messages name and what owns windows.
WHandle Wcreateobject(WHandle app, WHandle windowClass, uint32_t kind, uint32_t flags);
void Wdestroyobject(WHandle object);

// The drawing child inside a container; the output device (OUT operations) belongs to it.
WHandle Wcreatechild(WHandle app, WHandle container);
void Wdestroychild(WHandle child);

// Inner size of an object's window in logical pixels. 0 and untouched outputs for an unknown object.
int32_t Wquerywinsize(WHandle object, int32_t* width, int32_t* height);

// Places a child inside its parent, logical pixels, y from the top. Queues a size message when the size changes.
int32_t Wsetwinpos(WHandle child, int32_t x, int32_t y, int32_t width, int32_t height);

// Queues a paint message for the child (flag 1: whole). At most one waits.
int32_t Wupdate(WHandle child, uint32_t flag);

// Gives the child the keyboard focus.
int32_t Wsetfocus(WHandle child);

// Mouse position in device pixels of the child, y growing upward: that of the mouse message being delivered.
int32_t Wgetmousepos(WHandle child, int32_t* x, int32_t* y);

// Sets the quit flag of the state record; the main loop notices it at its next turn.
void Wquit(WHandle app);

// Reports `text` to the user, runs the registered exit procedure with status 1 and ends the process with 1.
// Works with application 0 too.
void Wfatalerror(WHandle app, const char* text);

// Ends the toolkit; and the process too, with status 1, when something that the user asked for has failed.
void Wterminate(WHandle app);

// Registers the procedure that is called before the toolkit ends the process itself.
int32_t Wregexitproc(WHandle app, WExitProc proc);

// Writes a formatted line to the toolkit's own trace.
[[gnu::format(printf, 2, 3)]] void Wtrace(WHandle app, const char* format, ...);

// Loads `count` texts by key for the named application into `buffer` (size bytes), texts[i] pointing into it or
// null where the language file has none or the buffer is full. 0 when a configured language cannot be found.
// The toolkit keeps `texts` and reads from it later, so it must live as long as the application.
int32_t Wloadtxt(WHandle app, const char* application, const char* const* keys, const char** texts, int32_t count,
                 char* buffer, int32_t size);

// Non-zero when the message is a function key that the toolkit has taken as a hot key.
struct tagMSG;
int32_t Wwntranshotkey(const tagMSG* message, uint32_t id);

// Shows an error to the user; level as for a help request.
void Werrorbox(WHandle app, const char* text, uint32_t level);

// Feeds the tool-tip logic with a message id of a window.
void WTTIwnmousemsg(void* window, uint32_t id);
}
