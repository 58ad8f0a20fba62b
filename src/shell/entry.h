// The process entry: the command line becomes an argument vector.
#pragma once

#include <cstdint>

#include "platform/windows.h"

struct HPGLArguments {
    int32_t count;
    char** values;  // count + 1 pointers, the last one null; owned, like the one copy of the text that they point into
};

// Splits at blanks outside double quotes, which are taken out; element 0 is the program's module file name. A quote
// that opens inside a word begins the element anew. Ends the process with -1 when memory is lacking.
HPGLArguments HPGLsplitCommandLine(const char* commandLine);
void HPGLfreeArguments(HPGLArguments* arguments);
