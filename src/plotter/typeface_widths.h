// How wide the letters of text typefaces are, for labels that were set with them in mind.
#pragma once

#include <cstdint>

#include "plotter/glyphs.h"

namespace plotter {

enum class TextFace { Sans, Serif };

// Of a typeface by its number.
TextFace textFace(int32_t typeface);
// A typeface's number without its maker's.
inline constexpr int32_t WITHOUT_MAKER = 0xFFF;

// The height of capitals, of the em; and an average letter's width, of that.
inline constexpr double TEXT_CAPITAL = 0.7;
inline constexpr double TEXT_AVERAGE = 0.695;
inline constexpr double ITALIC_SLANT = 0.2;  // tangent

// Of a character with that glyph, in thousandths of the font's height in points (of its em).
double textWidth(TextFace face, char32_t character, const Glyph& glyph);

}  // namespace plotter
