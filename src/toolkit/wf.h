// The W toolkit: fonts.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

enum WFValue : uint32_t { WF_SIZE = 0, WF_NUMBER_OF_FONTS = 5 };

extern "C" {

// Registers a font for an owner. The description is "full name,A,size", size in pixels with two places. Answers the
// font's handle, the same one for the same description, or 0.
WHandle WFcreate(WHandle owner, const char* description);

// WF_SIZE: the font's size in pixels. Without a font, WF_NUMBER_OF_FONTS: of all.
int32_t WFqueryfontval(WHandle font, uint32_t value);
}
