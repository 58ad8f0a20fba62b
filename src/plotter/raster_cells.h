// The pixels of a raster picture on their way to rectangles: laid row by row, mixed into larger cells where there are
// more of them than a page can show, and joined where neighbours are equal.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace plotter {

// Cells on the longer side of a picture, more than a screen or a page of paper shows apart. Larger ones are reduced.
inline constexpr std::size_t MOST_CELLS = 4000;

inline constexpr uint32_t WHITE_PIXEL = 0xffffff;

// Equal pixels of a row.
struct PixelRun {
    uint32_t first, end;  // columns
    uint32_t colour;      // 0xRRGGBB
};

struct PixelRectangle {
    uint32_t colour;                    // 0xRRGGBB
    uint32_t left, right, top, bottom;  // columns and rows; right and bottom are beyond
};

// Of red, green and blue: how much darker than white, over several pixels.
using Darkness = std::array<uint64_t, 3>;

class RasterCells {
  public:
    // Forgets what was laid. columns: how many there will be; 0: nobody knows.
    void begin(std::size_t columns);
    // Where the picture ends on the right, for a last cell that would reach beyond; none: nobody knows.
    void setEnd(std::optional<std::size_t> column) { end_ = column; }

    // So many rows, each of these runs; columns without one are white.
    void lay(std::span<const PixelRun> runs, std::size_t times);
    // That were laid.
    std::size_t rows() const { return rows_; }
    // Pixels a cell is wide and high.
    std::size_t reduction() const { return reduction_; }

    // What is not white, by colour; reduced until there are no more of them. Nothing but the number of rows is left.
    std::vector<PixelRectangle> takeRectangles(std::size_t most);

  private:
    using Rectangles = std::vector<PixelRectangle>;

    void mix(std::span<const PixelRun> runs, std::size_t times);
    void store();
    std::size_t columnsOf(std::size_t cell, std::size_t reduction) const;
    void fold(const std::vector<uint16_t>& row, std::size_t finer);
    void coarsen();
    uint16_t indexOf(uint32_t colour);

    // In cells, with indices for colours.
    bool findRectangles(std::size_t most, Rectangles& found) const;
    void findRuns(uint32_t row, Rectangles& runs) const;
    PixelRectangle inPixels(const PixelRectangle& cells) const;

    std::optional<std::size_t> end_;            // column
    std::size_t rows_ = 0;                      // of pixels
    std::size_t reduction_ = 1;                 // pixels a cell is wide and high
    std::vector<std::vector<uint16_t>> cells_;  // by row, each as wide as it has ink; indices of colours_
    std::vector<Darkness> mixed_;               // of the row of cells under way
    std::size_t mixedRows_ = 0;                 // rows of pixels in it
    std::vector<uint32_t> colours_;             // 0xRRGGBB; the first one is white
    std::unordered_map<uint32_t, uint16_t> indices_;
};

}  // namespace plotter
