// Opening files for whose names nobody vouches: those that came with the data, and logs in whatever folder it is.
#pragma once

#include <cstdio>

// Opens a regular file for reading, or answers null. Fifos, devices, folders, sockets and the
// kernel's own files (/proc) are refused without waiting for their other end. The stream belongs to the caller.
std::FILE* openRegularFile(const char* name);

// Opens a log for writing, empty, as OpenFile does with OF_CREATE (windows.h): never through a link, and no file that
// has another's content. Null when that cannot be. The stream belongs to the caller.
std::FILE* openLogFile(const char* name);
