// Descriptors that this process may still open.
#pragma once

namespace kelsystem {

// Whether so many are left.
bool descriptorsAreLeft(int count);

}  // namespace kelsystem
