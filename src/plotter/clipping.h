// Lines and areas cut off at a rectangle. Its border counts as inside; any numbers may come.
#pragma once

#include <span>

#include "plotter/plane.h"
#include "plotter/taker.h"

namespace plotter {

// Cuts a segment off; false when none of it is inside, and also for what is not a number. Ends that are inside stay bit
// by bit as they were.
bool clipSegment(Point& a, Point& b, const Box& box);

// Hands over what is inside of a line, in order, in pieces as long as possible. A dot inside stays a dot; a line that
// only touches the border from outside leaves none.
void clipLine(std::span<const Point> points, const Box& box, const LineTaker& taker);

// One side of a horizontal or vertical line, and the line itself.
struct Side {
    double Point::*coordinate = &Point::x;
    double limit = 0;
    bool below = true;  // what is kept: coordinates up to the limit, or from it on

    bool holds(Point p) const { return below ? p.*coordinate <= limit : p.*coordinate >= limit; }
};

// The part of a ring on that side; empty when there is none with an area. Where the ring is cut into several pieces
// they stay one ring, joined along the line. Both sides of one line meet in the same points.
Ring clipRing(const Ring& ring, const Side& side);

// The part of an area inside, for either rule.
Area clipArea(const Area& area, const Box& box);

}  // namespace plotter
