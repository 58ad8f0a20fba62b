// The procedures of the manifest. FI, FN, CF, SB, CC, IV, OL and WD have none: nothing that they say is seen in single
// strokes.
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

// ---- line types (line_types.cpp) ----
void lineAttributes(Machine& machine, const Instruction& instruction);  // LA
void lineType(Machine& machine, const Instruction& instruction);        // LT
void userLineType(Machine& machine, const Instruction& instruction);    // UL

// ---- fill types (fill_instructions.cpp) ----
void fillType(Machine& machine, const Instruction& instruction);         // FT
void anchorCorner(Machine& machine, const Instruction& instruction);     // AC
void rasterFill(Machine& machine, const Instruction& instruction);       // RF
void userFill(Machine& machine, const Instruction& instruction);         // UF
void penThickness(Machine& machine, const Instruction& instruction);     // PT
void screenedVectors(Machine& machine, const Instruction& instruction);  // SV

// ---- labels (label_instructions.cpp) ----
void label(Machine& machine, const Instruction& instruction);             // LB
void bufferLabel(Machine& machine, const Instruction& instruction);       // BL
void printBuffer(Machine& machine, const Instruction& instruction);       // PB
void defineTerminator(Machine& machine, const Instruction& instruction);  // DT
void characterPlot(Machine& machine, const Instruction& instruction);     // CP
void transparentData(Machine& machine, const Instruction& instruction);   // TD
void labelMode(Machine& machine, const Instruction& instruction);         // LM
void symbolMode(Machine& machine, const Instruction& instruction);        // SM

// ---- size, direction and place (character_instructions.cpp) ----
void absoluteSize(Machine& machine, const Instruction& instruction);       // SI
void relativeSize(Machine& machine, const Instruction& instruction);       // SR
void userSize(Machine& machine, const Instruction& instruction);           // SU
void slant(Machine& machine, const Instruction& instruction);              // SL
void extraSpace(Machine& machine, const Instruction& instruction);         // ES
void labelOrigin(Machine& machine, const Instruction& instruction);        // LO
void absoluteDirection(Machine& machine, const Instruction& instruction);  // DI
void relativeDirection(Machine& machine, const Instruction& instruction);  // DR
void userDirection(Machine& machine, const Instruction& instruction);      // DU
void verticalPath(Machine& machine, const Instruction& instruction);       // DV

// ---- fonts and sets (character_instructions.cpp) ----
void standardSet(Machine& machine, const Instruction& instruction);      // CS
void alternateSet(Machine& machine, const Instruction& instruction);     // CA
void selectStandard(Machine& machine, const Instruction& instruction);   // SS
void selectAlternate(Machine& machine, const Instruction& instruction);  // SA
void standardFont(Machine& machine, const Instruction& instruction);     // SD
void alternateFont(Machine& machine, const Instruction& instruction);    // AD
void characterMode(Machine& machine, const Instruction& instruction);    // CM
void designateSet(Machine& machine, const Instruction& instruction);     // DS

// ---- characters of one's own (user_characters.cpp) ----
void userCharacter(Machine& machine, const Instruction& instruction);      // UC
void downloadCharacter(Machine& machine, const Instruction& instruction);  // DL

}  // namespace plotter
