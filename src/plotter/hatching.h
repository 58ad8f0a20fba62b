// Hatch lines: the parts of parallel lines that are inside of an area.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "plotter/budget.h"
#include "plotter/plane.h"
#include "plotter/taker.h"

namespace plotter {

// Hatch lines in one area, and pieces of hatch lines in one drawing; beyond, the area is solid: so dense, it looks it.
inline constexpr std::size_t MOST_HATCH_LINES = 20'000;
inline constexpr std::size_t MOST_HATCH_PIECES = 2'000'000;

// Where hatch lines lie.
struct HatchLines {
    Point anchor;              // one of them goes through it, plotter units
    double angle = 0;          // degrees
    std::vector<double> gaps;  // from each to the next, over and over
};

// Takes a piece of a hatch line, and the line's number: 0 goes through the anchor.
using HatchTaker = Taker<std::span<const Point>, int64_t>;

// Hands over the parts of hatch lines inside of an area. A line along the lower or left border is inside, one along the
// upper or right one is not. seen: lines that pass it by are left out. False, and none is handed over, when there are
// too many or they are no lines at all.
bool hatchArea(const Area& area, FillRule rule, const HatchLines& lines, const std::optional<Box>& seen, Budget& pieces,
               const HatchTaker& taker);

}  // namespace plotter
