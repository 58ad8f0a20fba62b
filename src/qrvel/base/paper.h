// Sheets of paper: how large they are, and what of them is drawn on.
#pragma once

#include <span>
#include <string_view>

namespace qrvel {

inline constexpr double MILLIMETRES_AN_INCH = 25.4;

// Millimetres. What is thinner gets lost on paper.
inline constexpr double THINNEST_LINE = 0.18;

struct Paper {
    double width = 210.0;  // millimetres
    double height = 297.0;
    bool fit = false;  // the sheet is cut to the drawing, whose longer side gets as long as that of the area
};

struct NamedPaper {
    std::string_view name;
    Paper paper;
};

// A0 to A6, Letter, Legal and Tabloid, upright.
std::span<const NamedPaper> namedPapers();

// What is meant by a name, "fit", or WIDTHxHEIGHTmm, in capitals or not. Null, or why there is no such paper.
struct PaperChoice {
    Paper paper;
    const char* problem;
};
PaperChoice choosePaper(std::string_view words);
// The same of a size in millimetres, 10 to 5080.
PaperChoice paperOf(double width, double height);

// A sheet as it lies before the viewer. What is inside of its margins, the area, is what a page offers to draw on. A
// drawing's coordinates, and those of all that follows, are units from the area's lower left corner, y upward.
struct SheetLayout {
    double width;  // millimetres
    double height;
    double margin;  // millimetres, on each side
    double bleed;   // millimetres that a drawing may reach into the margins: the half of a pen along their border
    double unit;    // millimetres: 0.025, or more where the longer side of the area would have over 16384 of them
    int areaWidth;  // units
    int areaHeight;
    bool fit;
};

// landscape: the longer side becomes the width.
SheetLayout layOut(const Paper& paper, bool landscape);

}  // namespace qrvel
