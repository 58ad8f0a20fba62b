// Closed figures: polygon mode, rectangles, wedges and circles.
#pragma once

#include "machine.h"

namespace plotter {

// The rings of the last polygon made, those with an inside.
Area areaOf(const Polygon& polygon);

}  // namespace plotter
