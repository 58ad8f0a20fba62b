// The main object's message procedure: paint, size, mouse and actions.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

void MAINmsgproc(WHandle object, uint32_t message, uint32_t first, uint32_t second);
