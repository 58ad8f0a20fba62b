// Text between the plots of a printer's page, in strokes: the font that was chosen as fixed or proportional, its pitch
// and its height, and no more of its looks than that.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "plotter/plane.h"

namespace plotter {

struct CaptionFont {
    int symbolSet = 277;  // 32 times the number, plus the letter less 64: 277 is 8U
    bool proportional = false;
    double pitch = 10;   // characters an inch, of a fixed one
    double height = 12;  // points
    bool italic = false;
    int typeface = 3;

    // Of a fixed one, plotter units.
    double advance() const;
};

// The next character of a text that is not empty, and how many bytes it takes. Sequences of UTF-8 are taken as such in
// any symbol set: they are no words of another.
struct CaptionCharacter {
    char32_t code;
    std::size_t length;
};
CaptionCharacter nextCharacter(std::string_view text, int symbolSet);

struct CaptionStrokes {
    std::vector<Line> lines;  // plotter units from the character's origin on the baseline; y upwards
    double advance = 0;       // to the next one's origin
    bool isKnown = true;      // false: a box stands for it
};
// cell: how far apart fixed characters are.
CaptionStrokes strokesOf(char32_t character, const CaptionFont& font, double cell);

}  // namespace plotter
