#include "plotter/line_types.h"

#include <cstdlib>
#include <numeric>

#include "plotter/instructions.h"
#include "plotter/units.h"

namespace plotter {

namespace {

constexpr int32_t RESTORED = 99;  // LT99
// Ends of parts that are closer together than this share of the pattern are the same.
constexpr double SAME_END = 1e-9;

// clang-format off
constexpr std::array<Pattern, PATTERNED_TYPES> STANDARD = {
    Pattern{{0.0, 1.0},                                   2},
    Pattern{{0.5, 0.5},                                   2},
    Pattern{{0.7, 0.3},                                   2},
    Pattern{{0.8, 0.1, 0.0, 0.1},                         4},
    Pattern{{0.7, 0.1, 0.1, 0.1},                         4},
    Pattern{{0.5, 0.1, 0.1, 0.1, 0.1, 0.1},               6},
    Pattern{{0.7, 0.1, 0.0, 0.1, 0.0, 0.1},               6},
    Pattern{{0.5, 0.1, 0.0, 0.1, 0.1, 0.1, 0.0, 0.1},     8},
};
// clang-format on

bool isDown(std::size_t part) {
    return part % 2 == 0;
}

// Half of the first part in front, the other half behind: joined to the last part where that has the pen down too.
Pattern fitted(const Pattern& pattern) {
    Pattern halved = pattern;
    halved.parts[0] /= 2;
    if (!isDown(halved.count)) {
        halved.parts[halved.count - 1] += halved.parts[0];
    } else {
        halved.parts[halved.count++] = halved.parts[0];
    }
    return halved;
}

// A dash in the making.
class Dash {
  public:
    explicit Dash(const LineTaker& taker) : taker_(taker) {}

    // A dot that is on the paper already, where the first dash may be one.
    void skipDot(Point p) {
        skips_ = true;
        skipped_ = p;
    }
    // The pen is down here; it may be already.
    void begin(Point p) {
        if (points_.empty()) points_.push_back(p);
    }
    void reach(Point p) {
        if (straight_) {
            points_.back() = p;
        } else if (points_.back() != p) {
            points_.push_back(p);
            straight_ = true;
        }
    }
    void turn() { straight_ = false; }
    void end() {
        if (points_.empty()) return;
        if (points_.size() > 1 || !skips_ || points_.front() != skipped_) taker_(points_);
        skips_ = false;
        points_.clear();
        straight_ = false;
    }

  private:
    LineTaker taker_;
    bool skips_ = false;
    Point skipped_;
    Line points_;
    bool straight_ = false;  // what comes lies on the line between the last two
};

struct Segment {
    Point from, to;
    double length;

    Point at(double distance) const {
        return distance >= length ? to : from + (to - from) * (std::max(distance, 0.0) / length);
    }
};

template <class Visit>
void forSegments(std::span<const Point> points, Visit visit) {
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (points[i - 1] != points[i]) visit(Segment{points[i - 1], points[i], length(points[i] - points[i - 1])});
    }
}

// Runs the pattern along, from where it is. A part that would begin at the very end of a segment is left to the next
// one, so that no dot is drawn twice.
class RunningPattern {
  public:
    RunningPattern(const Pattern& pattern, double length, LineTypes::Residue& residue)
        : pattern_(pattern), length_(length), residue_(residue) {}

    void along(const Segment& segment, Dash& dash) {
        const double same = SAME_END * length_;
        double done = 0;
        while (done < segment.length) {
            const double end = done + (pattern_.parts[residue_.part] - residue_.done) * length_;
            const double stop = end >= segment.length - same ? segment.length : end;
            if (isDown(residue_.part)) {
                dash.begin(segment.at(done));
                dash.reach(segment.at(stop));
            }
            if (end > segment.length + same) {
                residue_.done += (segment.length - done) / length_;
            } else {
                nextPart(dash);
            }
            done = stop;
        }
    }

  private:
    void nextPart(Dash& dash) {
        residue_.part = (residue_.part + 1) % pattern_.count;
        residue_.done = 0;
        if (!isDown(residue_.part)) dash.end();
    }

