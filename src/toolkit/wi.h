// The W toolkit: application, its records, configuration and queued messages.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

// Byte flags, read by the main loop at every turn; owned by the toolkit.
struct WState {
    uint8_t quit;             // the application is to end
    uint8_t inputBlocked;     // keyboard messages are to be dropped; never here, where what the user does waits instead
    uint8_t messagesPending;  // WIsendmsgs has something to deliver
};

// What toolkit and viewer tell each other; owned by the toolkit. Handles of the window system, null is none.
struct WVariables {
    void* mainWindow;
    void* instance;      // written by the viewer
    void* previous;      // written by the viewer
    void* notifyWindow;  // from -P=, the window that is told when the viewer ends badly
    uint32_t notifyId;   // from -I=
    void* mdiClient;     // when set, the accelerator table is used
};

extern "C" {

// Creates the application out of the argument vector; flag is 1. Answers its handle, 0 on failure.
WHandle WIinitialise(int32_t argc, char** argv, uint32_t flag);

// kind 0: the WState record, kind 1: the WVariables record; null for any other. Valid until Wterminate.
void* WIgetvar(WHandle app, uint32_t kind);

// Reads `count` configuration values by key for the named application. values[i] points into buffer (size bytes), or
// is null where the key is missing or its value does not fit. 0 on failure.
int32_t WIstdinit_cfg(WHandle app, const char* application, const char* const* keys, const char** values, int32_t count,
                      char* buffer, int32_t size);

// The accelerator table for TranslateAcceleratorA.
void* WIwnquerymdiaccel();

// Delivers the toolkit's queued messages to their window procedures.
void WIsendmsgs(WHandle app);
}
