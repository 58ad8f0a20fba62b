#include "plotter/instructions.h"

#include "plotter/units.h"

namespace plotter {

namespace {

double bounded(double number) {
    return std::isnan(number) ? 0 : std::clamp(number, -FARTHEST, FARTHEST);
}

// One number alone or a size of nothing changes nothing.
void setSize(Machine& machine, CharacterSize::Kind kind, const Instruction& instruction, Point unit) {
    if (!instruction.has(2)) return;
    const double width = bounded(instruction.numbers[0] * unit.x);
    const double height = bounded(instruction.numbers[1] * unit.y);
    if (width != 0 && height != 0) machine.state.characters.size = {kind, width, height};
}

void setDirectionTo(Machine& machine, const Instruction& instruction, bool relative, Point unit) {
    State& state = machine.state;
    TextDirection direction = {.relative = relative};
    if (instruction.has(1)) {
        if (!instruction.has(2)) return;
        direction.run = bounded(instruction.numbers[0] * unit.x);
        direction.rise = bounded(instruction.numbers[1] * unit.y);
        if (direction.run == 0 && direction.rise == 0) return;
    }
    state.characters.direction = direction;
    state.carriage = state.position;
}

// How long a user unit is along x and y.
Point userUnit(const Machine& machine) {
    const Affine map = machine.state.coordinates.toUnits();
    return {std::abs(map.xx), std::abs(map.yy)};
}

void setAttribute(Typeface& typeface, int32_t kind, double value) {
    switch (kind) {
        case 1:
            typeface.symbols = {.hpgl = false, .number = toInteger(value)};
            break;
        case 2:
            typeface.proportional = toInteger(value) != 0;
            break;
        case 3:
            if (value > 0) typeface.pitch = bounded(value);
            break;
        case 4:
            if (value > 0) typeface.height = bounded(value);
            break;
        case 5:
            typeface.posture = toInteger(value);
            break;
        case 6:
            typeface.weight = toInteger(value);
            break;
        case 7:
            typeface.number = toInteger(value);
            break;
        default:
            break;
    }
}

void describe(Typeface& typeface, const Instruction& instruction) {
    if (!instruction.has(1)) typeface = {};
    for (std::size_t i = 0; i + 1 < instruction.numbers.size(); i += 2) {
        setAttribute(typeface, toInteger(instruction.numbers[i]), instruction.numbers[i + 1]);
    }
}

void setSet(Typeface& typeface, const Instruction& instruction) {
    typeface.symbols = {.hpgl = true, .number = toInteger(instruction.number(0, 0))};
}

}  // namespace

void absoluteSize(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(1)) machine.state.characters.size = {};
    setSize(machine, CharacterSize::Kind::Absolute, instruction, {UNITS_PER_CENTIMETRE, UNITS_PER_CENTIMETRE});
}

void relativeSize(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(1)) machine.state.characters.size = {CharacterSize::Kind::Relative, 0.75, 1.5};
    setSize(machine, CharacterSize::Kind::Relative, instruction, {1, 1});
}

void userSize(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(1)) machine.state.characters.size = {};
    setSize(machine, CharacterSize::Kind::Absolute, instruction, userUnit(machine));
}

void slant(Machine& machine, const Instruction& instruction) {
    machine.state.characters.slant = bounded(instruction.number(0, 0));
}

void extraSpace(Machine& machine, const Instruction& instruction) {
    machine.state.characters.extraSpace = bounded(instruction.number(0, 0));
    machine.state.characters.extraLine = bounded(instruction.number(1, 0));
}

void labelOrigin(Machine& machine, const Instruction& instruction) {
    const int32_t origin = toInteger(instruction.number(0, 1));
    if (origin < 1 || origin > 21 || origin % 10 == 0) return;
    machine.state.characters.origin = origin;
    machine.state.carriage = machine.state.position;
}

void absoluteDirection(Machine& machine, const Instruction& instruction) {
    setDirectionTo(machine, instruction, false, {1, 1});
}

void relativeDirection(Machine& machine, const Instruction& instruction) {
    setDirectionTo(machine, instruction, true, {1, 1});
}

void userDirection(Machine& machine, const Instruction& instruction) {
    setDirectionTo(machine, instruction, false, userUnit(machine));
}

void verticalPath(Machine& machine, const Instruction& instruction) {
    const int32_t path = toInteger(instruction.number(0, 0));
    const int32_t line = toInteger(instruction.number(1, 0));
    if (path < 0 || path > 3 || line < 0 || line > 1) return;
    machine.state.characters.path = path;
    machine.state.characters.feedReversed = line == 1;
    machine.state.carriage = machine.state.position;
}

void standardSet(Machine& machine, const Instruction& instruction) {
    setSet(machine.state.characters.standard, instruction);
}

void alternateSet(Machine& machine, const Instruction& instruction) {
    setSet(machine.state.characters.alternate, instruction);
}

void selectStandard(Machine& machine, const Instruction& /*instruction*/) {
    machine.state.characters.alternateSelected = false;
}

void selectAlternate(Machine& machine, const Instruction& /*instruction*/) {
    machine.state.characters.alternateSelected = true;
}

void standardFont(Machine& machine, const Instruction& instruction) {
    describe(machine.state.characters.standard, instruction);
}

void alternateFont(Machine& machine, const Instruction& instruction) {
    describe(machine.state.characters.alternate, instruction);
}

void characterMode(Machine& machine, const Instruction& instruction) {
    const int32_t mode = toInteger(instruction.number(0, 0));
    if (mode >= 0 && mode <= 3) machine.state.characters.mode = static_cast<CharacterMode>(mode);
}

void designateSet(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(2)) return;
    const int32_t slot = toInteger(instruction.numbers[0]);
    if (slot != 0 && slot != 1) return;
    Characters& characters = machine.state.characters;
    Typeface& typeface = slot == 0 ? characters.standard : characters.alternate;
    typeface.symbols = {.hpgl = true, .number = toInteger(instruction.numbers[1])};
}

}  // namespace plotter
