#include "plotter/instructions.h"
#include "plotter/units.h"

namespace plotter {

namespace {

constexpr double MOST_RASTER_SIDE = 255;  // pixels
constexpr double DEFAULT_SCREEN = 50;     // per cent
// Pens of one raster pattern that are told apart; what others draw counts for the last of them.
constexpr std::size_t MOST_RASTER_PENS = 16;

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

void chooseRaster(FillChoice& choice, const Instruction& instruction) {
    const int32_t number = toInteger(instruction.number(1, choice.raster));
    if (number >= 1 && number <= 8) choice.raster = number;
    choice.rasterInOnePen = toInteger(instruction.number(2, 0)) == 1;
}

// False: the instruction is of no use, and the fill type stays.
bool chooseOptions(FillChoice& choice, FillType type, const Instruction& instruction, const Coordinates& coordinates) {
    switch (type) {
        case FillType::Parallel:
            return chooseHatch(choice.parallel, instruction, coordinates);
        case FillType::Crossed:
            return chooseHatch(choice.crossed, instruction, coordinates);
        case FillType::User:
            // Its spacing is left empty, so the angle comes first.
            if (instruction.has(2)) choice.userAngle = instruction.numbers[instruction.has(3) ? 2 : 1];
            return std::isfinite(choice.userAngle);
        case FillType::Shade:
            if (instruction.has(2)) choice.shade = std::clamp(instruction.numbers[1], 0.0, 100.0);
            return true;
        case FillType::Raster:
            chooseRaster(choice, instruction);
            return true;
        case FillType::Predefined:
            choice.predefined = std::clamp(toInteger(instruction.number(1, choice.predefined)), 1, 6);
            return true;
        default:
            return true;
    }
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

void fillType(Machine& machine, const Instruction& instruction) {
    FillChoice& choice = machine.state.fills.choice;
    if (instruction.numbers.empty()) {
        choice = {};
        return;
    }
    const int32_t number = toInteger(instruction.numbers[0]);
    if (!isKnown(number)) return;
    const auto type = static_cast<FillType>(number);
    if (chooseOptions(choice, type, instruction, machine.state.coordinates)) choice.type = type;
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
        case 2:
            fills.screen = patternShade(fills, FillType::Raster, toInteger(instruction.number(1, 1)));
            break;
        case 21:
            fills.screen = patternShade(fills, FillType::Predefined, toInteger(instruction.number(1, 1)));
            break;
        case 22:
            fills.screen = patternShade(fills, FillType::Downloaded, 0);
            break;
        default:
            break;
    }
}

}  // namespace plotter
