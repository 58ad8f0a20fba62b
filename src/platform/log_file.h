// Opening a log, in whatever folder the process was started.
#pragma once

#include <cstdio>

// Opens a log for writing, empty, as OpenFile does with OF_CREATE (windows.h): never through a link, and no file that
// has another's content. Null when that cannot be. The stream belongs to the caller.
std::FILE* openLogFile(const char* name);
