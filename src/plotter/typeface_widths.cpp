#include "plotter/typeface_widths.h"

#include <algorithm>
#include <array>

namespace plotter {

namespace {

using Widths = std::array<int16_t, 95>;  // of ' ' to '~'

// As most sans-serif and roman faces have them, within a few hundredths.
// clang-format off
constexpr Widths SANS = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278,
    556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556,
   1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778,
    667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556,
    333, 556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556,
    556, 556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584,
};
constexpr Widths SERIF = {
    250, 333, 408, 500, 500, 833, 778, 180, 333, 333, 500, 564, 250, 333, 250, 278,
    500, 500, 500, 500, 500, 500, 500, 500, 500, 500, 278, 278, 564, 564, 564, 444,
    921, 722, 667, 667, 722, 611, 556, 722, 722, 333, 389, 722, 611, 889, 722, 722,
    556, 722, 667, 556, 611, 722, 722, 944, 722, 722, 611, 333, 278, 333, 469, 500,
    333, 444, 500, 444, 500, 444, 333, 500, 500, 278, 278, 500, 278, 778, 500, 500,
    500, 500, 333, 389, 278, 500, 500, 722, 500, 500, 444, 480, 200, 480, 541,
};
// clang-format on

// Of a unit of a glyph, on an average.
constexpr double UNIT = 30;

}  // namespace

TextFace textFace(int32_t typeface) {
    constexpr std::array SERIFS = {5, 8, 15, 23, 44, 47, 101, 127, 517};
    const bool hasSerifs = std::ranges::find(SERIFS, typeface & WITHOUT_MAKER) != SERIFS.end();
    return hasSerifs ? TextFace::Serif : TextFace::Sans;
}

double textWidth(TextFace face, char32_t character, const Glyph& glyph) {
    const char32_t letter = glyph.letter != 0 ? glyph.letter : character;
    if (letter < U' ' || letter > U'~') return (glyph.right - glyph.left) * UNIT;
    return (face == TextFace::Sans ? SANS : SERIF).at(letter - U' ');
}

}  // namespace plotter
