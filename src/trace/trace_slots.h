// What the trace keeps: eight slots and two thresholds, process-wide. For the trace's own files and its tests.
#pragma once

#include <cstdint>

#include "platform/windows.h"
#include "trace/trace.h"

struct TRCSlot {
    HWND window;             // null: none
    HGDIOBJ font;            // the window's, once it exists
    int32_t lineHeight;      // pixels
    int32_t values[7];       // x, y, width, height of the window in pixels, y from the screen's bottom; three spare
    char fileName[80];       // with terminator
    bool windowInitialised;  // the environment's geometry has been read
    HFILE file;              // 0 or HFILE_ERROR: none
};

enum TRCValue : uint32_t { TRC_X, TRC_Y, TRC_WIDTH, TRC_HEIGHT };

struct TRCState {
    bool levelsRead;      // from the environment, at the first open
    int32_t fileLevel;    // 0: nothing
    int32_t windowLevel;  // 0: nothing
    uint8_t occupied;     // bit n: slot n is open
    TRCSlot slots[TRC_SLOTS];
};

extern TRCState TRCGlobal;

// The open slot of a handle, or null.
TRCSlot* TRCFindSlot(TRCHandle handle);

// A decimal environment variable: true and its value when it is set (and at most 31 characters long).
bool TRCReadEnvironment(const char* name, int32_t* value);

// Everything as in a fresh process. For tests; files stay open.
void TRCForgetEverything();
