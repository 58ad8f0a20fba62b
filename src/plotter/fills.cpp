#include "plotter/fills.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "plotter/line_types.h"
#include "plotter/machine.h"
#include "plotter/units.h"

namespace plotter {

namespace {

constexpr double MOST_RASTER_SIDE = 255;  // pixels
constexpr double DEFAULT_SCREEN = 50;     // per cent
// Of a pattern that is not there.
constexpr double UNKNOWN_SHADE = 0.5;

// ---- hatch lines ----

// Shorter pieces, and shorter gaps between two of them, come from rounding; plotter units.
constexpr double SHORTEST_PIECE = 1e-6;
// Beyond, a double does not hold every line's number.
constexpr double LAST_LINE = 0x1p52;
// Plotter units: lines closer together are none, and corners further away are none. Far from what any drawing has, and
// near enough that nothing overflows.
constexpr double SMALLEST_PERIOD = 1e-3;
constexpr double FARTHEST_CORNER = 1e15;

bool isNear(Point p) {
    return std::abs(p.x) <= FARTHEST_CORNER && std::abs(p.y) <= FARTHEST_CORNER;  // false for what is not a number
}

// Directions are exact along the axes, or a line along a border would be inside or not by chance.
Point direction(double degrees) {
    const double turns = std::fmod(degrees, 360) / 90;
    if (turns == std::floor(turns)) {
        constexpr std::array<Point, 4> AXES = {Point{1, 0}, Point{0, 1}, Point{-1, 0}, Point{0, -1}};
        return AXES[static_cast<std::size_t>(static_cast<int>(turns) + 4) % 4];
    }
    const double angle = degrees * std::numbers::pi / 180;
    return {std::cos(angle), std::sin(angle)};
}

// Smallest whole number not below; one that is missed by rounding alone counts.
double roundedUp(double number) {
    const double nearest = std::round(number);
    return std::abs(number - nearest) <= 1e-9 * std::max(1.0, std::abs(number)) ? nearest : std::ceil(number);
}

// The lines' own coordinates: along them, and across, upwards or to the right.
class HatchFrame {
  public:
    explicit HatchFrame(const HatchLines& lines) : anchor_(lines.anchor), along_(direction(lines.angle)) {
        if (along_.x < 0 || (along_.x == 0 && along_.y > 0)) along_ = along_ * -1;
        for (const double gap : lines.gaps) {
            if (!(gap > 0)) continue;
            offsets_.push_back(period_);
            period_ += gap;
        }
    }

    bool isValid() const {
        return period_ >= SMALLEST_PERIOD && std::isfinite(period_) && std::isfinite(length(along_)) && isNear(anchor_);
    }

    Point inward(Point p) const {
        const Point q = p - anchor_;
        return {q.x * along_.x + q.y * along_.y, q.y * along_.x - q.x * along_.y};
    }
    Point outward(Point q) const {
        return {anchor_.x + q.x * along_.x - q.y * along_.y, anchor_.y + q.x * along_.y + q.y * along_.x};
    }
    // The first line at this height or above it; beyond LAST_LINE there are none.
    double firstFrom(double height) const {
        double first = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < offsets_.size(); ++i) {
            const double period = roundedUp((height - offsets_[i]) / period_);
            first = std::min(first, period * inPeriod() + static_cast<double>(i));
        }
        return first;
    }
    double heightOf(double line) const {
        const double period = std::floor(line / inPeriod());
        return period * period_ + offsets_[static_cast<std::size_t>(line - period * inPeriod())];
    }

  private:
    double inPeriod() const { return static_cast<double>(offsets_.size()); }

    Point anchor_;
    Point along_;
    std::vector<double> offsets_;
    double period_ = 0;
};

// An edge of the area and the lines that cross it: from first on, before end. Both come from the corners alone, so the
// edges of a ring fit together whatever is lost in rounding.
struct HatchEdge {
    double first = 0, end = 0;
    Point low, high;  // in the frame
    int direction = 0;

