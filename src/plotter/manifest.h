// The instructions that the plotter knows, by their names.
#pragma once

#include <cstdint>
#include <string_view>

#include "plotter/instruction.h"

namespace plotter {

class Machine;

using Procedure = void (*)(Machine& machine, const Instruction& instruction);

// How the bytes behind the name are read.
enum class Form : uint8_t {
    Numbers,     // up to the terminator or the next name; of more than one pass only the first numbers count
    Pairs,       // coordinate pairs without end: handed over in pieces, one instruction each
    Curve,       // groups of six, likewise
    Encoded,     // PE
    Label,       // up to the label terminator
    Terminator,  // DT
    Character,   // SM: one byte
    Quoted,      // BP: numbers, and text in quotes between them
    Comment,     // CO, MG: text in quotes, or up to the terminator
};

struct ManifestRow {
    char name[3];
    Form form;
    bool inPolygon;       // carried out between PM0 and PM2 too
    bool whileLost;       // carried out although the pen is lost
    bool draws;           // passing it over loses something on the paper; of use where procedure is null
    bool hpgl2;           // only HP-GL/2 has it
    Procedure procedure;  // null: read and passed over
};

// The row of a name, or null.
const ManifestRow* findInstruction(char first, char second);

}  // namespace plotter
