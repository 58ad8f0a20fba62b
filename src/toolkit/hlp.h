// The W toolkit: help by topic.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

extern "C" {

// Registers an application's help; answers the name's handle.
WHandle WHLPregistername(const char* application);
WHandle HLPcreate(WHandle shell, const char* title, uint32_t flags);
void HLPdestroy(WHandle help);
// Shows the help of a registered name at a level.
int32_t WHLPhelprequest(WHandle help, WHandle name, uint32_t level);
}
