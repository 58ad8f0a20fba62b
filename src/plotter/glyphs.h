// The strokes of single characters: a single-stroke roman font, read at build time, with accents composed.
//
// Units: a capital is 21 high and its H 14 wide; the baseline is y 0, y up, x from the middle of the H.
#pragma once

#include <span>

#include "plotter/plane.h"

namespace plotter {

inline constexpr double GLYPH_CAPITAL = 21;  // its height
inline constexpr double GLYPH_BODY = 14;     // width of an H
inline constexpr double GLYPH_ADVANCE = 22;  // of an H, set in proportion
inline constexpr double GLYPH_TALL = 15;     // letters that reach higher have their marks higher up

struct Glyph {
    double left = 0, right = 0;  // bearings: where it begins and ends when set in proportion
    std::vector<Line> strokes;   // none: a blank
    Box ink;                     // around the strokes, without those of a mark; empty: a blank
    char32_t letter = 0;         // what the mark was put on; 0: there is none
};

// Null: not known. Valid for ever.
const Glyph* findGlyph(char32_t character);
// What stands for a character that is not known: a box.
const Glyph& unknownGlyph();

}  // namespace plotter
