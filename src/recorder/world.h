// The recorder's inside: what the calls remember of one another, and how a call becomes a line.
#pragma once

#include <bit>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/windows.h"
#include "recorder/recorder.h"
#include "toolkit/actbar.h"
#include "toolkit/helpl.h"
#include "toolkit/out.h"
#include "toolkit/w.h"
#include "toolkit/wclr.h"
#include "toolkit/wd.h"
#include "toolkit/wi.h"

namespace recorder {

struct Queued {
    WHandle object;
    uint32_t message;
};

struct ButtonAction {
    char letter = 'S';
    std::string argument;
};

// There is one of everything, as in the viewer.
struct World {
    WHandle lastHandle = 0;
    std::map<std::string, WHandle, std::less<>> handles;  // by operation: the one answered last

    // The records that WIgetvar gives out; their addresses outlive reset().
    WState state{};
    WVariables variables{};

    WMsgProc windowProcedure = nullptr;
    WExitProc exitProcedure = nullptr;
    WDCallback channel = nullptr;  // null: not open
    std::deque<Queued> queue;      // what WIsendmsgs delivers; each message at most once
    bool quitPosted = false;       // by PostQuitMessage

    std::span<ACTBARRow> rows;  // the action bar's, the viewer's memory
    std::vector<std::string> barTexts;
    std::map<uint32_t, ButtonAction> actions;  // by button number

    std::map<std::string, WHandle> fonts;  // by description, from WFcreate
    std::vector<WHandle> deviceFonts;      // as OUTquery gave them out last

    std::map<std::string, WNDCLASSA> windowClasses;
    std::map<HWND, WNDPROC> windowProcedures;

    std::string line;  // on its way to the sink
};

extern World world;

// ---- values in a line, each behind a blank --------------------------------------------------------------------------

struct Hex {
    std::string_view bytes;  // two lower-case digits each; none: no value at all
};

void put(std::string& to, std::string_view text);
void put(std::string& to, const char* text);
void put(std::string& to, char letter);
void put(std::string& to, Hex hex);

template <std::integral Number>
void put(std::string& to, Number number) {
    char digits[24] = {' '};
    to.append(digits, std::to_chars(digits + 1, digits + sizeof digits, number).ptr);
}

// A handle of the window system. Character pointers are texts, whether constant or not.
template <typename Object>
requires(!std::same_as<std::remove_const_t<Object>, char>) void put(std::string& to, Object* handle) {
    put(to, std::bit_cast<uintptr_t>(handle));
}

void put(std::string& to, std::span<const OUTPoint> points);
void put(std::string& to, const WColour& colour);
void put(std::string& to, const ACTBARRow& row);
void put(std::string& to, const HELPLKey& key);
void put(std::string& to, const HELPLButton& button);
void put(std::string& to, const MSG& message);

template <typename Element>
void put(std::string& to, std::span<const Element> elements) {
    for (const Element& element : elements)
        put(to, element);
}

// An array of the viewer's with its 32-bit count; a negative count is none.
template <typename Element>
std::span<const Element> list(const Element* first, int32_t count) {
    return {first, count > 0 ? static_cast<size_t>(count) : 0};
}

// ---- calls ----------------------------------------------------------------------------------------------------------

// Whether the script lets an operation succeed.
inline bool succeeds(std::string_view operation) {
    return script.failing.empty() || !script.failing.contains(std::string(operation));
}

template <typename... Arguments>
void write(std::string& to, std::string_view operation, const Arguments&... arguments) {
    to += operation;
    (put(to, arguments), ...);
    to += '\n';
}

// Writes a call down; answers whether it succeeds.
template <typename... Arguments>
bool note(std::string_view operation, const Arguments&... arguments) {
    if (recording && !drawingSink) write(calls, operation, arguments...);
    return succeeds(operation);
}

// The same for an operation whose line the sink takes.
template <typename... Arguments>
bool draw(std::string_view operation, const Arguments&... arguments) {
    if (!recording || !drawingSink) return note(operation, arguments...);
    world.line.clear();
    write(world.line, operation, arguments...);
    drawingSink(world.line);
    return succeeds(operation);
}

// A new handle, remembered as the operation's last.
WHandle newHandle(std::string_view operation);

// The same for an operation that answers a handle: 0 when it fails.
template <typename... Arguments>
WHandle create(std::string_view operation, const Arguments&... arguments) {
    return note(operation, arguments...) ? newHandle(operation) : 0;
}

// A number as a handle of the window system.
template <typename Handle>
Handle systemHandle(uintptr_t number) {
    return std::bit_cast<Handle>(number);
}

// ---- what several calls do ------------------------------------------------------------------------------------------

// Copies as much of the text as fits, with its terminator, into `size` bytes; answers the characters copied.
uint32_t copyCut(std::string_view text, char* buffer, uint32_t size);

// Puts a message for WIsendmsgs into the queue, sizes in front; one that waits already is not doubled.
void queueMessage(WHandle object, uint32_t message);
void queuePaint(WHandle child);

// Collects what the user would read.
void report(const char* title, const char* text);

// Without destructors, so that a death test ends at once.
[[noreturn]] void endProcess(int status);

}  // namespace recorder
