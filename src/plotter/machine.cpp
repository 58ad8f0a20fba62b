#include "plotter/machine.h"

#include <algorithm>

#include "plotter/areas.h"
#include "plotter/clipping.h"

namespace plotter {

namespace {

// Plotter units, 6.7 km: as far from the origin something is drawn, so that it fits into the output whole.
constexpr double FARTHEST_ON_PAPER = 268'000'000;

bool isOnPaper(Point p) {
    return isWithin(p, FARTHEST_ON_PAPER);
}

bool isAllOnPaper(std::span<const Point> points) {
    return std::ranges::all_of(points, isOnPaper);
}

// An area that must be cut for the viewer gets the more points by it.
std::size_t costOf(const Area& area) {
    constexpr std::size_t FOR_CUTTING = 4;
    const bool isCut = std::ranges::any_of(area, [](const Ring& ring) { return ring.size() > MOST_RING_POINTS; });
    return isCut ? pointsOf(area) * FOR_CUTTING : pointsOf(area);
}

}  // namespace

Machine::Machine(const Traits& traits, Sheet& sheet, Report& report, std::size_t bytes)
    : traits_(traits),
      found_(traits),
      sheet_(sheet),
      report_(report),
      points_(POINTS_OF_ANY_FILE + POINTS_A_BYTE * bytes),
      pointsLeft_(points_),
      vertices_(VERTICES_OF_ANY_FILE + bytes) {
    initialise();
}

// Nothing at all comes behind what was too much, so that a file made to harm ends soon.
bool Machine::takePoints(std::size_t count) {
    if (count <= pointsLeft_) {
        pointsLeft_ -= count;
        return true;
    }
    pointsLeft_ = 0;
    report_.meetBound("points on the paper");
    return false;
}

bool Machine::takeVertices(std::size_t count) {
    state.polygon.vertices += count;
    if (state.polygon.vertices <= vertices_) return true;
    report_.meetBound("points of a polygon");
    return false;
}

double Machine::share() const {
    const auto used = [](std::size_t count, std::size_t most) {
        return std::min(static_cast<double>(count) / static_cast<double>(most), 1.0);
    };
    const double onPaper = used(points_ - pointsLeft_, points_);
    return state.polygon.open ? std::max(onPaper, used(state.polygon.vertices, vertices_)) : onPaper;
}

void Machine::setDefaults() {
    Coordinates& coordinates = state.coordinates;
    coordinates.scaling = {};
    coordinates.window.reset();
    state.lineTypes = {};
    state.fills = {};
    state.characters = {};
    state.polygon = {};
    state.relative = false;
    state.chordByDeviation = false;
    state.tickPositive = state.tickNegative = 0.5;
    state.pens.whiteCovers = false;
}

void Machine::initialise() {
    liftPen();
    setDefaults();
    state.coordinates.rotation = 0;
    setDefaultCorners(state.coordinates, traits_.hpgl2, traits_.large);
    const int32_t selected = state.pens.selected;
    state.pens = {};
    state.pens.selected = selected;
    state.position = state.carriage = {};
    state.penDown = false;
    state.lost = false;
}

void Machine::switchOn() {
    initialise();
    state.pens.selected = 1;
}

void Machine::setFrame(const Frame& frame) {
    Coordinates& coordinates = state.coordinates;
    if (frame == coordinates.frame) return;
    liftPen();
    coordinates.frame = frame;
    coordinates.window.reset();
    setDefaultCorners(coordinates, true, false);
    state.polygon = {};
    state.position = state.carriage = coordinates.p1;
    found_.hpgl2 = true;
}

void Machine::endPage(bool evenIfEmpty) {
    liftPen();
    state.polygon = {};
    if (!pageMarked_ && !evenIfEmpty) return;
    pageMarked_ = false;
    ++pagesEnded_;
    sheet_.nextPage();
}

Traits Machine::found() const {
    Traits found = found_;
    found.penZeroDraws = found.penZeroDraws || (noPenDrew_ && !aPenDrew_);
    return found;
}

bool Machine::penDraws() {
    if (state.pens.selected != 0 || traits_.hpgl2 || traits_.penZeroDraws) {
        aPenDrew_ = true;
        return true;
    }
    noPenDrew_ = true;
    return false;
}

Ink Machine::inkOf(int32_t pen) const {
    const Pens& pens = state.pens;
    const Frame& frame = state.coordinates.frame;
    Ink ink;
    ink.pen = pen == 0 && traits_.penZeroDraws ? 1 : pen;
    ink.colour = pens.colourOf(ink.pen);
    ink.width = pens.widthOf(pen) * std::min(frame.scaleX, frame.scaleY);
    return ink;
}

void Machine::drawLine(std::span<const Point> points) {
    if (points.empty()) return;
    state.marked = true;
    if (!penDraws() || pointsLeft_ == 0) return;
    const Ink with = lineInk(state.fills, ink());
    LineTypes& types = state.lineTypes;
    if (types.choice.type == LineTypes::SOLID) {
        drawInWindow(points, with);
        return;
    }
    const bool dashed =
        dashLine(types, patternLength(*this), points, [&](std::span<const Point> dash) { drawInWindow(dash, with); });
    if (!dashed) report_.meetBound("dashes");
}

void Machine::drawOutline(std::span<const Point> points) {
    const LineTypes::Residue kept = state.lineTypes.residue;
    clearResidue(state.lineTypes);
    drawLine(points);
    state.lineTypes.residue = kept;
}

void Machine::drawSolid(std::span<const Point> points) {
    if (points.empty()) return;
    state.marked = true;
    if (penDraws() && pointsLeft_ != 0) drawInWindow(points, lineInk(state.fills, ink()));
}

void Machine::drawArea(const Area& area, FillRule rule) {
    state.marked = true;
    if (!penDraws() || pointsLeft_ == 0) return;
    fillArea(*this, area, rule);
}

void Machine::lowerPen() {
    if (!state.penDown) state.marked = false;
    state.penDown = true;
}

void Machine::liftPen() {
    if (state.penDown && !state.marked && !state.polygon.open && !state.lost) drawLine({&state.position, 1});
    state.penDown = false;
}

// What would only hide paper that is white anyway is left out, unless the file asks for covering.
bool Machine::isSeen(const Ink& ink) const {
    return state.pens.whiteCovers || !(ink.colour == WHITE) || !traits_.hpgl2 || !(coloursChosen_ || ink.pen == 0);
}

void Machine::drawInWindow(std::span<const Point> points, const Ink& ink) {
    if (!isSeen(ink) || !takePoints(points.size())) return;
    const std::optional<Box> clip = state.coordinates.clip();
    if (!clip) {
        putMapped(points, ink);
        return;
    }
    clipLine(points, *clip, [&](std::span<const Point> piece) { putMapped(piece, ink); });
}

// A point that is too far away for any paper interrupts the line.
void Machine::putMapped(std::span<const Point> points, const Ink& ink) {
    const Affine map = state.coordinates.toPaper();
    onPaper_.clear();
    for (const Point point : points) {
        const Point at = map(point);
        if (isOnPaper(at)) {
            onPaper_.push_back(at);
            continue;
        }
        if (!onPaper_.empty()) put(onPaper_, ink);
        onPaper_.clear();
    }
    if (!onPaper_.empty()) put(onPaper_, ink);
}

void Machine::drawInWindow(const Area& area, const Ink& ink) {
    if (!isSeen(ink) || !takePoints(costOf(area))) return;
    const Affine map = state.coordinates.toPaper();
    const std::optional<Box> clip = state.coordinates.clip();
    Area there = clip ? clipArea(area, *clip) : area;
    for (Ring& ring : there) {
        for (Point& point : ring) {
            point = map(point);
        }
    }
    if (!there.empty()) put(there, ink);
}

void Machine::put(std::span<const Point> points, const Ink& ink) {
    pageMarked_ = true;
    sheet_.line(points, ink);
}

void Machine::put(const Area& area, const Ink& ink) {
    if (!std::ranges::all_of(area, isAllOnPaper)) return;
    pageMarked_ = true;
    sheet_.area(area, ink);
}

void Machine::drawOnPaper(std::span<const Point> points, const Ink& ink) {
    if (takePoints(points.size()) && isAllOnPaper(points)) put(points, ink);
}

void Machine::drawOnPaper(const Area& area, const Ink& ink) {
    if (takePoints(costOf(area))) put(area, ink);
}

}  // namespace plotter
