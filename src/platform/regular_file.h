// Opening a file whose name came with the data: nobody vouches for it.
#pragma once

#include <cstdint>
#include <cstdio>

// Opens a regular file for reading, or answers null. Fifos, devices, folders, sockets and the kernel's own files
// (/proc) are looked at and never opened. The stream belongs to the caller.
std::FILE* openRegularFile(const char* name);

// Who has a say in that: the toolkit, which knows whose data it is.
class FileGuard {
  public:
    virtual ~FileGuard() = default;
    // Whether a file may be opened; `descriptor` leads to it, and can be looked at but not read.
    virtual bool mayOpen(const char* name, int descriptor, uint64_t bytes) = 0;
    // Asked before each piece is read, of which some thousand bytes are one; false breaks the reading off, and the
    // stream has an error from then on. Whatever it does meanwhile, it must not lead to the viewer's procedures.
    virtual bool mayGoOn(uint64_t bytesRead) = 0;
};

// Null: nobody. It stays the caller's, and must outlive the streams.
void guardRegularFiles(FileGuard* guard);
