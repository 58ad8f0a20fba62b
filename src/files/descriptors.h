// Descriptors that this process may still open.
#pragma once

namespace kelfiles {

// Whether so many are left.
bool descriptorsAreLeft(int count);

}  // namespace kelfiles
