// The window system's message that stands for an input event of Qt.
#pragma once

#include "platform/windows.h"

class QEvent;

// True for the key, mouse and wheel events that have a message.
bool isInputEvent(const QEvent& event);

// The message of such an event. Keys carry Windows' virtual key code (0 where there is none), mouse messages the
// position in the window's logical pixels.
MSG messageOf(const QEvent& event, HWND window);

// The character message of a key press, with the id WM_NULL when the key has no text.
MSG characterOf(const QEvent& event, const MSG& keyMessage);