    double at(double height) const {
        const double share = (height - low.y) / (high.y - low.y);
        return low.x + (high.x - low.x) * std::clamp(share, 0.0, 1.0);
    }
};

struct LineRange {
    double first, end;
};

// The lines that may be seen, all of them without a box.
LineRange seenLines(const HatchFrame& frame, const std::optional<Box>& seen) {
    if (!seen) return {-LAST_LINE, LAST_LINE};
    if (seen->empty()) return {0, 0};
    LineRange range = {LAST_LINE, -LAST_LINE};
    for (const Point corner :
         {seen->low, seen->high, Point{seen->low.x, seen->high.y}, Point{seen->high.x, seen->low.y}}) {
        const double line = frame.firstFrom(frame.inward(corner).y);
        range = {std::min(range.first, line - 1), std::max(range.end, line + 1)};
    }
    return range;
}

void addEdges(const Ring& ring, const HatchFrame& frame, const LineRange& range, std::vector<HatchEdge>& edges) {
    const auto last = std::find_if(ring.rbegin(), ring.rend(), isNear);
    if (last == ring.rend()) return;
    Point from = frame.inward(*last);
    double fromLine = frame.firstFrom(from.y);
    for (const Point p : ring) {
        if (!isNear(p)) continue;
        const Point to = frame.inward(p);
        const double toLine = frame.firstFrom(to.y);
        HatchEdge edge = {fromLine, toLine, from, to, 1};
        if (toLine < fromLine) edge = {toLine, fromLine, to, from, -1};
        edge.first = std::max(edge.first, range.first);
        edge.end = std::min(edge.end, range.end);
        if (edge.first < edge.end) edges.push_back(edge);
        from = to;
        fromLine = toLine;
    }
}

std::vector<HatchEdge> hatchEdges(const Area& area, const HatchFrame& frame, const LineRange& range) {
    std::vector<HatchEdge> edges;
    for (const Ring& ring : area) {
        addEdges(ring, frame, range, edges);
    }
    std::ranges::sort(edges, {}, &HatchEdge::first);
    return edges;
}

// So few that they can be drawn, each with its place in the drawing's budget.
bool areBounded(const std::vector<HatchEdge>& edges, Budget& pieces) {
    LineRange range = {LAST_LINE, -LAST_LINE};
    double crossings = 0;
    for (const HatchEdge& edge : edges) {
        range = {std::min(range.first, edge.first), std::max(range.end, edge.end)};
        crossings += edge.end - edge.first;
    }
    if (edges.empty()) return true;
    if (range.first <= -LAST_LINE || range.end >= LAST_LINE) return false;
    return range.end - range.first <= static_cast<double>(MOST_HATCH_LINES) && pieces.spend(crossings / 2);
}

struct Crossing {
    double at;
    int direction;
};

// The parts of one line that are inside, joined where they meet.
void insideOf(std::vector<Crossing>& crossings, FillRule rule, std::vector<std::pair<double, double>>& parts) {
    parts.clear();
    std::ranges::sort(crossings, {}, &Crossing::at);
    int winding = 0;
    double begin = 0;
    for (const Crossing& crossing : crossings) {
        const bool was = winding != 0;
        winding = rule == FillRule::EvenOdd ? 1 - winding : winding + crossing.direction;
        if (!was) begin = crossing.at;
        if (winding != 0) continue;
        if (!parts.empty() && begin - parts.back().second <= SHORTEST_PIECE) {
            parts.back().second = crossing.at;
        } else {
            parts.emplace_back(begin, crossing.at);
        }
    }
}

// From line to line, with the edges that each crosses.
class HatchSweep {
  public:
    HatchSweep(std::vector<HatchEdge> edges, FillRule rule, const HatchFrame& frame, const HatchTaker& taker)
        : edges_(std::move(edges)), rule_(rule), frame_(frame), taker_(taker) {}

    void run() {
        double line = 0;
        while (next_ < edges_.size() || !crossed_.empty()) {
            if (crossed_.empty()) line = edges_[next_].first;
            for (; next_ < edges_.size() && edges_[next_].first <= line; ++next_)
                crossed_.push_back(&edges_[next_]);
            draw(line);
            ++line;
            std::erase_if(crossed_, [line](const HatchEdge* edge) { return edge->end <= line; });
        }
    }

  private:
    void draw(double line) {
        const double height = frame_.heightOf(line);
        crossings_.clear();
        for (const HatchEdge* edge : crossed_)
            crossings_.push_back({edge->at(height), edge->direction});
        insideOf(crossings_, rule_, parts_);
        for (const auto& [begin, end] : parts_) {
            if (end - begin <= SHORTEST_PIECE) continue;
            const std::array<Point, 2> piece = {frame_.outward({begin, height}), frame_.outward({end, height})};
            taker_(piece, static_cast<int64_t>(line));
        }
    }

