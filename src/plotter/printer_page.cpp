#include "plotter/printer_page.h"

#include <algorithm>
#include <array>

#include "plotter/ascii.h"

namespace plotter {

namespace {

// clang-format off
constexpr std::array PAPERS = {
    PaperSize{  2, "LETTER",    2550,  3300, false},   // the first one is the default
    PaperSize{  1, "EXECUTIVE", 2175,  3150, false},
    PaperSize{  3, "LEGAL",     2550,  4200, false},
    PaperSize{  6, "LEDGER",    3300,  5100, false},
    PaperSize{  6, "TABLOID",   3300,  5100, false},
    PaperSize{  6, "11X17",     3300,  5100, false},
    PaperSize{ 25, "A5",        1748,  2480, true },
    PaperSize{ 26, "A4",        2480,  3507, true },
    PaperSize{ 27, "A3",        3507,  4960, true },
    PaperSize{ 28, "A2",        4960,  7016, true },
    PaperSize{ 29, "A1",        7016,  9933, true },
    PaperSize{ 30, "A0",        9933, 14043, true },
    PaperSize{ 45, "JISB5",     2149,  3035, true },
    PaperSize{ 46, "JISB4",     3035,  4299, true },
    PaperSize{ 80, "MONARCH",   1162,  2250, false},
    PaperSize{ 81, "COM10",     1237,  2850, false},
    PaperSize{ 90, "DL",        1299,  2598, true },
    PaperSize{ 91, "C5",        1913,  2704, true },
    PaperSize{100, "B5",        2078,  2952, true },
};
// clang-format on

// Dots, at each side.
struct SideMargins {
    double upright, landscape;
};
constexpr SideMargins INCH_MARGINS = {75, 60};
constexpr SideMargins METRIC_MARGINS = {71, 59};

}  // namespace

const PaperSize* findPaper(double code) {
    const auto* const found = std::ranges::find_if(PAPERS, [&](const PaperSize& paper) { return paper.code == code; });
    return found != PAPERS.end() ? &*found : nullptr;
}

const PaperSize* findPaper(std::string_view name) {
    const auto* const found =
        std::ranges::find_if(PAPERS, [&](const PaperSize& paper) { return sameWord(paper.name, name); });
    return found != PAPERS.end() ? &*found : nullptr;
}

PrinterPage::PrinterPage() {
    setPaper(PAPERS.front());
}

void PrinterPage::setPaper(const PaperSize& paper) {
    const SideMargins& margins = paper.isMetric ? METRIC_MARGINS : INCH_MARGINS;
    setPaper(paper.width * UNITS_PER_DOT, paper.height * UNITS_PER_DOT);
    uprightMargin_ = margins.upright * UNITS_PER_DOT;
    landscapeMargin_ = margins.landscape * UNITS_PER_DOT;
}

void PrinterPage::setPaper(double width, double height) {
    width_ = width;
    height_ = height;
    uprightMargin_ = INCH_MARGINS.upright * UNITS_PER_DOT;
    landscapeMargin_ = INCH_MARGINS.landscape * UNITS_PER_DOT;
    length_ = 0;
}

void PrinterPage::setSheet(Point size) {
    setPaper(size.x, size.y);
    uprightMargin_ = landscapeMargin_ = 0;
    landscape_ = false;
}

Point PrinterPage::paper() const {
    return landscape_ ? Point{height_, width_} : Point{width_, height_};
}

Point PrinterPage::logical() const {
    const Point size = paper();
    const double margin = landscape_ ? landscapeMargin_ : uprightMargin_;
    return {std::max(size.x - 2 * margin, 0.0), length_ > 0 ? length_ : size.y};
}

Point PrinterPage::toPaper(Point logical) const {
    return {logical.x + (landscape_ ? landscapeMargin_ : uprightMargin_), paper().y - logical.y};
}

Point PrinterPage::fromPaper(Point onPaper) const {
    return {onPaper.x - (landscape_ ? landscapeMargin_ : uprightMargin_), paper().y - onPaper.y};
}

Frame PictureFrame::onPaper(const PrinterPage& page) const {
    const Point logical = page.logical();
    const double wide = width > 0 ? width : logical.x;
    const double high = height > 0 ? height : std::max(logical.y - 2 * DEFAULT_MARGIN, UNITS_PER_DOT);
    const Point corner = anchor.value_or(Point{0, DEFAULT_MARGIN});
    Frame frame;
    frame.corner = page.toPaper({corner.x, corner.y + high});
    frame.scaleX = plotWidth > 0 ? wide / plotWidth : 1;
    frame.scaleY = plotHeight > 0 ? high / plotHeight : 1;
    frame.size = Point{wide / frame.scaleX, high / frame.scaleY};
    return frame;
}

}  // namespace plotter
