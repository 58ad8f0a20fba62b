// How wide the letters of text typefaces are, for labels that were set with them in mind.
#pragma once

#include "plotter/glyphs.h"

namespace plotter {

enum class TextFace { Sans, Serif };

// Of a character with that glyph, in thousandths of the font's height in points (of its em).
double textWidth(TextFace face, char32_t character, const Glyph& glyph);

}  // namespace plotter