    std::vector<HatchEdge> edges_;  // by their first lines
    FillRule rule_;
    const HatchFrame& frame_;
    const HatchTaker& taker_;
    std::size_t next_ = 0;
    std::vector<const HatchEdge*> crossed_;
    std::vector<Crossing> crossings_;
    std::vector<std::pair<double, double>> parts_;
};

// ---- the fill types ----

// A printer's own patterns: tiles of 16 dots of 300 to the inch, lines at these angles.
constexpr double TILE = 16 * 1016.0 / 300.0;  // plotter units on the paper

struct PredefinedPattern {
    std::array<double, 2> angles;
    std::size_t count;
    double gap;    // plotter units on the paper
    double shade;  // of what has no room for lines, and of screened lines
};

// clang-format off
constexpr std::array<PredefinedPattern, 6> PREDEFINED = {
    PredefinedPattern{{  0,   0}, 1, TILE,                       0.25},   // 1: horizontal
    PredefinedPattern{{ 90,   0}, 1, TILE,                       0.25},   // 2: vertical
    PredefinedPattern{{ 45,   0}, 1, TILE / std::numbers::sqrt2, 0.25},   // 3: rising
    PredefinedPattern{{135,   0}, 1, TILE / std::numbers::sqrt2, 0.25},   // 4: falling
    PredefinedPattern{{  0,  90}, 2, TILE,                       0.45},   // 5: grid
    PredefinedPattern{{ 45, 135}, 2, TILE / std::numbers::sqrt2, 0.45},   // 6: diagonal grid
};
// clang-format on

const PredefinedPattern& predefinedPattern(int32_t number) {
    return PREDEFINED[static_cast<std::size_t>(std::clamp(number, 1, 6)) - 1];
}

double share(const RasterPattern& pattern) {
    const double sum = std::accumulate(pattern.parts.begin(), pattern.parts.end(), 0.0,
                                       [](double all, const RasterPattern::Part& part) { return all + part.share; });
    return std::min(sum, 1.0);
}

const std::optional<RasterPattern>& rasterPattern(const Fills& fills, int32_t number) {
    return fills.patterns[static_cast<std::size_t>(std::clamp(number, 1, 8)) - 1];
}

// What its pixels look like from afar.
Ink mixed(const RasterPattern& pattern, const Pens& pens, Ink ink) {
    double most = 0;
    double red = 0, green = 0, blue = 0;
    for (const RasterPattern::Part& part : pattern.parts) {
        const Colour colour = pens.colourOf(part.pen);
        red += part.share * colour.red;
        green += part.share * colour.green;
        blue += part.share * colour.blue;
        if (part.share > most) ink.pen = part.pen;
        most = std::max(most, part.share);
    }
    ink.shade = share(pattern);
    const auto level = [&ink](double sum) {
        return static_cast<uint8_t>(std::clamp(std::round(sum / ink.shade), 0.0, 255.0));
    };
    if (ink.shade > 0) ink.colour = {level(red), level(green), level(blue)};
    return ink;
}

// One filling of one area.
class Filling {
  public:
    Filling(Machine& machine, const Area& area, FillRule rule, const InkedAreaTaker& areaTaker,
            const InkedLineTaker& lineTaker)
        : machine_(machine),
          fills_(machine.state.fills),
          area_(area),
          rule_(rule),
          areaTaker_(areaTaker),
          lineTaker_(lineTaker),
          ink_(machine.ink()) {}

    void draw() {
        if (machine_.state.pens.whiteCovers) cover();
        switch (fills_.type) {
            case FillType::Parallel:
                hatch(fills_.parallel, 1);
                break;
            case FillType::Crossed:
                hatch(fills_.crossed, 2);
                break;
            case FillType::User:
                userHatch();
                break;
            case FillType::Shade:
                shade(fills_.shade / 100);
                break;
            case FillType::Raster:
                raster();
                break;
            case FillType::Predefined:
                predefined();
                break;
            case FillType::Downloaded:
                machine_.report().passOver("FT22", machine_.offset());
                shade(UNKNOWN_SHADE);
                break;
            default:
                solid(ink_);
        }
    }