    const Pattern& pattern_;
    double length_;
    LineTypes::Residue& residue_;
};

// So many whole patterns that none is longer than it should be.
void fitAlong(const Segment& segment, const Pattern& pattern, double length, Dash& dash) {
    const double times = std::max(1.0, std::ceil(segment.length / length - SAME_END));
    for (std::size_t time = 0; static_cast<double>(time) < times; ++time) {
        const auto at = [&](double share) {
            return segment.at(segment.length * ((static_cast<double>(time) + share) / times));
        };
        double done = 0;
        for (std::size_t part = 0; part < pattern.count; ++part) {
            const double end = part + 1 < pattern.count ? done + pattern.parts[part] : 1;
            if (isDown(part)) {
                dash.begin(at(done));
                dash.reach(at(end));
            } else {
                dash.end();
            }
            done = end;
        }
    }
}

// Dashes and dots that will come of a line, or a few more; infinite for what cannot be dashed.
double piecesOf(const Pattern& pattern, double patternLength, std::span<const Point> points, bool isFitted) {
    double whole = 0;
    double segments = 0;
    forSegments(points, [&](const Segment& segment) {
        whole += segment.length;
        ++segments;
    });
    if (!(patternLength >= SHORTEST_PATTERN) || !std::isfinite(patternLength + whole))
        return std::numeric_limits<double>::infinity();
    const double patterns = whole / patternLength + (isFitted ? segments : 1);
    const std::size_t inPattern = pattern.count / 2 + 1;
    return std::ceil(patterns) * static_cast<double>(inPattern);
}

void dots(std::span<const Point> points, bool goesOn, const LineTaker& taker) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i > 0 ? points[i] != points[i - 1] : !goesOn) taker(points.subspan(i, 1));
    }
}

bool areOnePoint(std::span<const Point> points) {
    return std::ranges::all_of(points, [&points](Point p) { return p == points.front(); });
}

void dashes(const LineTypes::Choice& choice, double patternLength, std::span<const Point> points,
            LineTypes::Residue& residue, bool goesOn, const LineTaker& taker) {
    Dash dash(taker);
    if (choice.type > 0) {
        RunningPattern pattern(choice.pattern, patternLength, residue);
        forSegments(points, [&](const Segment& segment) {
            dash.turn();
            pattern.along(segment, dash);
        });
    } else {
        if (goesOn) dash.skipDot(points.front());
        const Pattern pattern = fitted(choice.pattern);
        forSegments(points, [&](const Segment& segment) {
            dash.turn();
            fitAlong(segment, pattern, patternLength, dash);
        });
    }
    dash.end();
}

bool draw(LineTypes& types, double patternLength, std::span<const Point> points, LineTypes::Residue& residue,
          bool goesOn, const LineTaker& taker) {
    const LineTypes::Choice& choice = types.choice;
    if (choice.type == LineTypes::SOLID || areOnePoint(points)) {
        taker(choice.type == LineTypes::SOLID ? points : points.first(1));
        return true;
    }
    if (choice.type == 0) {
        dots(points, goesOn, taker);
        return true;
    }
    if (!types.dashes.spend(piecesOf(choice.pattern, patternLength, points, choice.type < 0))) {
        taker(points);
        return false;
    }
    dashes(choice, patternLength, points, residue, goesOn, taker);
    return true;
}

LineTypes::Residue beginAt(const Pattern& pattern, double share) {
    LineTypes::Residue residue;
    while (residue.part + 1 < pattern.count && share >= pattern.parts[residue.part]) {
        share -= pattern.parts[residue.part++];
    }
    residue.done = share;
    return residue;
}

// ---- LT and UL ----

// Without a number: solid, but LT99 brings back what was.
void makeSolid(LineTypes& types) {
    if (types.choice.type == LineTypes::SOLID) return;
    types.before = types.choice;
    types.residueBefore = types.residue;
    types.choice.type = LineTypes::SOLID;
}

// Only where the line ended that has been left.
void restore(LineTypes& types, Point position) {
    const bool isThere = types.residueBefore.runs && types.residueBefore.end == position;
    if (types.choice.type != LineTypes::SOLID || !types.before || !isThere) return;
    types.choice = *types.before;
    types.residue = types.residueBefore;
}

