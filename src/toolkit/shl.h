// The W toolkit: the shell, which is the application's main window.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

inline constexpr uint32_t SHL_SHOW = 128;  // SHLsetpos: show the window

// The places of the bars.
enum SHLPart : uint32_t { SHL_HELP_LINE = 4, SHL_ACTION_BAR = 7 };

extern "C" {

// Makes the main window with `title`; *container receives the handle that CONTstdcreate takes. flags is 3728.
WHandle SHLcreate(WHandle app, WHandle* container, const char* title, uint32_t kind, uint32_t flags);
void SHLdestroy(WHandle shell);

// Places the window on the screen, logical pixels, y from the top. Showing it queues a size and a paint message.
int32_t SHLsetpos(WHandle shell, int32_t x, int32_t y, int32_t width, int32_t height, uint32_t flags);

// A part of the shell: an SHLPart.
WHandle SHLquerywid(WHandle shell, uint32_t part);

// Lays the shell out again after its bars have changed.
int32_t SHLupdatesizes(WHandle shell);
}
