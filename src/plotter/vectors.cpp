#include "plotter/vectors.h"

#include "plotter/instructions.h"
#include "plotter/lettering.h"
#include "plotter/polyline_decoder.h"
#include "plotter/units.h"

namespace plotter {

namespace {

bool inRange(Point p) {
    return std::abs(p.x) < FARTHEST && std::abs(p.y) < FARTHEST;  // false for what is not a number
}

void addVertex(Polygon& polygon, Point point, bool down) {
    if (polygon.rings.empty()) polygon.rings.emplace_back();
    auto& ring = polygon.rings.back();
    if (polygon.fresh && !down) ring.clear();
    if (ring.empty()) down = false;
    if (down || polygon.rings.back().empty()) polygon.fresh = false;
    ring.push_back({point, down});
}

}  // namespace

// The points of one instruction on their way: what is drawn is kept back until the pen goes up, so that a line type
// sees whole polylines.
Path::Path(Machine& machine)
    : machine_(machine), map_(machine.state.coordinates.toUnits()), line_(machine.roomForPath()) {
    line_.clear();
}

void Path::flush() {
    if (line_.size() > 1) machine_.drawLine(line_);
    line_.clear();
}

void Path::goTo(Point units) {
    State& state = machine_.state;
    if (!inRange(units)) {
        flush();
        machine_.liftPen();
        state.lost = true;
        return;
    }
    if (state.polygon.open) {
        if (machine_.takeVertices(1)) addVertex(state.polygon, units, state.penDown);
    } else if (state.penDown) {
        if (line_.empty()) line_.push_back(state.position);
        line_.push_back(units);
        if (line_.size() >= MOST_POINTS) flush();
    } else {
        flush();
    }
    state.position = units;
}

void Path::goToUser(Point user, bool relative) {
    State& state = machine_.state;
    if (state.lost) {
        if (relative || !inRange(user)) return;
        state.lost = false;
    }
    if (!inRange(user)) user = {2 * FARTHEST, 0};
    goTo(relative ? state.position + linear(map_, user) : map_(user));
    if (state.characters.symbol == 0 || state.polygon.open || state.lost) return;
    flush();
    drawSymbol(machine_, state.position);
}

// Nothing but lines comes of the next points, unless they are out of range.
bool Path::goesStraight() const {
    const State& state = machine_.state;
    return state.penDown && !state.polygon.open && !state.lost && state.characters.symbol == 0;
}

void Path::goAlong(std::span<const double> numbers, bool relative) {
    State& state = machine_.state;
    std::size_t i = 0;
    if (goesStraight() && !relative && numbers.size() / 2 < MOST_POINTS) {
        const Affine map = map_;
        if (line_.empty()) line_.push_back(state.position);
        for (; i + 1 < numbers.size(); i += 2) {
            const Point user = {numbers[i], numbers[i + 1]};
            const Point units = map(user);
            if (!inRange(user) || !inRange(units)) break;
            line_.push_back(units);
        }
        state.position = line_.back();
    }
    for (; i + 1 < numbers.size(); i += 2) {
        goToUser({numbers[i], numbers[i + 1]}, relative);
    }
}

namespace {

void plot(Machine& machine, const Instruction& instruction) {
    const auto& n = instruction.numbers;
    if (n.size() < 2) return;
    Path path(machine);
    path.goAlong(n, machine.state.relative);
    path.flush();
    machine.state.carriage = machine.state.position;
}

}  // namespace

void penUp(Machine& machine, const Instruction& instruction) {
    machine.liftPen();
    plot(machine, instruction);
}

void penDown(Machine& machine, const Instruction& instruction) {
    machine.lowerPen();
    plot(machine, instruction);
}

void plotAbsolute(Machine& machine, const Instruction& instruction) {
    machine.state.relative = false;
    machine.state.carriage = machine.state.position;  // without coordinates, too
    plot(machine, instruction);
}

void plotRelative(Machine& machine, const Instruction& instruction) {
    machine.state.relative = true;
    machine.state.carriage = machine.state.position;
    plot(machine, instruction);
}

void encodedLine(Machine& machine, const Instruction& instruction) {
    State& state = machine.state;
    PolylineDecoder decoder(instruction.text);
    Path path(machine);
    while (const auto item = decoder.next()) {
        if (item->kind == PolylineDecoder::Kind::Pen) {
            if (state.polygon.open) continue;
            path.flush();
            const double pen = item->pen;
            Instruction select;
            select.numbers = {&pen, 1};
            selectPen(machine, select);
            continue;
        }
        if (item->penUp) {
            path.flush();
            machine.liftPen();
        } else {
            machine.lowerPen();
        }
        path.goToUser(item->pair, !item->absolute);
    }
    path.flush();
    state.carriage = state.position;
}

}  // namespace plotter
