#include "plot_run.h"

#include "character_instructions.h"
#include "manifest.h"
#include "printer.h"
#include "reader.h"

namespace plotter {

namespace {

constexpr std::size_t BYTES_BETWEEN_WATCHES = 65536;

class PlotRun {
  public:
    PlotRun(std::size_t bytes, const Traits& traits, Sheet& sheet, Report& report, const Watch& watch)
        : machine_(traits, sheet, report, bytes), printer_(machine_), report_(report), watch_(watch) {
        printer_.setRunner([this](std::string_view macro) { runOver(macro, false); });
    }

    RunResult run(std::string_view bytes) {
        printer_.begin(bytes);
        const bool whole = runOver(bytes, true);
        if (whole) end();
        return {whole, machine_.found(), machine_.sizeAsked(), machine_.coloursChosen() || printer_.colourPrinter()};
    }

  private:
    // A run with wrong traits finds nothing that is worth going on for.
    bool isOther() const { return machine_.found().hpgl2 && !machine_.traits().hpgl2; }

    // False when the watch has said stop. Only the file itself is watched: a macro is a part of what was watched
    // already.
    bool runOver(std::string_view bytes, bool isFile) {
        Reader reader(bytes, report_);
        std::size_t nextWatch = 0;
        while (!reader.isOver() && !isOther()) {
            if (isFile && reader.at() >= nextWatch) {
                nextWatch = reader.at() + BYTES_BETWEEN_WATCHES;
                if (!watch_(reader.at())) return false;
            }
            step(reader, bytes);
        }
        if (isFile) brokenOff_ = reader.brokenOff();
        return true;
    }

    void step(Reader& reader, std::string_view bytes) {
        if (printer_.language() == Language::Plotter) {
            const ManifestRow* row = reader.next(labelEnd());
            if (row != nullptr) {
                carryOut(*row, reader.instruction());
                return;
            }
            if (reader.isOver()) return;
        }
        machine_.setOffset(reader.at());
        reader.goTo(printer_.step(bytes, reader.at()));
    }

    LabelEnd labelEnd() const {
        const Characters& characters = machine_.state.characters;
        return {labelTerminator(characters), labelsAreWide(characters)};
    }

    void carryOut(const ManifestRow& row, const Instruction& instruction) {
        machine_.setOffset(instruction.offset);
        if (row.hpgl2) machine_.noteHpgl2();
        if (machine_.state.polygon.open && !row.inPolygon) return;
        if (machine_.state.lost && !row.whileLost) return;
        if (row.procedure != nullptr) {
            row.procedure(machine_, instruction);
        } else if (row.draws) {
            report_.passOver(row.name, instruction.offset);
        }
    }

    void end() {
        printer_.finish();
        machine_.liftPen();
        if (machine_.state.polygon.open) report_.endIn(Ending::InPolygon);
        if (brokenOff_) report_.endIn(*brokenOff_);
    }

    Machine machine_;
    Printer printer_;
    Report& report_;
    const Watch& watch_;
    std::optional<Ending> brokenOff_;
};

}  // namespace

RunResult runPlotter(std::string_view bytes, const Traits& traits, Sheet& sheet, Report& report, const Watch& watch) {
    return PlotRun(bytes.size(), traits, sheet, report, watch).run(bytes);
}

}  // namespace plotter
