// The W toolkit: colour tables.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

struct WColour {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
    uint8_t reserved;  // 0
};

extern "C" {

// Makes a colour table of the first `count` entries, which are copied. Every device uses the table made last from its
// next OUTreset on; making one frees the one before.
WHandle WCLRcreate(WHandle app, const WColour* entries, int32_t count);

// Gives a table up; it serves its devices until the next one is made.
void WCLRdestroy(WHandle colourTable);
}
