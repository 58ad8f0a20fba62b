#include "plotter/instructions.h"
#include "plotter/lettering.h"

namespace plotter {

namespace {

// Numbers of UC from these on move its pen.
constexpr double PEN_DOWN = 99;
// Of UC: so many steps to a capital's width and height.
constexpr Point STEPS = {4, 8};
// In DL, in front of a point that the pen goes to without drawing.
constexpr double LIFTED = -128;

// Strokes in steps from the character's origin.
std::vector<Line> readIncrements(std::span<const double> numbers) {
    std::vector<Line> strokes;
    Point at;
    bool down = false;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (std::abs(numbers[i]) >= PEN_DOWN) {
            const bool lowered = numbers[i] >= PEN_DOWN;
            if (lowered && !down) strokes.push_back({at});
            down = lowered;
        } else if (i + 1 < numbers.size()) {
            at = at + Point{numbers[i], numbers[i + 1]};
            if (down) strokes.back().push_back(at);
            ++i;
        }
    }
    return strokes;
}

std::vector<Line> readPoints(std::span<const double> numbers) {
    std::vector<Line> strokes;
    bool begins = true;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (numbers[i] <= LIFTED) {
            begins = true;
        } else if (i + 1 < numbers.size()) {
            if (begins) strokes.emplace_back();
            strokes.back().push_back({numbers[i], numbers[i + 1]});
            begins = false;
            ++i;
        }
    }
    return strokes;
}

}  // namespace

void userCharacter(Machine& machine, const Instruction& instruction) {
    State& state = machine.state;
    if (state.polygon.open) return;
    const Lettering lettering = currentLettering(machine);
    const Face& face = currentFace(machine, lettering);
    MachineLabelOutput output(machine);
    layStrokes(lettering, face, readIncrements(instruction.numbers), {face.width / STEPS.x, face.height / STEPS.y}, {},
               state.position, output);
    state.position = reachable(state.position + lettering.step(face), state.position);
}

void downloadCharacter(Machine& machine, const Instruction& instruction) {
    auto& characters = machine.state.characters.userCharacters;
    if (!instruction.has(1)) {
        characters.clear();
        return;
    }
    const int32_t code = toInteger(instruction.numbers[0]);
    if (code < 0 || code > 0xFF) return;
    if (instruction.has(2)) {
        characters[static_cast<uint8_t>(code)] = readPoints(instruction.numbers.subspan(1));
    } else {
        characters.erase(static_cast<uint8_t>(code));
    }
}

}  // namespace plotter
