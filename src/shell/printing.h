// What the print set-up panel tells the viewer.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

// Hides or destroys the panel, or prints the view with what the user has chosen in it.
void HPGLprintSetupAction(uint32_t notification);

// Makes a page the child's output; destination, format and name as the toolkit's print set-up gives them. Answers 1.
int32_t HPGLopenOutputDevice(WHandle child, uint32_t destination, uint32_t format, const char* name);
