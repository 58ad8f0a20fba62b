// The viewer's entry, called by the process entry as Windows calls it.
#pragma once

#include "platform/windows.h"

// `commandLine` is every argument behind the program's name, one blank between two, double quotes around what holds
// blanks; the viewer splits it in a copy of its own. Answers the process's exit status.
int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int show);
