// The inputs of the benchmarks: plots of any size, the same at every run. Coordinates are plotter units.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The sheet that all of them lie on; ten units are a pixel of a picture of 1600 x 1000.
inline constexpr int32_t SHEET_WIDTH = 15960;
inline constexpr int32_t SHEET_HEIGHT = 9960;

struct Plot {
    std::string text;
    int64_t items = 0;  // segments or labels, as the generator's words say
};

// Long absolute polylines with numbers of three to five digits, of about so many bytes: "PU…;PD…,…;". items: the pairs
// of coordinates of both commands.
Plot penMoves(int64_t bytes);

// So many segments of 80 units in the mean, all on the sheet, as polylines of 20, behind a dot at two corners of the
// sheet, which fix the extents. items: the segments and the dots. Pen width in millimetres, 0 for thin.
Plot strokes(int64_t segments, double penWidth);

// So many labels of eight letters, 80 units wide a character, 120 high. items: the labels.
Plot labels(int64_t count);

// The same moves for a plotter: half units as user units under SC, with a fraction each.
Plot scaledPenMoves(int64_t bytes);

// The yardstick of whoever reads numbers: finds those of a text and adds them up.
int64_t sumNumbers(std::string_view text);