void chooseLength(LineTypes::Choice& choice, const Instruction& instruction) {
    const double length = instruction.number(1, 0);
    if (!(length > 0) || !std::isfinite(length)) return;  // -1 is how one writer says: as it is
    choice.length = length;
    choice.inPercent = instruction.number(2, 0) != 1;
}

// Of what UL gives: nothing when the gaps are of no use.
std::optional<Pattern> patternOf(std::span<const double> gaps) {
    Pattern pattern;
    pattern.count = std::min(gaps.size(), MOST_GAPS);
    std::copy_n(gaps.begin(), pattern.count, pattern.parts.begin());
    const double sum = std::accumulate(pattern.parts.begin(), pattern.parts.end(), 0.0);
    if (std::ranges::any_of(pattern.parts, [](double gap) { return !(gap >= 0); })) return std::nullopt;
    if (!(sum > 0) || !std::isfinite(sum)) return std::nullopt;
    for (double& part : pattern.parts)
        part /= sum;
    return pattern;
}

}  // namespace

const std::array<Pattern, PATTERNED_TYPES>& standardPatterns() {
    return STANDARD;
}

void clearResidue(LineTypes& types) {
    types.residue = {};
}

double patternLength(const Machine& machine) {
    const Coordinates& coordinates = machine.state.coordinates;
    const LineTypes::Choice& choice = machine.state.lineTypes.choice;
    if (!choice.inPercent) {
        return choice.length * UNITS_PER_MILLIMETRE / std::min(coordinates.frame.scaleX, coordinates.frame.scaleY);
    }
    const Scaling& scaling = coordinates.scaling;
    if (scaling.type != Scaling::Type::Isotropic) return coordinates.diagonal() * choice.length / 100;
    const Affine map = coordinates.toUnits();
    return length(map({scaling.x2, scaling.y2}) - map({scaling.x1, scaling.y1})) * choice.length / 100;
}

bool dashLine(LineTypes& types, double patternLength, std::span<const Point> points, const LineTaker& taker) {
    if (points.empty()) return true;
    const bool goesOn = types.residue.runs && types.residue.end == points.front();
    if (!goesOn) clearResidue(types);
    const bool done = draw(types, patternLength, points, types.residue, goesOn, taker);
    types.residue.end = points.back();
    types.residue.runs = true;
    return done;
}

bool dashLineFrom(LineTypes& types, double share, double patternLength, std::span<const Point> points,
                  const LineTaker& taker) {
    if (points.empty()) return true;
    LineTypes::Residue residue = beginAt(types.choice.pattern, share);
    return draw(types, patternLength, points, residue, false, taker);
}

// Ends and joins are the viewer's.
void lineAttributes(Machine& machine, const Instruction& /*instruction*/) {
    clearResidue(machine.state.lineTypes);
}

void lineType(Machine& machine, const Instruction& instruction) {
    LineTypes& types = machine.state.lineTypes;
    if (instruction.numbers.empty()) {
        makeSolid(types);
        return;
    }
    const int32_t type = toInteger(instruction.numbers[0]);
    if (type == RESTORED) restore(types, machine.state.position);
    if (type < -PATTERNED_TYPES || type > PATTERNED_TYPES) return;
    types.choice.type = type;
    if (type != 0) types.choice.pattern = types.patterns[static_cast<std::size_t>(std::abs(type)) - 1];
    chooseLength(types.choice, instruction);
    clearResidue(types);
}

void userLineType(Machine& machine, const Instruction& instruction) {
    LineTypes& types = machine.state.lineTypes;
    clearResidue(types);
    if (instruction.numbers.empty()) {
        types.patterns = STANDARD;
        return;
    }
    const int32_t number = toInteger(std::abs(instruction.numbers[0]));
    if (number < 1 || number > PATTERNED_TYPES) return;
    const auto index = static_cast<std::size_t>(number) - 1;
    if (!instruction.has(2)) {
        types.patterns[index] = STANDARD[index];
    } else if (const auto pattern = patternOf(instruction.numbers.subspan(1))) {
        types.patterns[index] = *pattern;
    }
}

}  // namespace plotter
