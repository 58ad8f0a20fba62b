#include "plotter/plot_run.h"

namespace plotter {

namespace {

constexpr std::size_t BYTES_BETWEEN_WATCHES = 65536;

}  // namespace

PlotRun::PlotRun(std::string_view bytes, const Traits& traits, Sheet& sheet, Report& report)
    : bytes_(bytes),
      report_(report),
      machine_(traits, sheet, report, bytes.size()),
      printer_(machine_, [this](std::string_view macro) { runMacro(macro); }),
      reader_(bytes, report) {
    printer_.begin(bytes);
}

// A run with wrong traits finds nothing that is worth going on for.
bool PlotRun::isOther() const {
    return machine_.found().hpgl2 && !machine_.traits().hpgl2;
}

bool PlotRun::goOn(std::size_t pages, const Watch& watch) {
    while (machine_.pagesEnded() < pages && !reader_.isOver() && !isOther()) {
        if (reader_.at() >= nextWatch_) {
            if (!watch(reader_.at())) return false;
            nextWatch_ = reader_.at() + BYTES_BETWEEN_WATCHES;
        }
        step(reader_, bytes_);
    }
    if (machine_.pagesEnded() < pages && !isOver_) end();
    return true;
}

// It is a part of what is watched already.
void PlotRun::runMacro(std::string_view macro) {
    Reader reader(macro, report_);
    while (!reader.isOver() && !isOther()) {
        step(reader, macro);
    }
}

void PlotRun::step(Reader& reader, std::string_view bytes) {
    if (printer_.language() == Language::Plotter) {
        const ManifestRow* row = reader.next(labelEnd());
        if (row != nullptr) {
            carryOut(*row, reader.instruction());
            return;
        }
        if (reader.isOver()) return;
    }
    report_.setOffset(reader.at());
    reader.goTo(printer_.step(bytes, reader.at()));
}

LabelEnd PlotRun::labelEnd() const {
    const Characters& characters = machine_.state.characters;
    return {characters.terminator.byte, characters.wide};
}

void PlotRun::carryOut(const ManifestRow& row, const Instruction& instruction) {
    report_.setOffset(instruction.offset);
    if (row.hpgl2) machine_.noteHpgl2();
    if (machine_.state.polygon.open && !row.inPolygon) return;
    if (machine_.state.lost && !row.whileLost) return;
    if (row.procedure != nullptr) {
        row.procedure(machine_, instruction);
    } else if (row.draws) {
        report_.passOver(row.name);
    }
}

void PlotRun::end() {
    isOver_ = true;
    printer_.finish();
    machine_.liftPen();
    if (machine_.state.polygon.open) report_.endIn(Ending::InPolygon);
    if (const std::optional<Ending> brokenOff = reader_.brokenOff()) report_.endIn(*brokenOff);
}

RunResult PlotRun::result() const {
    return {machine_.found(), machine_.sizeAsked(), machine_.coloursChosen() || printer_.colourPrinter()};
}

}  // namespace plotter
