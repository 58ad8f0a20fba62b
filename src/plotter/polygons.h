// Closed figures: polygon mode, rectangles, wedges and circles.
#pragma once

#include "plotter/machine.h"

namespace plotter {

// The rings of the last polygon made, those with an inside; plotter units.
Area areaOf(const State& state);

}  // namespace plotter
