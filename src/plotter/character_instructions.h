// The procedures of the manifest that are about characters. FI, FN, CF, SB, CC, IV, OL and WD have none: nothing that
// they say is seen in single strokes.
#pragma once

#include "plotter/instruction.h"
#include "plotter/machine.h"

namespace plotter {

// ---- labels (label_instructions.cpp) ----
void label(Machine& machine, const Instruction& instruction);             // LB
void bufferLabel(Machine& machine, const Instruction& instruction);       // BL
void printBuffer(Machine& machine, const Instruction& instruction);       // PB
void defineTerminator(Machine& machine, const Instruction& instruction);  // DT
void characterPlot(Machine& machine, const Instruction& instruction);     // CP
void transparentData(Machine& machine, const Instruction& instruction);   // TD
void labelMode(Machine& machine, const Instruction& instruction);         // LM
void symbolMode(Machine& machine, const Instruction& instruction);        // SM
// The symbol of SM, about a point in plotter units; the pen is not moved. Nothing while there is none.
void drawSymbol(Machine& machine, Point units);

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
