// Colour tables. The one made last is the one that every device takes at its next reset.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace qrvel {

inline constexpr uint32_t BLACK = 0xFF000000U;
inline constexpr uint32_t WHITE = 0xFFFFFFFFU;

// Pixel values by index: 0xFFRRGGBB.
using ColourEntries = std::vector<uint32_t>;

// The entries made last; null before the first. A device keeps what it has taken until it takes the next.
std::shared_ptr<const ColourEntries> newestColours();

}  // namespace qrvel
