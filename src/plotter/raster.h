// Pictures of pixels between the instructions of a plot: rows, compressed, in planes or pixel by pixel.
//
// Life of one: begin where and how large its pixels are, give it rows (planes, the last of them ends the row), end.
// What comes out are filled rectangles of equal pixels, as large as can be, at a resolution that a page can show. White
// is not drawn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "plotter/ink.h"
#include "plotter/plane.h"
#include "plotter/raster_cells.h"
#include "plotter/report.h"
#include "plotter/row_decoder.h"

namespace plotter {

// Pixels of a picture: 60 inches at 1200 dots an inch, and far more than that.
inline constexpr std::size_t MOST_COLUMNS = std::size_t{1} << 18;
inline constexpr std::size_t MOST_ROWS = std::size_t{1} << 18;
// Rectangles that a file's pictures become; each picture gets half of what is left, and is reduced until it fits.
inline constexpr std::size_t MOST_RECTANGLES = 1'000'000;
// Steps of work, one a byte that is decoded and one a change of colour: for any file, and for each of its bytes. A page
// of 600 dots an inch has four million bytes, and a file a tenth of them.
inline constexpr double MOST_STEPS = 32e6;
inline constexpr double MOST_STEPS_TO_ONE = 64;

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
    std::size_t rows() const { return cells_.rows(); }

  private:
    bool spend(double steps);
    enum class Decoded { Row, Nothing, Unknown };
    Decoded decodeInto(std::size_t plane, int method, std::string_view data);
    void addBlock(std::string_view data);
    void finishRow();
    void repeatRow(std::size_t times);

    void findRuns();
    void findRunsOfPlanes();
    void findRunsOfPixels();
    void addRun(std::size_t columns, uint32_t colour);
    std::size_t columnsOfRow() const;
    uint32_t ofPrimaries(uint32_t colour) const;
    uint32_t colourOfIndex(std::size_t index) const;
    uint32_t colourOfBits(std::size_t column) const;

    Ring ringOf(const PixelRectangle& rectangle) const;

    Draw draw_;
    Report& report_;
    double stepsLeft_ = MOST_STEPS;
    std::size_t rectanglesLeft_ = MOST_RECTANGLES;

    bool open_ = false;
    RasterPlace place_;
    PixelFormat format_;
    std::vector<Colour> palette_;
    std::vector<RowDecoder> planes_;
    std::size_t plane_ = 0;       // the next one of the row
    std::size_t left_ = 0;        // columns
    std::vector<PixelRun> runs_;  // of the row that was laid last, white ones behind the others left out
    RasterCells cells_;
};

}  // namespace plotter
