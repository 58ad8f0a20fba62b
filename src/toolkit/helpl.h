// The W toolkit: the help line, a row of function-key buttons under the drawing, and the actions behind it.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

struct HELPLKey {
    uint32_t kind;  // 2: a function key
    uint32_t key;   // its number, 1 to 24
};

struct HELPLButton {
    const char* enabled;  // "1" or "0"
    const char* number;   // button number as a string
};

extern "C" {

WHandle HELPLcreate(WHandle shell, WHandle shellPart, uint32_t a, uint32_t b);
// `count` keys and buttons, paired position by position, and as many texts.
int32_t HELPLinit(WHandle helpLine, uint32_t set, const char* const* texts, const HELPLKey* keys,
                  const HELPLButton* buttons, int32_t count);
int32_t HELPLset_buttons(WHandle helpLine, uint32_t set);
// Builds the line anew; doubles nothing when called again.
int32_t HELPLmake_hlpl(WHandle helpLine, WHandle object, uint32_t set);
void HELPLdestroy(WHandle helpLine);

// Gives a button its action: a class letter and an argument string.
int32_t ACTappend(WHandle helpLine, uint32_t set, const char* actionClass, const char* button, const char* argument);
// The argument of the action with that number; *actionClass receives its class letter. An unknown number gives the
// empty string and 'S'. Valid until the help line is destroyed.
const char* ACThandleaction(WHandle helpLine, uint32_t action, char* actionClass);
}
