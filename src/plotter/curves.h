// Points of circles and arcs.
#pragma once

#include "plotter/instruction.h"
#include "plotter/machine.h"

namespace plotter {

// How an arc of that radius and sweep is cut into chords of equal angles: by the chord that the instruction gives at
// that index, else as smooth as the output can show. radius in user units; sweep in degrees. One at least.
int chordsOf(const Machine& machine, const Instruction& instruction, std::size_t chordIndex, double radius,
             double sweep);

// The points of an arc about a centre, in user units and mapped to plotter units, from the start's successor on; the
// angles are degrees. Appended to line.
void appendArc(const Affine& map, Point centre, double radius, double start, double sweep, int chords, Line& line);

}  // namespace plotter
