#include <array>

#include "plotter/instructions.h"

namespace plotter {

namespace {

void drawTick(Machine& machine, Point unit) {
    const State& state = machine.state;
    const std::array<Point, 2> ends = {state.position - unit * (state.tickNegative / 100),
                                       state.position + unit * (state.tickPositive / 100)};
    machine.drawSolid(ends);
}

}  // namespace

void tickLength(Machine& machine, const Instruction& instruction) {
    State& state = machine.state;
    const auto percent = [](double given) { return std::clamp(given, -128.0, 128.0); };
    const bool given = instruction.has(1);
    state.tickPositive = given ? percent(instruction.numbers[0]) : 0.5;
    state.tickNegative = given ? percent(instruction.number(1, 0)) : 0.5;
}

void tickX(Machine& machine, const Instruction& /*instruction*/) {
    const Coordinates& coordinates = machine.state.coordinates;
    drawTick(machine, {0, coordinates.p2.y - coordinates.p1.y});
}

void tickY(Machine& machine, const Instruction& /*instruction*/) {
    const Coordinates& coordinates = machine.state.coordinates;
    drawTick(machine, {coordinates.p2.x - coordinates.p1.x, 0});
}

}  // namespace plotter
