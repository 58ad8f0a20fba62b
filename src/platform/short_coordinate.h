// The window system's coordinates have 16 bits; whoever adds to one that came from outside brings it there first.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

inline int shortCoordinate(int value) {
    return std::clamp<int>(value, std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max());
}
