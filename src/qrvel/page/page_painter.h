// A page through a painter: lines are lines, labels are text, at whatever resolution the painter's device has.
#pragma once

#include <QPainter>

#include "qrvel/page/placement.h"
#include "qrvel/page/recording.h"

namespace qrvel {

// unitsPerMillimetre: the painter's, whose origin is the upper left corner of the paper, y downward.
void paintPage(QPainter& painter, const Recording& recording, const Placement& placement, double unitsPerMillimetre);

}  // namespace qrvel
