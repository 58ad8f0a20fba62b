// The W toolkit: the product information panel. Closing it sends an action of kind 1 with parameter 0.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

extern "C" {

WHandle INFOcreate(WHandle container, WHandle shell, uint32_t a, uint32_t b, uint32_t c, uint32_t d);
void INFOdestroy(WHandle info);
}
