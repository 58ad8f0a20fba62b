// The true argument vector of the process, for the toolkit's own options: the viewer splits one command line by its
// own rule, which knows no way to write a double quote.
#pragma once

struct PlatformArguments {
    int count;
    const char* const* values;
};

// Set once by the process entry; owned by the process.
void setPlatformArguments(int count, const char* const* values);
PlatformArguments platformArguments();
