// The page of a printer: paper, orientation, the logical page, and the picture frame that plots are drawn in.
//
// Lengths are plotter units. A point of the logical page counts from its upper left, y downwards; a point on the paper
// from the lower left of the sheet as it is read, y upwards.
#pragma once

#include <optional>
#include <string_view>

#include "plotter/coordinates.h"
#include "plotter/plane.h"
#include "plotter/units.h"

namespace plotter {

// Above and below text, and a frame.
inline constexpr double DEFAULT_MARGIN = UNITS_PER_INCH / 2;

struct PaperSize {
    int code;               // of ESC&l#A
    std::string_view name;  // in job control
    double width, height;   // upright, dots of 300 to the inch
    bool isMetric;          // such papers have narrower side margins
};

// Null: not known.
const PaperSize* findPaper(double code);
const PaperSize* findPaper(std::string_view name);

class PrinterPage {
  public:
    PrinterPage();

    void setPaper(const PaperSize& paper);
    // A paper of its own size, upright.
    void setPaper(double width, double height);
    // A sheet without margins, as it lies under a plotter's pens.
    void setSheet(Point size);
    void setLandscape(bool landscape) { landscape_ = landscape; }
    bool isLandscape() const { return landscape_; }
    // 0: as long as the paper.
    void setLength(double length) { length_ = length; }

    Point paper() const;    // width and height as it is read
    Point logical() const;  // width and length of the logical page
    Point toPaper(Point logical) const;
    Point fromPaper(Point paper) const;

  private:
    double width_ = 0, height_ = 0;                   // upright
    double uprightMargin_ = 0, landscapeMargin_ = 0;  // at each side of the logical page
    bool landscape_ = false;
    double length_ = 0;
};

// As given by ESC*c; unsaid: by the page.
struct PictureFrame {
    std::optional<Point> anchor;           // logical page: its upper left
    double width = 0, height = 0;          // 0: unsaid
    double plotWidth = 0, plotHeight = 0;  // of the plot that is fitted into it; 0: unsaid

    Frame onPaper(const PrinterPage& page) const;
};

}  // namespace plotter
