// Files for what has no room in memory.
#pragma once

namespace kelsystem {

// A descriptor of a file without a name in TMPDIR (/tmp), for reading and writing; -1 with errno when there is none. It
// belongs to the caller, and the file is gone when it is closed.
int openTemporaryFile();

}  // namespace kelsystem
