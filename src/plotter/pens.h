// The pens: which is selected, their colours and widths.
#pragma once

#include <array>
#include <cstdint>
#include <map>

#include "plotter/ink.h"

namespace plotter {

// Pens beyond are the highest; it keeps the tables below small whatever a file says.
inline constexpr int32_t MOST_PENS = 32768;

struct Pens {
    int32_t selected = 1;
    int32_t palette = 8;                            // NP
    std::map<int32_t, Colour> colours;              // given by PC
    std::array<double, 3> black = {0, 0, 0};        // CR, by red, green, blue
    std::array<double, 3> white = {255, 255, 255};  // CR
    bool widthIsRelative = false;                   // WU
    double width = 0;                               // PW for all pens, plotter units; 0: the thinnest line
    std::map<int32_t, double> widths;               // PW of one pen
    bool whiteCovers = false;                       // TR0

    Colour colourOf(int32_t pen) const;
    double widthOf(int32_t pen) const;  // plotter units
};

// HP-GL/2's colour of a pen that has been given none.
Colour defaultColour(int32_t pen, int32_t palette);

}  // namespace plotter
