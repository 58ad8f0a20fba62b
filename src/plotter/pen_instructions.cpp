#include <bit>

#include "plotter/instructions.h"
#include "plotter/units.h"

namespace plotter {

namespace {

std::optional<int32_t> penNumber(double number) {
    const int32_t pen = toInteger(number);
    if (pen < 0 || pen >= MOST_PENS) return std::nullopt;
    return pen;
}

// HP-GL/2's pens beyond the palette begin again at 1, but for those that have been given a colour of their own. A pen
// plotter's carousel holds as many as the file says.
int32_t withinPalette(const Machine& machine, int32_t pen) {
    const Pens& pens = machine.state.pens;
    if (!machine.traits().hpgl2 || pen < pens.palette || pens.colours.contains(pen)) return pen;
    return (pen - 1) % (pens.palette - 1) + 1;
}

uint8_t intensity(double value, double black, double white) {
    if (black == white) return 0;
    const double share = std::clamp((value - black) / (white - black), 0.0, 1.0);
    return static_cast<uint8_t>(std::lround(share * 255));
}

}  // namespace

void selectPen(Machine& machine, const Instruction& instruction) {
    const std::optional<int32_t> pen = penNumber(instruction.number(0, 0));
    if (!pen) return;
    State& state = machine.state;
    const bool down = state.penDown;
    machine.liftPen();
    state.pens.selected = withinPalette(machine, *pen);
    state.penDown = down;
    clearResidue(state.lineTypes);
}

void numberOfPens(Machine& machine, const Instruction& instruction) {
    const int32_t count = std::clamp(toInteger(instruction.number(0, 8)), 2, MOST_PENS);
    Pens& pens = machine.state.pens;
    pens.palette = static_cast<int32_t>(std::bit_ceil(static_cast<uint32_t>(count)));
    machine.noteColours();
}

void penColour(Machine& machine, const Instruction& instruction) {
    Pens& pens = machine.state.pens;
    machine.noteColours();
    if (instruction.numbers.empty()) {
        pens.colours.clear();
        return;
    }
    const std::optional<int32_t> pen = penNumber(instruction.numbers[0]);
    if (!pen) return;
    if (instruction.numbers.size() == 1) pens.colours.erase(*pen);
    if (instruction.numbers.size() < 4) return;
    const auto& n = instruction.numbers;
    pens.colours[*pen] = {intensity(n[1], pens.black[0], pens.white[0]), intensity(n[2], pens.black[1], pens.white[1]),
                          intensity(n[3], pens.black[2], pens.white[2])};
}

void colourRange(Machine& machine, const Instruction& instruction) {
    Pens& pens = machine.state.pens;
    machine.noteColours();
    const auto& n = instruction.numbers;
    if (n.empty()) {
        pens.black = {0, 0, 0};
        pens.white = {255, 255, 255};
    } else if (n.size() >= 6 && n[0] != n[1] && n[2] != n[3] && n[4] != n[5]) {
        pens.black = {n[0], n[2], n[4]};
        pens.white = {n[1], n[3], n[5]};
    }
}

void penWidth(Machine& machine, const Instruction& instruction) {
    State& state = machine.state;
    Pens& pens = state.pens;
    clearResidue(state.lineTypes);
    const double unit = pens.widthIsRelative ? state.coordinates.diagonal() / 100 : UNITS_PER_MILLIMETRE;
    const double width = std::clamp(instruction.number(0, 0), 0.0, 32767.0) * unit;
    if (!instruction.has(2)) {
        pens.width = width;
        pens.widths.clear();
    } else if (const std::optional<int32_t> pen = penNumber(instruction.numbers[1])) {
        pens.widths[*pen] = width;
    }
}

void widthUnit(Machine& machine, const Instruction& instruction) {
    Pens& pens = machine.state.pens;
    pens.widthIsRelative = toInteger(instruction.number(0, 0)) == 1;
    pens.width = 0;
    pens.widths.clear();
    clearResidue(machine.state.lineTypes);
}

void transparency(Machine& machine, const Instruction& instruction) {
    machine.state.pens.whiteCovers = instruction.has(1) && toInteger(instruction.numbers[0]) == 0;
    clearResidue(machine.state.lineTypes);
}

}  // namespace plotter
