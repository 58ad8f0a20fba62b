// Pen numbers as they come with the data: signed 16-bit, and only 0 to 254 are pens.
#pragma once

#include <cstdint>

// The pen that SP selects: -1 stands for pen 0; numbers above wrap into 1 to 254, others below 0 are pen 0, both with a
// warning that names the function.
int32_t HPGLselectedPen(int32_t number, const char* function);

// Whether PW or PC may touch that pen; a warning when not.
bool HPGLpenExists(int32_t number, const char* function);
