// Where the strokes of a label go: the layout alone, without a plotter around it.
//
// Each line of a label is placed by itself: its letters follow each other along the path, the label origin says where
// the line lies about the pen, and control codes move the pen on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "plotter/characters.h"
#include "plotter/glyphs.h"
#include "plotter/plane.h"

namespace plotter {

// From one character to the next, in widths of a capital.
inline constexpr double ADVANCE = 1.5;

// Capitals of no mirrored size; plotter units.
struct Face {
    enum class Spacing : uint8_t { Fixed, Stick, Sans, Serif };
    SymbolSet symbols;
    Spacing spacing = Spacing::Fixed;
    double width = 0;
    double height = 0;
    double slant = 0;  // tangent, SL and the typeface's own together
    bool bold = false;
};

// Everything that a label's look depends on.
struct Lettering {
    Face faces[2];           // the standard and the alternate one
    bool mirroredX = false;  // negative width: everything runs to the left
    bool mirroredY = false;
    double cosine = 1;  // of the direction
    double sine = 0;
    double extraSpace = 0;
    double extraLine = 0;
    int origin = 1;
    int path = 0;
    bool feedReversed = false;
    bool transparent = false;
    bool wide = false;
    bool printer = false;  // control codes as printers have them
    bool hpgl2 = false;    // the grid of downloaded characters
    CharacterMode mode = CharacterMode::Hp7;
    const std::map<uint8_t, std::vector<Line>>* userCharacters = nullptr;

    // From upright letters of that size to the directions of the paper, for distances.
    Point turned(Point p) const;
    // The way to the next character, and to the next line; of a space where widths differ.
    Point step(const Face& face) const;
    Point feed(const Face& face) const;
};

// Where a label begins, and where it leaves off; plotter units.
struct LabelPen {
    Point position;
    Point carriage;          // where CR returns to
    bool alternate = false;  // the alternate font is on
};

class LabelOutput {
  public:
    LabelOutput() = default;
    LabelOutput(const LabelOutput&) = delete;
    LabelOutput& operator=(const LabelOutput&) = delete;
    virtual ~LabelOutput() = default;

    // Points in plotter units, all of them within 2 to the 30th.
    virtual void stroke(std::span<const Point> points) = 0;
    // A code that the set has nothing for, or a character that there is no glyph of.
    virtual void unknown(char32_t character, bool isCode) = 0;
    // Whether a downloaded character of so many points may be drawn.
    virtual bool mayDraw(std::size_t points) = 0;
};

// The label's bytes, without the terminator.
void layLabel(const Lettering& lettering, std::string_view text, LabelPen& pen, LabelOutput& output);

// One character in the middle of a point, as SM has it.
void laySymbol(const Lettering& lettering, bool alternate, char byte, Point middle, LabelOutput& output);

// Strokes from upright letters' plotter units to the paper's directions, slanted and moved.
void layStrokes(const Lettering& lettering, const Face& face, std::span<const Line> strokes, Point scale, Point shift,
                Point at, LabelOutput& output);

}  // namespace plotter
