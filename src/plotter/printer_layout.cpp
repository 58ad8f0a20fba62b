// The printer's page, its cursor, and the picture frame.
#include <algorithm>
#include <cmath>

#include "plotter/printer.h"

namespace plotter {

namespace {

constexpr int SIDES = 4;
// Of raster on a plotter's sheet, dots an inch, as long as the file says nothing.
constexpr double SHEET_RESOLUTION = 300;

double cutToPage(double length) {
    return std::clamp(length, -MOST_LENGTH, MOST_LENGTH);
}

}  // namespace

// ---- pages ----

void Printer::setPaper(double code) {
    constexpr double CUSTOM = 101;
    const PaperSize* const paper = findPaper(code);
    const Point custom = settings_.customPaper;
    if (paper == nullptr && !(code == CUSTOM && custom.x > 0 && custom.y > 0)) return;
    endPage();
    const bool landscape = settings_.page.isLandscape();
    if (paper != nullptr) {
        settings_.page.setPaper(*paper);
    } else {
        settings_.page.setPaper(custom.x, custom.y);
    }
    settings_.page.setLandscape(landscape);
    choosesPage_ = true;
    changePage();
}

void Printer::setLandscape(bool landscape) {
    if (landscape != settings_.page.isLandscape()) endPage();
    settings_.page.setLandscape(landscape);
    changePage();
}

void Printer::setPageLength(double count) {
    endPage();
    settings_.page.setLength(std::max(lines(count), 0.0));
    choosesPage_ = true;
    changePage();
}

void Printer::setTextLength(double count) {
    margin(BOTTOM) = std::max(turnedSize().y - margin(TOP) - lines(count), 0.0);
}

void Printer::setLeftMargin(double column) {
    margin(LEFT) = std::max(columns(column), 0.0);
    const Point cursor = turnedCursor();
    setTurnedCursor({std::max(cursor.x, margin(LEFT)), cursor.y});
}

void Printer::setRightMargin(double column) {
    margin(RIGHT) = std::max(turnedSize().x - columns(column + 1), 0.0);
}

void Printer::chooseSource(double source) {
    if (source == 0) {
        endPage();
        home();
    }
}

// Another page makes another frame, and text begins anew on it.
void Printer::changePage() {
    isPrinterPage_ = true;
    settings_.onSheet = false;
    settings_.frame = {};
    setDefaultMargins();
    home();
}

// The page that a job begins with.
void Printer::takePage() {
    settings_.page = {};
    if (const PaperSize* const paper = findPaper(job_.paper)) {
        settings_.page.setPaper(*paper);
        choosesPage_ = true;
    }
    settings_.page.setLandscape(job_.landscape.value_or(false));
    setDefaultMargins();
    home();
}

// Raster between the plots of a stand-alone plotter lies on its sheet, the longer side of which is across.
void Printer::takeSheet() {
    Coordinates coordinates = machine_.state.coordinates;
    coordinates.rotation = 0;
    const Point room = coordinates.room(machine_.traits().large);
    settings_.page.setSheet({std::max(room.x, room.y), std::min(room.x, room.y)});
    if (!settings_.onSheet) {
        settings_.onSheet = true;
        settings_.margins = {};
        settings_.cursor = {};
        settings_.resolution = SHEET_RESOLUTION;
    }
}

void Printer::setDefaultMargins() {
    settings_.margins = {0, DEFAULT_MARGIN, 0, DEFAULT_MARGIN};
}

void Printer::endPage() {
    closeRaster();
    if (overlay_ >= 0 && depth_ == 0 && machine_.pageIsMarked()) runMacro(overlay_, true);
    machine_.endPage();
    captionCharacters_ = 0;
}

// ---- the cursor ----

double Printer::lines(double count) const {
    return cutToPage(count * settings_.lineSpacing);
}
double Printer::columns(double count) const {
    return cutToPage(count * settings_.columnWidth);
}
double Printer::cursorUnits(double count) const {
    return cutToPage(count / settings_.unitsPerInch * UNITS_PER_INCH);
}

double& Printer::margin(Side side) {
    return settings_.margins[static_cast<std::size_t>((side - settings_.direction + SIDES) % SIDES)];
}

Point Printer::turnedSize() const {
    const Point size = settings_.page.logical();
    return settings_.direction % 2 == 0 ? size : Point{size.y, size.x};
}

Point Printer::toLogical(Point turned) const {
    const Point size = settings_.page.logical();
    switch (settings_.direction) {
        case 1:
            return {turned.y, size.y - turned.x};
        case 2:
            return {size.x - turned.x, size.y - turned.y};
        case 3:
            return {size.x - turned.y, turned.x};
        default:
            return turned;
    }
}

Point Printer::turnedCursor() const {
    const Point size = settings_.page.logical();
    const Point cursor = settings_.cursor;
    switch (settings_.direction) {
        case 1:
            return {size.y - cursor.y, cursor.x};
        case 2:
            return {size.x - cursor.x, size.y - cursor.y};
        case 3:
            return {cursor.y, size.x - cursor.x};
        default:
            return cursor;
    }
}

void Printer::setTurnedCursor(Point turned) {
    settings_.cursor = toLogical({cutToPage(turned.x), cutToPage(turned.y)});
}

void Printer::home() {
    setTurnedCursor({margin(LEFT), margin(TOP) + lines(FIRST_LINE)});
}

void Printer::moveX(const EscapeField& field, double units) {
    const Point cursor = turnedCursor();
    setTurnedCursor({field.isSigned ? cursor.x + units : units, cursor.y});
}

// Down counts from the top margin.
void Printer::moveY(const EscapeField& field, double units, double origin) {
    const Point cursor = turnedCursor();
    setTurnedCursor({cursor.x, field.isSigned ? cursor.y + units : margin(TOP) + origin + units});
}

void Printer::setDirection(double degrees) {
    const double turns = degrees / 90;
    if (turns == std::trunc(turns) && turns >= 0 && turns < SIDES) settings_.direction = static_cast<int>(turns);
}

void Printer::pushCursor(bool push) {
    if (push && cursors_.size() < MOST_PUSHED) {
        cursors_.push_back(settings_.cursor);
    } else if (!push && !cursors_.empty()) {
        settings_.cursor = cursors_.back();
        cursors_.pop_back();
    }
}

// ---- the picture frame ----

void Printer::changeFrame(double& length, double value) {
    length = std::max(value, 0.0);
    choosesPage_ = true;
    isPrinterPage_ = true;
}

// By the language the cursor alone can be its upper left.
void Printer::anchorFrame(double value) {
    if (value == 0) {
        settings_.frame.anchor = settings_.cursor;
        choosesPage_ = true;
        isPrinterPage_ = true;
    }
}

}  // namespace plotter
