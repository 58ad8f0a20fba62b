// Opening a file whose name came with the data: nobody vouches for it.
#pragma once

#include <cstdio>

// Opens a regular file for reading, or answers null. Fifos, devices, folders, sockets and the
// kernel's own files (/proc) are refused without waiting for their other end. The stream belongs to the caller.
std::FILE* openRegularFile(const char* name);
