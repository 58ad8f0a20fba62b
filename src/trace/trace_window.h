// The trace's window: a plain scrolling one, one line a trace call, newest at the bottom. It keeps no history: what is
// scrolled out is gone.
#pragma once

#include "platform/windows.h"
#include "trace/trace_slots.h"

// Shows a line; makes the window at the first one, when its height is not 0.
void TRCShowLine(TRCHandle handle, TRCSlot* slot, const char* line);

// Closing the window ends the viewer's message loop.
LRESULT CALLBACK TRCWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
