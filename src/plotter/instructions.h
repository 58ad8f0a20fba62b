// The procedures of the manifest that are about the page, the pens, lines, curves and polygons. Those of characters,
// line types and fill types stand with their state.
#pragma once

#include "plotter/instruction.h"
#include "plotter/machine.h"

namespace plotter {

// ---- page and coordinates (page_instructions.cpp) ----
void initialise(Machine& machine, const Instruction& instruction);     // IN, BP
void setDefaults(Machine& machine, const Instruction& instruction);    // DF
void inputCorners(Machine& machine, const Instruction& instruction);   // IP
void inputRelative(Machine& machine, const Instruction& instruction);  // IR
void inputWindow(Machine& machine, const Instruction& instruction);    // IW
void scale(Machine& machine, const Instruction& instruction);          // SC
void rotate(Machine& machine, const Instruction& instruction);         // RO
void plotSize(Machine& machine, const Instruction& instruction);       // PS
void advancePage(Machine& machine, const Instruction& instruction);    // PG AF AH FR NR

// ---- pens (pen_instructions.cpp) ----
void selectPen(Machine& machine, const Instruction& instruction);     // SP SG
void numberOfPens(Machine& machine, const Instruction& instruction);  // NP
void penColour(Machine& machine, const Instruction& instruction);     // PC
void colourRange(Machine& machine, const Instruction& instruction);   // CR
void penWidth(Machine& machine, const Instruction& instruction);      // PW
void widthUnit(Machine& machine, const Instruction& instruction);     // WU
void transparency(Machine& machine, const Instruction& instruction);  // TR

// ---- lines (vectors.cpp) ----
void penUp(Machine& machine, const Instruction& instruction);         // PU
void penDown(Machine& machine, const Instruction& instruction);       // PD
void plotAbsolute(Machine& machine, const Instruction& instruction);  // PA
void plotRelative(Machine& machine, const Instruction& instruction);  // PR
void encodedLine(Machine& machine, const Instruction& instruction);   // PE

// ---- curves (curves.cpp) ----
void arcAbsolute(Machine& machine, const Instruction& instruction);          // AA
void arcRelative(Machine& machine, const Instruction& instruction);          // AR
void threePointsAbsolute(Machine& machine, const Instruction& instruction);  // AT
void threePointsRelative(Machine& machine, const Instruction& instruction);  // RT
void circle(Machine& machine, const Instruction& instruction);               // CI
void bezierAbsolute(Machine& machine, const Instruction& instruction);       // BZ
void bezierRelative(Machine& machine, const Instruction& instruction);       // BR
void chordTolerance(Machine& machine, const Instruction& instruction);       // CT

// ---- polygons (polygons.cpp) ----
void polygonMode(Machine& machine, const Instruction& instruction);            // PM
void edgePolygon(Machine& machine, const Instruction& instruction);            // EP
void fillPolygon(Machine& machine, const Instruction& instruction);            // FP
void edgeRectangleAbsolute(Machine& machine, const Instruction& instruction);  // EA
void edgeRectangleRelative(Machine& machine, const Instruction& instruction);  // ER
void fillRectangleAbsolute(Machine& machine, const Instruction& instruction);  // RA
void fillRectangleRelative(Machine& machine, const Instruction& instruction);  // RR RQ
void edgeWedge(Machine& machine, const Instruction& instruction);              // EW
void fillWedge(Machine& machine, const Instruction& instruction);              // WG

// ---- ticks (ticks.cpp) ----
void tickLength(Machine& machine, const Instruction& instruction);  // TL
void tickX(Machine& machine, const Instruction& instruction);       // XT
void tickY(Machine& machine, const Instruction& instruction);       // YT

}  // namespace plotter
