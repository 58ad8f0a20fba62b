// The message loop.
#pragma once

#include "toolkit/w.h"

// Runs until the toolkit's quit flag is set or GetMessageA answers 0.
void HPGLrunMainLoop(WHandle app);