  private:
    // What lines leave white hides what is under it.
    void cover() {
        constexpr std::array<FillType, 4> OF_LINES = {FillType::Parallel, FillType::Crossed, FillType::User,
                                                      FillType::Predefined};
        if (std::ranges::find(OF_LINES, fills_.type) == OF_LINES.end()) return;
        Ink white = ink_;
        white.shade = 0;
        solid(white);
    }

    void solid(const Ink& ink) {
        if (rule_ == FillRule::EvenOdd) {
            areaTaker_(area_, ink);
            return;
        }
        const Flattened flat = flattenWinding(area_, std::min(MOST_WINDING_STEPS, fills_.windingSteps.left()));
        fills_.windingSteps.spend(static_cast<double>(std::min(flat.steps, fills_.windingSteps.left())));
        if (!flat.whole) machine_.report().meetBound("winding", machine_.offset());
        areaTaker_(flat.area, ink);
    }

    // White lets shine through what is under it, unless TR says otherwise.
    void inked(const Ink& ink) {
        if (ink.shade > 0 || machine_.state.pens.whiteCovers) solid(ink);
    }

    void shade(double level) {
        Ink ink = ink_;
        ink.shade = level;
        inked(ink);
    }

    double defaultSpacing() const { return machine_.state.coordinates.diagonal() / 100; }

    // Plotter units: lines that are no further apart leave nothing free between them.
    double reach() const {
        const Pens& pens = machine_.state.pens;
        return std::max(pens.widthOf(pens.selected), fills_.penThickness);
    }

    void hatch(const Hatch& hatch, int directions) {
        const double spacing = hatch.spacing > 0 ? hatch.spacing : defaultSpacing();
        if (spacing <= reach()) {
            solid(ink_);
            return;
        }
        bool done = true;
        for (int i = 0; i < directions && done; ++i)
            done = dashed({fills_.anchor, hatch.angle + 90 * i, {spacing}});
        if (!done) solid(ink_);
    }

    void userHatch() {
        std::vector<double> gaps = fills_.gaps;
        if (gaps.empty()) gaps.push_back(defaultSpacing());
        if (!dashed({fills_.anchor, fills_.userAngle, std::move(gaps)})) solid(ink_);
    }

    // With the current line type; every other line begins in the middle of its pattern.
    bool dashed(const HatchLines& lines) {
        LineTypes& types = machine_.state.lineTypes;
        const double length = patternLength(machine_);
        bool whole = true;
        const bool done = lay(lines, [&](std::span<const Point> piece, int64_t line) {
            const double begin = line % 2 == 0 ? 0.0 : 0.5;
            whole = dashLineFrom(types, begin, length, piece,
                                 [&](std::span<const Point> dash) { lineTaker_(dash, ink_); }) &&
                    whole;
        });
        if (!whole) machine_.report().meetBound("dashes", machine_.offset());
        return done;
    }

    bool lay(const HatchLines& lines, const HatchTaker& taker) {
        const bool done = hatchArea(area_, rule_, lines, machine_.state.coordinates.clip(), fills_.hatchPieces, taker);
        if (!done) machine_.report().meetBound("hatching", machine_.offset());
        return done;
    }

    void raster() {
        const std::optional<RasterPattern>& pattern = rasterPattern(fills_, fills_.raster);
        if (!pattern) {
            solid(ink_);
        } else if (fills_.rasterInOnePen) {
            shade(share(*pattern));
        } else {
            inked(mixed(*pattern, machine_.state.pens, ink_));
        }
    }

    // Thin lines whatever the pen: they are made of a printer's dots.
    void predefined() {
        const PredefinedPattern& pattern = predefinedPattern(fills_.predefined);
        const Frame& frame = machine_.state.coordinates.frame;
        const double gap = pattern.gap / std::min(frame.scaleX, frame.scaleY);
        Ink ink = ink_;
        ink.width = 0;
        bool any = false;
        for (std::size_t i = 0; i < pattern.count; ++i) {
            const bool done =
                lay({fills_.anchor, pattern.angles[i], {gap}}, [&](std::span<const Point> piece, int64_t) {
                    lineTaker_(piece, ink);
                    any = true;
                });
            if (!done) break;
        }
        if (!any) shade(pattern.shade);
    }

