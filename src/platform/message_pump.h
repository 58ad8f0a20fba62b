// What the toolkit needs of the message queue beside the Windows calls, which the viewer makes too.
//
// A message that GetMessageA took out of Qt's events carries a clone of its event, until the next GetMessageA.
// Everything here is for the GUI thread.
#pragma once

#include <qwindowdefs.h>

#include <cstdint>

#include "platform/windows.h"

class QEvent;

namespace pump {

// A window's handle is its number in the window system.
inline HWND handleOf(WId number) {
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(number));  // NOLINT(performance-no-int-to-ptr)
}

inline WId numberOf(HWND window) {
    return static_cast<WId>(reinterpret_cast<uintptr_t>(window));
}

// One key that stands for a command of the main window.
struct Accelerator {
    int key;        // Qt::Key
    int modifiers;  // Qt::KeyboardModifiers, without Qt::KeypadModifier
    uint32_t command;
};

// What an HACCEL points to; owned by the toolkit, alive as long as the handle is used.
struct AcceleratorTable {
    const Accelerator* rows;
    int count;
    void (*send)(uint32_t command);  // called by TranslateAcceleratorA, outside of Qt's callbacks
};

inline HACCEL handleOf(const AcceleratorTable& table) {
    return reinterpret_cast<HACCEL>(const_cast<AcceleratorTable*>(&table));
}

// The event behind the message that GetMessageA answered last; for a character message the key's. Null for a posted
// message. Owned by the queue.
const QEvent* messageEvent();

// `blocked` is asked at each key whether input is blocked; while it is, no mnemonic or shortcut passes. Null: never.
void setInputBlock(bool (*blocked)());

}  // namespace pump
