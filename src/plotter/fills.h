// Fill types: what areas are filled with, and what lines are screened with.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "plotter/budget.h"
#include "plotter/hatching.h"
#include "plotter/ink.h"
#include "plotter/plane.h"

namespace plotter {

class Machine;

// Steps in one drawing that the winding rule may take; a step as in areas.h.
inline constexpr std::size_t MOST_WINDING_STEPS_IN_ALL = 8'000'000;

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

// FT.
struct FillChoice {
    FillType type = FillType::Solid;
    Hatch parallel, crossed;      // each type has its own
    double userAngle = 0;         // degrees
    double shade = 50;            // per cent
    int32_t raster = 1;           // 1 to 8
    bool rasterInOnePen = false;  // the one that is selected
    int32_t predefined = 1;       // 1 to 6
};

struct Fills {
    FillChoice choice;

    Point anchor;                                          // AC, plotter units
    double penThickness = 0;                               // PT, plotter units; 0: never given
    std::vector<double> gaps;                              // UF, plotter units; none: as if one of one per cent
    std::array<std::optional<RasterPattern>, 8> patterns;  // none: solid

    std::optional<double> screen;  // SV: what lines keep of their colour, from 0 to 1

    Budget hatchPieces{MOST_HATCH_PIECES};
    Budget windingSteps{MOST_WINDING_STEPS_IN_ALL};
};

// Draws what comes of an area (plotter units) on the paper, with the machine's fill type and pen: even-odd areas, or
// lines that are hatched and dashed.
void fillArea(Machine& machine, const Area& area, FillRule rule);

// The ink of lines and edges: SV makes it lighter. Fills are left alone.
Ink lineInk(const Fills& fills, Ink ink);

// How dark a pattern of that number looks from afar, from 0 to 1; of the types Raster, Predefined and Downloaded.
double patternShade(const Fills& fills, FillType type, int32_t number);

}  // namespace plotter
