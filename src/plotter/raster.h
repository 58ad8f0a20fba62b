// Pictures of pixels between the instructions of a plot: rows, compressed, in planes or pixel by pixel.
//
// Life of one: begin where and how large its pixels are, give it rows (planes, the last of them ends the row), end.
// What comes out are filled rectangles of equal pixels, as large as can be, at a resolution that a page can show. White
// is not drawn.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "plotter/ink.h"
#include "plotter/plane.h"
#include "plotter/report.h"

namespace plotter {

// Bytes of a row (or of one of its planes), and its pixels: 60 inches at 1200 dots an inch, and far more than that.
inline constexpr std::size_t MOST_ROW_BYTES = std::size_t{1} << 20;
inline constexpr std::size_t MOST_COLUMNS = std::size_t{1} << 18;
inline constexpr std::size_t MOST_ROWS = std::size_t{1} << 18;
// Cells on the longer side of a picture, more than a screen or a page of paper shows apart. Larger ones are reduced.
inline constexpr std::size_t MOST_CELLS = 4000;
// Rectangles that a file's pictures become; each picture gets half of what is left, and is reduced until it fits.
inline constexpr std::size_t MOST_RECTANGLES = 1'000'000;
// Steps of work, one a byte that is decoded and one a change of colour: for any file, and for each of its bytes. A page
// of 600 dots an inch has four million bytes, and a file a tenth of them.
inline constexpr double MOST_STEPS = 32e6;
inline constexpr double MOST_STEPS_TO_ONE = 64;

// One row or plane, decoded over the one before it.
class RowDecoder {
  public:
    // It begins as zeros; at most so many bytes, the rest is dropped.
    void reset(std::size_t mostBytes);
    void clear() { row_.clear(); }

    // By methods 0, 1, 2, 3 and 9. False when the method is another one, or the data make no row: it stays as it was.
    bool decode(int method, std::string_view data);

    // As far as data came; behind it are zeros.
    std::span<const uint8_t> row() const { return row_; }
    uint8_t at(std::size_t index) const { return index < row_.size() ? row_[index] : uint8_t{0}; }

  private:
    bool decodeRuns(std::string_view data);
    void decodePacked(std::string_view data);
    void decodeDelta(std::string_view data);
    void decodeCompressedDelta(std::string_view data);
    void append(std::string_view bytes);
    void append(std::size_t count, uint8_t byte);
    void overwrite(std::size_t at, std::string_view bytes);
    void overwrite(std::size_t at, std::size_t count, uint8_t byte);

    std::vector<uint8_t> row_;
    std::size_t most_ = MOST_ROW_BYTES;
};

// How a row's bits become colours.
struct PixelFormat {
    enum class Encoding { IndexByPlane, IndexByPixel, DirectByPlane, DirectByPixel };
    Encoding encoding = Encoding::IndexByPlane;
    int bits = 1;              // of an index, 1 to 8; of a primary where they are direct: 1 or 8
    bool subtractive = false;  // direct ones are cyan, magenta and yellow
    bool grey = false;         // of direct ones the first primary says how light it is
    std::size_t planes() const;
    std::size_t bitsPerPixel() const;  // in one plane
    friend bool operator==(const PixelFormat&, const PixelFormat&) = default;
};

// What its pixels lie on: pixel (column, row) goes to paper.
struct RasterPlace {
    Affine toPaper;                      // pixels, rows counting downwards, to plotter units on the paper
    std::optional<std::size_t> columns;  // unknown: as far as each row's data come
    std::optional<std::size_t> rows;     // what is beyond is not drawn
};

class Raster {
  public:
    using Draw = std::function<void(const Area& area, const Ink& ink)>;

    Raster(Draw draw, Report& report);

    // How many bytes the file has, for the bound of what is decoded.
    void setFileSize(std::size_t bytes);

    bool isOpen() const { return open_; }
    // Ends the one before. The palette is of 2 to the number of index bits; a missing entry is black.
    void begin(const RasterPlace& place, const PixelFormat& format, std::vector<Colour> palette);
    // A plane that is not the row's last.
    void addPlane(int method, std::string_view data);
    // The row's last plane, or the whole row; of method 5 a block of rows.
    void addRow(int method, std::string_view data);
    // Rows that stay white; those after them begin from zeros.
    void skipRows(double count);
    // Columns that the next rows begin further right.
    void setLeft(double columns);
    // Draws it; nothing when none is open.
    void end();
    // Rows it has had so far, or had when it ended.
    std::size_t rows() const { return rows_; }

  private:
    using Sums = std::array<uint64_t, 3>;  // of red, green, blue: how much darker than white

    struct Rectangle {
        uint16_t colour;
        uint32_t left, right, top, bottom;  // cells; right and bottom are beyond
    };

    bool spend(double steps);
    enum class Decoded { Row, Nothing, Unknown };
    Decoded decodeInto(std::size_t plane, int method, std::string_view data);
    void addBlock(std::string_view data);
    void finishRow();
    void repeatRow(std::size_t times);
    void layRow(std::size_t times);

    void findRuns();
    void findRunsOfPlanes();
    void findRunsOfPixels();
    void addRun(std::size_t columns, uint32_t colour);
    std::size_t columnsOfRow() const;
    uint32_t colourOfIndex(std::size_t index) const;
    uint32_t colourOfBits(std::size_t column) const;

    void mix(std::size_t times);
    void store();
    std::size_t columnsOf(std::size_t cell, std::size_t reduction) const;
    void fold(const std::vector<uint16_t>& row, std::size_t finer);
    void coarsen();
    uint16_t indexOf(uint32_t colour);
    bool findRectangles(std::size_t most, std::vector<Rectangle>& found) const;
    void drawRectangles(std::vector<Rectangle>& found);
    Ring ringOf(const Rectangle& rectangle) const;

    struct Run {
        uint32_t first, end;  // columns
        uint32_t colour;      // 0xRRGGBB
    };

    Draw draw_;
    Report& report_;
    double stepsLeft_ = MOST_STEPS;
    std::size_t rectanglesLeft_ = MOST_RECTANGLES;

    bool open_ = false;
    RasterPlace place_;
    PixelFormat format_;
    std::vector<Colour> palette_;
    std::vector<RowDecoder> planes_;
    std::size_t plane_ = 0;  // the next one of the row
    std::size_t rows_ = 0;   // of pixels, so far
    std::size_t left_ = 0;   // columns
    std::vector<Run> runs_;  // of the row that was laid last, white ones left out

    std::size_t reduction_ = 1;                 // pixels a cell is wide and high
    std::vector<std::vector<uint16_t>> cells_;  // by row, each as wide as it has ink; indices of colours_
    std::vector<Sums> mixed_;                   // of the row of cells under way
    std::size_t mixedRows_ = 0;                 // rows of pixels in it
    std::vector<uint32_t> colours_;             // 0xRRGGBB; the first one is white
    std::unordered_map<uint32_t, uint16_t> indices_;
};

}  // namespace plotter