    Machine& machine_;
    Fills& fills_;
    const Area& area_;
    FillRule rule_;
    const InkedAreaTaker& areaTaker_;
    const InkedLineTaker& lineTaker_;
    Ink ink_;
};

// ---- the instructions ----

bool isKnown(int32_t type) {
    constexpr std::array<FillType, 9> TYPES = {FillType::Solid,   FillType::SolidOneWay, FillType::Parallel,
                                               FillType::Crossed, FillType::User,        FillType::Shade,
                                               FillType::Raster,  FillType::Predefined,  FillType::Downloaded};
    return std::ranges::find(TYPES, static_cast<FillType>(type)) != TYPES.end();
}

// Spacing in the units of the x axis as they are now, and angle: what is not given stays. False: of no use.
bool chooseHatch(Hatch& hatch, const Instruction& instruction, const Coordinates& coordinates) {
    const double spacing = instruction.number(1, 0);
    const double angle = instruction.number(2, hatch.angle);
    if (!(spacing >= 0) || !std::isfinite(spacing + angle)) return false;
    if (instruction.has(2)) hatch.spacing = spacing * std::abs(coordinates.toUnits().xx);
    hatch.angle = angle;
    return true;
}

void chooseRaster(Fills& fills, const Instruction& instruction) {
    const int32_t number = toInteger(instruction.number(1, fills.raster));
    if (number >= 1 && number <= 8) fills.raster = number;
    fills.rasterInOnePen = toInteger(instruction.number(2, 0)) == 1;
}

// False: the instruction is of no use, and the fill type stays.
bool chooseOptions(Fills& fills, FillType type, const Instruction& instruction, const Coordinates& coordinates) {
    switch (type) {
        case FillType::Parallel:
            return chooseHatch(fills.parallel, instruction, coordinates);
        case FillType::Crossed:
            return chooseHatch(fills.crossed, instruction, coordinates);
        case FillType::User:
            // Its spacing is left empty, so the angle comes first.
            if (instruction.has(2)) fills.userAngle = instruction.numbers[instruction.has(3) ? 2 : 1];
            return std::isfinite(fills.userAngle);
        case FillType::Shade:
            if (instruction.has(2)) fills.shade = std::clamp(instruction.numbers[1], 0.0, 100.0);
            return true;
        case FillType::Raster:
            chooseRaster(fills, instruction);
            return true;
        case FillType::Predefined:
            fills.predefined = std::clamp(toInteger(instruction.number(1, fills.predefined)), 1, 6);
            return true;
        default:
            return true;
    }
}

void forgetOptions(Fills& fills) {
    const Fills none;
    fills.type = none.type;
    fills.parallel = none.parallel;
    fills.crossed = none.crossed;
    fills.userAngle = none.userAngle;
    fills.shade = none.shade;
    fills.raster = none.raster;
    fills.rasterInOnePen = none.rasterInOnePen;
    fills.predefined = none.predefined;
}

// Of one pen: how many there are, for the time being.
void addPixel(RasterPattern& pattern, int32_t pen) {
    if (pen == 0) return;
    auto part = std::ranges::find(pattern.parts, pen, &RasterPattern::Part::pen);
    if (part == pattern.parts.end()) {
        if (pattern.parts.size() < MOST_RASTER_PENS) pattern.parts.push_back({pen, 0});
        part = pattern.parts.end() - 1;
    }
    ++part->share;
}

// Pixels that are missing are white. But of a large pattern the reader hands over the first thousands alone, which then
// stand for all.
std::optional<RasterPattern> rasterPatternOf(std::span<const double> numbers) {
    constexpr std::size_t ENOUGH = 4000;
    const double width = std::floor(numbers[0]);
    const double height = std::floor(numbers[1]);
    if (!(width >= 1 && width <= MOST_RASTER_SIDE && height >= 1 && height <= MOST_RASTER_SIDE)) return std::nullopt;
    const auto size = static_cast<std::size_t>(width * height);
    const auto pixels = numbers.subspan(2, std::min(size, numbers.size() - 2));
    RasterPattern pattern;
    for (const double pen : pixels)
        addPixel(pattern, toInteger(std::abs(pen)));
    const auto all = static_cast<double>(pixels.size() >= ENOUGH ? pixels.size() : size);
    for (RasterPattern::Part& part : pattern.parts)
        part.share /= all;
    return pattern;
}

}  // namespace

