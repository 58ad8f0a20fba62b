// The W toolkit: the container, the inside of the shell between action bar and help line.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

extern "C" {

// Makes the container usable for a class; the four values are 0.
int32_t CONTstdcreate(WHandle container, WHandle windowClass, uint32_t a, uint32_t b, uint32_t c, uint32_t d);
int32_t CONTdrawbackground(WHandle container, uint32_t on);
void CONTdestroy(WHandle container);
}
