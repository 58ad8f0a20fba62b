// The strokes that make_glyphs read out of the fonts when this was built.
//
// The Hershey Fonts were originally created by Dr. A. V. Hershey while working at the U. S. National Bureau of
// Standards. The format of the font data that make_glyphs reads was originally created by James Hurt, Cognition, Inc.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace plotter {

struct FontGlyph {
    char32_t character;
    int8_t left, right;  // bearings
    uint32_t first;      // of its coordinates, counted in numbers
    uint32_t count;      // of numbers
};

// Stands in x's place where a stroke ends; y is then of no meaning.
inline constexpr int8_t PEN_UP = -128;

// In the order of their characters. Units as in glyphs.h.
std::span<const FontGlyph> fontGlyphs();
// x and y in turn, of all glyphs.
std::span<const int8_t> fontCoordinates();

}  // namespace plotter
