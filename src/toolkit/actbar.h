// The W toolkit: the action bar (menu bar) of a shell.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

// One row of an action bar. '~' in a text stands before the mnemonic letter.
struct ACTBARRow {
    const char* text;   // filled by ACTBARset from the text group, in row order
    uint32_t pulldown;  // 0: an item of the bar; 1 to 5: under that bar item
    uint32_t position;  // bar items 1 to 5, others 0
    uint32_t reserved;  // 0
    uint32_t action;    // id that the action message carries as second parameter
    uint32_t enabled;   // 1 or 0
    char itemClass;     // 'M' or 'L'
};

extern "C" {

WHandle ACTBARcreate(WHandle shellPart, WHandle object, ACTBARRow* rows, int32_t count);
// The kinds that action messages carry as first parameter: a of items, b of those of class 'L'; c and d are not used.
// The viewer passes 4, 3, 2, 0.
int32_t ACTBARsetmp1(WHandle bar, uint32_t a, uint32_t b, uint32_t c, uint32_t d);
int32_t ACTBARset(WHandle bar, WHandle object, const char* const* texts);
int32_t ACTBARreset(WHandle bar);
// Non-zero when the texts differ from those the bar shows.
int32_t ACTBARchanges(WHandle bar, WHandle shell, WHandle object, const char* const* texts);
int32_t ACTBARsetflag(WHandle bar, uint32_t row, uint32_t flag, uint32_t value);
void ACTBARdestroy(WHandle bar);
}
