// How the characters of a label lie in their cells.
#pragma once

#include <vector>

#include "plotter/glyph_tables.h"
#include "plotter/labels.h"

namespace plotter {

inline constexpr char32_t MARKS_END = 0x0370;
inline constexpr char32_t HIGH_MARKS_END = HIGH_MARKS + (MARKS_END - COMBINING_MARKS);

// A glyph or a downloaded character as it lies in its cell: x and y times scale, plus shift; upright, before SL.
struct Cell {
    const std::vector<Line>* strokes = nullptr;
    Point scale = {};
    Point shift = {};
    double advance = 0;  // without ES
    double width = 0;    // that is seen
    bool over = false;   // goes over the one before
    bool user = false;
};

// Whether the character goes over the one before it.
bool isMark(char32_t character);

// Of a glyph, as the face spaces it.
Cell cellOf(const Face& face, char32_t character, const Glyph& glyph);
// From a space to what follows it, plotter units, without ES.
double spaceAdvance(const Face& face);

}  // namespace plotter
