// How much memory there is for a program.
#pragma once

#include <cstdint>

namespace kelsystem {

// Bytes: the machine's, or what the control group of this process may have of it. Asked once.
uint64_t memoryInAll();

}  // namespace kelsystem
