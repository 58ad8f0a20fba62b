// The help line: five function keys, as buttons under the drawing.
#pragma once

#include "toolkit/w.h"

// Makes the line in the shell, with its texts. Its actions go to `object`. Answers its handle, 0 on failure.
WHandle HPGLcreateHelpLine(WHandle shell, WHandle object);
