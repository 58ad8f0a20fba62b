#include <string>

#include "plotter/instructions.h"
#include "plotter/lettering.h"

namespace plotter {

namespace {

// Bytes that BL keeps; plotters kept 150.
constexpr std::size_t LONGEST_BUFFER = 4096;

void drawLabel(Machine& machine, std::string_view text) {
    State& state = machine.state;
    if (state.polygon.open || state.lost || text.empty()) return;
    MachineLabelOutput output(machine);
    LabelPen pen = {state.position, state.carriage, state.characters.alternateSelected};
    layLabel(currentLettering(machine), text, pen, output);
    state.position = reachable(pen.position, state.position);
    state.carriage = reachable(pen.carriage, state.carriage);
    state.characters.alternateSelected = pen.alternate;
}

// NUL, ENQ, LF, ESC and ';' have meanings of their own.
bool mayTerminate(char byte) {
    return std::string_view("\0\5\n\33;", 5).find(byte) == std::string_view::npos;
}

}  // namespace

void label(Machine& machine, const Instruction& instruction) {
    const Characters& characters = machine.state.characters;
    if (!characters.terminator.drawn || instruction.endsEarly) {
        drawLabel(machine, instruction.text);
        return;
    }
    std::string text(instruction.text);
    if (characters.wide) text += '\0';
    drawLabel(machine, text + characters.terminator.byte);
}

void bufferLabel(Machine& machine, const Instruction& instruction) {
    if (instruction.text.size() > LONGEST_BUFFER) machine.report().meetBound("BL characters");
    machine.state.characters.buffer = instruction.text.substr(0, LONGEST_BUFFER);
}

void printBuffer(Machine& machine, const Instruction& /*instruction*/) {
    Characters& characters = machine.state.characters;
    if (!characters.replayed.spend(static_cast<double>(characters.buffer.size()))) {
        machine.report().meetBound("PB characters");
        return;
    }
    // SO and SI in it change the state that it is part of.
    const std::string text = characters.buffer;
    drawLabel(machine, text);
}

void defineTerminator(Machine& machine, const Instruction& instruction) {
    LabelTerminator& terminator = machine.state.characters.terminator;
    const std::string_view text = instruction.text;
    if (text.empty()) {
        terminator = {};
    } else if (mayTerminate(text[0])) {
        terminator = {text[0], text.substr(1) == ",0"};
    }
}

void characterPlot(Machine& machine, const Instruction& instruction) {
    State& state = machine.state;
    if (state.polygon.open) return;
    const Lettering lettering = currentLettering(machine);
    const Face& face = currentFace(machine, lettering);
    if (!instruction.has(1)) {
        state.position = state.carriage = reachable(state.carriage + lettering.feed(face), state.carriage);
        return;
    }
    const Point along = lettering.step(face) * instruction.numbers[0];
    const Point up = lettering.feed(face) * -instruction.number(1, 0);
    state.position = reachable(state.position + along + up, state.position);
    state.carriage = reachable(state.carriage + up, state.carriage);
}

void transparentData(Machine& machine, const Instruction& instruction) {
    machine.state.characters.transparent = toInteger(instruction.number(0, 0)) == 1;
}

void labelMode(Machine& machine, const Instruction& instruction) {
    const int32_t mode = toInteger(instruction.number(0, 0));
    machine.state.characters.wide = mode == 1 || mode == 3;
}

void symbolMode(Machine& machine, const Instruction& instruction) {
    const bool printed = !instruction.text.empty() && static_cast<uint8_t>(instruction.text[0]) > ' ';
    machine.state.characters.symbol = printed ? instruction.text[0] : '\0';
}

}  // namespace plotter
