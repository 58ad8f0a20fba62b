#include "plotter/instructions.h"

namespace plotter {

namespace {

// PS below is the paper switch of a pen plotter: 0 to 3 large, others small.
constexpr double LEAST_PLOT_SIZE = 128;
constexpr double LAST_LARGE_CODE = 3;

// The pen and the label margin stay at their places on the paper while the map to it changes.
template <class Change>
void keepOnPaper(Machine& machine, const Change& change) {
    State& state = machine.state;
    const Affine before = state.coordinates.toPaper();
    change();
    const Affine back = inverse(state.coordinates.toPaper());
    state.position = back(before(state.position));
    state.carriage = state.position;
}

Box boxOf(Point a, Point b) {
    Box box;
    box.add(a);
    box.add(b);
    return box;
}

// A window from the origin on that is what P1 and P2 span says how large the sheet is. The edges of a sheet cut nothing
// off: who has drawn beyond them wants to see it.
bool isSheet(const Box& window, const Coordinates& coordinates) {
    return window.low == Point{0, 0} && window == boxOf(coordinates.p1, coordinates.p2);
}

bool meet(const Box& a, const Box& b) {
    return a.low.x <= b.high.x && b.low.x <= a.high.x && a.low.y <= b.high.y && b.low.y <= a.high.y;
}

// Plotter units where user units are meant: as those the window hides everything between P1 and P2, as the others not.
bool isInWrongUnits(const Box& window, const Box& asWritten, const Coordinates& coordinates) {
    const Box corners = boxOf(coordinates.p1, coordinates.p2);
    return !meet(window, corners) && meet(asWritten, corners);
}

// Without a second corner P2 follows P1. Corners at one place are none.
void setCorners(Coordinates& coordinates, Point p1, std::optional<Point> p2) {
    coordinates.p2 = p2.value_or(coordinates.p2 + (p1 - coordinates.p1));
    coordinates.p1 = p1;
    if (p1.x == coordinates.p2.x) coordinates.p2.x += 1;
    if (p1.y == coordinates.p2.y) coordinates.p2.y += 1;
}

}  // namespace

void initialise(Machine& machine, const Instruction& /*instruction*/) {
    machine.initialise();
}

void setDefaults(Machine& machine, const Instruction& /*instruction*/) {
    machine.setDefaults();
}

void inputCorners(Machine& machine, const Instruction& instruction) {
    Coordinates& coordinates = machine.state.coordinates;
    const auto& n = instruction.numbers;
    if (n.size() == 1 || n.size() == 3) return;
    clearResidue(machine.state.lineTypes);
    if (n.empty()) {
        setDefaultCorners(coordinates, machine.traits().hpgl2, machine.traits().large);
        return;
    }
    setCorners(coordinates, {n[0], n[1]}, n.size() < 4 ? std::nullopt : std::optional(Point{n[2], n[3]}));
}

void inputRelative(Machine& machine, const Instruction& instruction) {
    Coordinates& coordinates = machine.state.coordinates;
    const auto& n = instruction.numbers;
    if (n.size() == 1 || n.size() == 3) return;
    const Point room = coordinates.room(machine.traits().large);
    const auto share = [&](double x, double y) { return Point{room.x * x / 100, room.y * y / 100}; };
    clearResidue(machine.state.lineTypes);
    if (n.empty()) {
        coordinates.p1 = {};
        coordinates.p2 = room;
        return;
    }
    setCorners(coordinates, share(n[0], n[1]), n.size() < 4 ? std::nullopt : std::optional(share(n[2], n[3])));
}

void inputWindow(Machine& machine, const Instruction& instruction) {
    Coordinates& coordinates = machine.state.coordinates;
    const auto& n = instruction.numbers;
    clearResidue(machine.state.lineTypes);
    if (n.empty()) coordinates.window.reset();
    if (n.size() < 4) return;
    const Affine toUnits = coordinates.toUnits();
    const Box window = boxOf(toUnits({n[0], n[1]}), toUnits({n[2], n[3]}));
    if (isInWrongUnits(window, boxOf({n[0], n[1]}, {n[2], n[3]}), coordinates)) return;
    coordinates.window.reset();
    if (!isSheet(window, coordinates)) coordinates.window = window;
}

void scale(Machine& machine, const Instruction& instruction) {
    const auto& n = instruction.numbers;
    Scaling& scaling = machine.state.coordinates.scaling;
    machine.state.carriage = machine.state.position;
    clearResidue(machine.state.lineTypes);
    if (n.empty()) {
        scaling = {};
        return;
    }
    if (n.size() < 4 || n.size() == 6) return;
    const int32_t kind = toInteger(instruction.number(4, 0));
    if (kind < 0 || kind > 2) return;
    const bool factors = kind == 2;
    const bool flat = factors ? n[1] == 0 || n[3] == 0 : n[0] == n[1] || n[2] == n[3];
    if (flat) return;
    const Coordinates& coordinates = machine.state.coordinates;
    const bool paperIsKnown = coordinates.frame.size || coordinates.sheet;
    if (!paperIsKnown && coordinates.p2 == coordinates.room(machine.traits().large)) machine.noteSizeAsked();
    constexpr Scaling::Type TYPES[] = {Scaling::Type::Anisotropic, Scaling::Type::Isotropic,
                                       Scaling::Type::PointFactor};
    const double left = std::clamp(instruction.number(5, 50), 0.0, 100.0);
    const double bottom = std::clamp(instruction.number(6, 50), 0.0, 100.0);
    scaling = {TYPES[kind], n[0], n[1], n[2], n[3], left, bottom};
}

void rotate(Machine& machine, const Instruction& instruction) {
    const int32_t degrees = toInteger(instruction.number(0, 0));
    if (degrees % 90 != 0 || degrees < 0 || degrees > 270) return;
    clearResidue(machine.state.lineTypes);
    keepOnPaper(machine, [&] { machine.state.coordinates.rotation = degrees / 90; });
}

void plotSize(Machine& machine, const Instruction& instruction) {
    Coordinates& coordinates = machine.state.coordinates;
    if (coordinates.frame.size || machine.pageIsMarked()) return;
    const double size = instruction.number(0, 0);
    if (size < 0) return;
    coordinates.sheet.reset();
    coordinates.switchedLarge.reset();
    if (size >= LEAST_PLOT_SIZE) {
        coordinates.sheet = Point{size, std::max(instruction.number(1, size), 1.0)};
        coordinates.rotation = 0;
    } else if (instruction.has(1)) {
        coordinates.switchedLarge = size <= LAST_LARGE_CODE;
    }
    setDefaultCorners(coordinates, machine.traits().hpgl2, machine.traits().large);
}

void advancePage(Machine& machine, const Instruction& /*instruction*/) {
    machine.endPage();
}

}  // namespace plotter
