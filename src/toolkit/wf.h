// The W toolkit: fonts.
#pragma once

#include <cstdint>

#include "w.h"

extern "C" {

// Registers a font for an owner. The description is "full name,A,size", size in pixels with two places. Answers the
// font's handle, the same one for the same description, or 0.
WHandle WFcreate(WHandle owner, const char* description);

// font and value 0: the font's size in pixels. Font 0 and value 5: the number of all fonts.
int32_t WFqueryfontval(WHandle font, uint32_t value);
}
