// Line types: LT and UL, and lines cut into dashes.
//
// A pattern is a list of shares of the pattern length, the pen down for the first and then up and down in turn. A share
// of 0 with the pen down is a dot. Types 1 to 8 are run on from line to line; -1 to -8 are fitted between the two ends
// of each straight line, which then begins and ends with the pen down.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "plotter/budget.h"
#include "plotter/plane.h"
#include "plotter/taker.h"

namespace plotter {

class Machine;

// Dashes and dots in one drawing; with more of them lines are solid.
inline constexpr std::size_t MOST_DASHES = 1'000'000;
// Plotter units: a pattern that is shorter is solid under any pen.
inline constexpr double SHORTEST_PATTERN = 0.5;

// Numbers of UL and UF; more are passed over.
inline constexpr std::size_t MOST_GAPS = 20;

struct Pattern {
    static constexpr std::size_t MOST_PARTS = MOST_GAPS + 1;  // one more where the first is halved
    std::array<double, MOST_PARTS> parts{};                   // shares of the length, 1 in all
    std::size_t count = 0;

    friend bool operator==(const Pattern&, const Pattern&) = default;
};

inline constexpr int32_t PATTERNED_TYPES = 8;
// The patterns of types 1 to 8 that nobody has changed.
const std::array<Pattern, PATTERNED_TYPES>& standardPatterns();

struct LineTypes {
    static constexpr int32_t SOLID = 99;

    // How far the pattern has got, and where.
    struct Residue {
        std::size_t part = 0;  // that is under way
        double done = 0;       // of it, share of the pattern length
        Point end;             // plotter units
        bool runs = false;     // false: the next line begins the pattern
    };
    struct Choice {
        int32_t type = SOLID;   // -8 to 8; 0: dots at the points
        Pattern pattern;        // of 1 to 8, as it was when the type was chosen
        double length = 4;      // of the pattern
        bool inPercent = true;  // of the diagonal from P1 to P2; else in millimetres
    };

    Choice choice;
    Residue residue;
    std::optional<LineTypes::Choice> before;  // for LT99: what LT ended
    Residue residueBefore;
    std::array<Pattern, PATTERNED_TYPES> patterns = standardPatterns();
    Budget dashes{MOST_DASHES};
};

// The next line begins the pattern, wherever it begins.
void clearResidue(LineTypes& types);

// The length of the machine's pattern in plotter units.
double patternLength(const Machine& machine);

// Hands over what is drawn of a line, in pieces; corners within a dash stay. patternLength: plotter units. One point,
// or several that are the same, are a dot with any type. A line that begins where the last one ended goes on with its
// pattern. False: it would have been too many pieces, and the line is solid.
bool dashLine(LineTypes& types, double patternLength, std::span<const Point> points, const LineTaker& taker);

// The same for a line by itself that begins at a share of the pattern, from 0 to 1; the residue is left alone.
bool dashLineFrom(LineTypes& types, double share, double patternLength, std::span<const Point> points,
                  const LineTaker& taker);

}  // namespace plotter
