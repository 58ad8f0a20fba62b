#include "plotter/fills.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "plotter/areas.h"
#include "plotter/line_types.h"
#include "plotter/machine.h"
#include "plotter/units.h"

namespace plotter {

namespace {

// Of a pattern that is not there.
constexpr double UNKNOWN_SHADE = 0.5;

// A printer's own patterns: tiles of 16 dots of 300 to the inch, lines at these angles.
constexpr double TILE = 16 * UNITS_PER_DOT;  // plotter units on the paper

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
    Filling(Machine& machine, const Area& area, FillRule rule)
        : machine_(machine), fills_(machine.state.fills), area_(area), rule_(rule), ink_(machine.ink()) {}

    void draw() {
        if (machine_.state.pens.whiteCovers) cover();
        switch (fills_.choice.type) {
            case FillType::Parallel:
                hatch(fills_.choice.parallel, 1);
                break;
            case FillType::Crossed:
                hatch(fills_.choice.crossed, 2);
                break;
            case FillType::User:
                userHatch();
                break;
            case FillType::Shade:
                shade(fills_.choice.shade / 100);
                break;
            case FillType::Raster:
                raster();
                break;
            case FillType::Predefined:
                predefined();
                break;
            case FillType::Downloaded:
                machine_.report().passOver("FT22");
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
        if (std::ranges::find(OF_LINES, fills_.choice.type) == OF_LINES.end()) return;
        Ink white = ink_;
        white.shade = 0;
        solid(white);
    }

    void solid(const Ink& ink) {
        if (rule_ == FillRule::EvenOdd) {
            machine_.drawInWindow(area_, ink);
            return;
        }
        const Flattened flat = flattenWinding(area_, std::min(MOST_WINDING_STEPS, fills_.windingSteps.left()));
        fills_.windingSteps.spend(static_cast<double>(std::min(flat.steps, fills_.windingSteps.left())));
        if (!flat.whole) machine_.report().meetBound("winding");
        machine_.drawInWindow(flat.area, ink);
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
        if (!dashed({fills_.anchor, fills_.choice.userAngle, std::move(gaps)})) solid(ink_);
    }

    // With the current line type; every other line begins in the middle of its pattern.
    bool dashed(const HatchLines& lines) {
        LineTypes& types = machine_.state.lineTypes;
        const double length = patternLength(machine_);
        bool whole = true;
        const bool done = lay(lines, [&](std::span<const Point> piece, int64_t line) {
            const double begin = line % 2 == 0 ? 0.0 : 0.5;
            whole = dashLineFrom(types, begin, length, piece,
                                 [&](std::span<const Point> dash) { machine_.drawInWindow(dash, ink_); }) &&
                    whole;
        });
        if (!whole) machine_.report().meetBound("dashes");
        return done;
    }

    bool lay(const HatchLines& lines, const HatchTaker& taker) {
        const bool done = hatchArea(area_, rule_, lines, machine_.state.coordinates.clip(), fills_.hatchPieces, taker);
        if (!done) machine_.report().meetBound("hatching");
        return done;
    }

    void raster() {
        const std::optional<RasterPattern>& pattern = rasterPattern(fills_, fills_.choice.raster);
        if (!pattern) {
            solid(ink_);
        } else if (fills_.choice.rasterInOnePen) {
            shade(share(*pattern));
        } else {
            inked(mixed(*pattern, machine_.state.pens, ink_));
        }
    }

    // Thin lines whatever the pen: they are made of a printer's dots.
    void predefined() {
        const PredefinedPattern& pattern = predefinedPattern(fills_.choice.predefined);
        const Frame& frame = machine_.state.coordinates.frame;
        const double gap = pattern.gap / std::min(frame.scaleX, frame.scaleY);
        Ink ink = ink_;
        ink.width = 0;
        bool any = false;
        for (std::size_t i = 0; i < pattern.count; ++i) {
            const bool done =
                lay({fills_.anchor, pattern.angles[i], {gap}}, [&](std::span<const Point> piece, int64_t) {
                    machine_.drawInWindow(piece, ink);
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
    Ink ink_;
};

}  // namespace

void fillArea(Machine& machine, const Area& area, FillRule rule) {
    if (!area.empty()) Filling(machine, area, rule).draw();
}

Ink lineInk(const Fills& fills, Ink ink) {
    ink.shade *= fills.screen.value_or(1);
    return ink;
}

double patternShade(const Fills& fills, FillType type, int32_t number) {
    if (type == FillType::Predefined) return predefinedPattern(number).shade;
    if (type == FillType::Downloaded) return UNKNOWN_SHADE;
    const std::optional<RasterPattern>& pattern = rasterPattern(fills, number);
    return pattern ? share(*pattern) : 1;
}

}  // namespace plotter
