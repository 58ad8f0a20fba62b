// The pens of the plain text: which one of the viewer's draws a stroke, and in which colour.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "plotter/ink.h"

namespace plotter {

// The viewer shows so many colours besides that of the paper.
inline constexpr int32_t MOST_COLOURS = 63;

// What tells strokes apart: a pen whose colour is the viewer's, or a colour.
struct PenKey {
    int32_t pen = 0;  // 0: the colour counts
    Colour colour;
    friend bool operator<(const PenKey& a, const PenKey& b) {
        return std::tie(a.pen, a.colour) < std::tie(b.pen, b.colour);
    }
};

// How much is drawn with each; a measure of ink.
using PenUse = std::map<PenKey, double>;

PenKey keyOf(const Ink& ink, bool coloursChosen);

// At most MOST_COLOURS of them; those that are used least are drawn with the nearest of the others.
class Palette {
  public:
    struct Pen {
        int32_t number;
        bool ownColour;  // by PC; else the viewer's
        Colour colour;
    };

    Palette() = default;
    explicit Palette(const PenUse& use);

    const std::vector<Pen>& pens() const { return pens_; }
    // The number of the pen that draws it; pen 1 for what was never counted.
    int32_t penOf(const PenKey& key) const;

  private:
    std::vector<Pen> pens_;
    std::map<PenKey, int32_t> numbers_;
};

}  // namespace plotter
