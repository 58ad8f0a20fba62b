// Areas in the form that the viewer fills: by the even-odd rule, with so many points and rings and no more.
#pragma once

#include <cstddef>

#include "plotter/plane.h"
#include "plotter/taker.h"

namespace plotter {

// Steps that finding the inside of one area by the winding rule may take; a step is an edge in one horizontal band
// between two corners. A circle of 720 points takes 3,000, a star of 200 whose edges all cross 400,000, and ten million
// take a second.
inline constexpr std::size_t MOST_WINDING_STEPS = 2'000'000;

struct Flattened {
    Area area;              // even-odd
    std::size_t steps = 0;  // that were taken
    bool whole = true;      // false: there would have been more of them, and the area is what was given
};

// An area by the winding rule as one by the even-odd rule. Where the two rules say the same it is what was given, ring
// for ring; otherwise rings that do not overlap.
Flattened flattenWinding(const Area& area, std::size_t mostSteps = MOST_WINDING_STEPS);

// What the viewer takes, less a little: 2000 points in a sub-polygon with the closing one, and 256 of them.
inline constexpr std::size_t MOST_RING_POINTS = 1990;
inline constexpr std::size_t MOST_RINGS = 250;

struct AreaLimits {
    std::size_t points = 0;  // of one ring
    std::size_t rings = 0;   // of one area
    double grid = 1;         // distance of the coordinates that are left after rounding
};

// Hands an even-odd area over in pieces within the limits. They meet in lines along the axes, at multiples of the grid,
// so nothing is to be seen of the cuts after rounding. False when there would have been too many pieces for the size of
// the area: then the rest is there with fewer points.
bool cutArea(const Area& area, const AreaLimits& limits, const AreaTaker& taker);

}  // namespace plotter