void fillArea(Machine& machine, const Area& area, FillRule rule, const InkedAreaTaker& areaTaker,
              const InkedLineTaker& lineTaker) {
    if (!area.empty()) Filling(machine, area, rule, areaTaker, lineTaker).draw();
}

Ink lineInk(const Fills& fills, Ink ink) {
    ink.shade *= fills.screen.value_or(1);
    return ink;
}

bool hatchArea(const Area& area, FillRule rule, const HatchLines& lines, const std::optional<Box>& seen, Budget& pieces,
               const HatchTaker& taker) {
    const HatchFrame frame(lines);
    if (!frame.isValid()) return false;
    std::vector<HatchEdge> edges = hatchEdges(area, frame, seenLines(frame, seen));
    if (!areBounded(edges, pieces)) return false;
    HatchSweep(std::move(edges), rule, frame, taker).run();
    return true;
}

void fillType(Machine& machine, const Instruction& instruction) {
    Fills& fills = machine.state.fills;
    if (instruction.numbers.empty()) {
        forgetOptions(fills);
        return;
    }
    const int32_t number = toInteger(instruction.numbers[0]);
    if (!isKnown(number)) return;
    const auto type = static_cast<FillType>(number);
    if (chooseOptions(fills, type, instruction, machine.state.coordinates)) fills.type = type;
}

void anchorCorner(Machine& machine, const Instruction& instruction) {
    clearResidue(machine.state.lineTypes);
    Point& anchor = machine.state.fills.anchor;
    if (instruction.numbers.empty()) anchor = {};
    if (!instruction.has(2)) return;
    const Point given = machine.state.coordinates.toUnits()({instruction.numbers[0], instruction.numbers[1]});
    if (std::isfinite(given.x) && std::isfinite(given.y)) anchor = given;
}

void rasterFill(Machine& machine, const Instruction& instruction) {
    Fills& fills = machine.state.fills;
    clearResidue(machine.state.lineTypes);
    if (instruction.numbers.empty()) {
        fills.patterns = {};
        return;
    }
    const int32_t number = toInteger(instruction.numbers[0]);
    if (number < 1 || number > 8) return;
    std::optional<RasterPattern>& pattern = fills.patterns[static_cast<std::size_t>(number) - 1];
    if (instruction.numbers.size() == 1) pattern.reset();
    if (!instruction.has(3)) return;
    if (auto given = rasterPatternOf(instruction.numbers.subspan(1))) pattern = std::move(given);
}

void userFill(Machine& machine, const Instruction& instruction) {
    const auto given = instruction.numbers.first(std::min(instruction.numbers.size(), MOST_GAPS));
    if (std::ranges::any_of(given, [](double gap) { return !(gap >= 0) || !std::isfinite(gap); })) return;
    std::vector<double>& gaps = machine.state.fills.gaps;
    gaps.clear();
    std::ranges::copy_if(given, std::back_inserter(gaps), [](double gap) { return gap > 0; });
}

void penThickness(Machine& machine, const Instruction& instruction) {
    const double millimetres = instruction.number(0, 0);
    if (!(millimetres >= 0) || !std::isfinite(millimetres)) return;
    machine.state.fills.penThickness = std::min(millimetres, 5.0) * UNITS_PER_MILLIMETRE;
}

void screenedVectors(Machine& machine, const Instruction& instruction) {
    Fills& fills = machine.state.fills;
    switch (toInteger(instruction.number(0, 0))) {
        case 0:
            fills.screen.reset();
            break;
        case 1:
            fills.screen = std::clamp(instruction.number(1, DEFAULT_SCREEN), 0.0, 100.0) / 100;
            break;
        case 2: {
            const auto& pattern = rasterPattern(fills, toInteger(instruction.number(1, 1)));
            fills.screen = pattern ? share(*pattern) : 1;
            break;
        }
        case 21:
            fills.screen = predefinedPattern(toInteger(instruction.number(1, 1))).shade;
            break;
        case 22:
            fills.screen = UNKNOWN_SHADE;
            break;
        default:
            break;
    }
}

}  // namespace plotter
