// Fill types: what areas are filled with, and what lines are screened with.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "plotter/areas.h"
#include "plotter/budget.h"
#include "plotter/ink.h"
#include "plotter/instruction.h"
#include "plotter/plane.h"
#include "plotter/taker.h"

namespace plotter {

class Machine;

// Hatch lines in one area, and pieces of hatch lines in one drawing; beyond, the area is solid: so dense, it looks it.
inline constexpr std::size_t MOST_HATCH_LINES = 20'000;
inline constexpr std::size_t MOST_HATCH_PIECES = 2'000'000;
// Steps in one drawing that the winding rule may take; a step as in areas.h.
inline constexpr std::size_t MOST_WINDING_STEPS_IN_ALL = 8'000'000;
// Pens of one raster pattern that are told apart; what others draw counts for the last of them.
inline constexpr std::size_t MOST_RASTER_PENS = 16;

// Parallel lines.
struct Hatch {
    double spacing = 0;  // plotter units; 0: one per cent of the diagonal from P1 to P2
    double angle = 0;    // degrees, counter-clockwise
};

// RF: which share of the pixels each pen has. The pixels are finer than the picture, so where they lie is not kept.
struct RasterPattern {
    struct Part {
        int32_t pen = 0;
        double share = 0;
    };
    std::vector<Part> parts;  // without pen 0, the white
};

enum class FillType : int32_t {
    Solid = 1,
    SolidOneWay = 2,
    Parallel = 3,
    Crossed = 4,
    User = 5,
    Shade = 10,
    Raster = 11,
    Predefined = 21,
    Downloaded = 22,
};

struct Fills {
    FillType type = FillType::Solid;
    Hatch parallel, crossed;      // each type has its own
    double userAngle = 0;         // degrees
    double shade = 50;            // per cent
    int32_t raster = 1;           // 1 to 8
    bool rasterInOnePen = false;  // the one that is selected
    int32_t predefined = 1;       // 1 to 6

    Point anchor;                                          // AC, plotter units
    double penThickness = 0;                               // PT, plotter units; 0: never given
    std::vector<double> gaps;                              // UF, plotter units; none: as if one of one per cent
    std::array<std::optional<RasterPattern>, 8> patterns;  // none: solid

    std::optional<double> screen;  // SV: what lines keep of their colour, from 0 to 1

    Budget hatchPieces{MOST_HATCH_PIECES};
    Budget windingSteps{MOST_WINDING_STEPS_IN_ALL};
};

// ---- drawing ----

using InkedLineTaker = Taker<std::span<const Point>, const Ink&>;
using InkedAreaTaker = Taker<const Area&, const Ink&>;

// What of an area (plotter units) comes on the paper, with the machine's fill type and pen: even-odd areas, or lines
// that are hatched and dashed.
void fillArea(Machine& machine, const Area& area, FillRule rule, const InkedAreaTaker& areaTaker,
              const InkedLineTaker& lineTaker);

// The ink of lines and edges: SV makes it lighter. Fills are left alone.
Ink lineInk(const Fills& fills, Ink ink);

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

// ---- instructions ----
void fillType(Machine& machine, const Instruction& instruction);         // FT
void anchorCorner(Machine& machine, const Instruction& instruction);     // AC
void rasterFill(Machine& machine, const Instruction& instruction);       // RF
void userFill(Machine& machine, const Instruction& instruction);         // UF
void penThickness(Machine& machine, const Instruction& instruction);     // PT
void screenedVectors(Machine& machine, const Instruction& instruction);  // SV

}  // namespace plotter
