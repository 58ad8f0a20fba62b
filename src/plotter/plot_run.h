// One run of the plotter over a file: envelope, reader and machine, from the first byte to the last.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "plotter/machine.h"
#include "plotter/manifest.h"
#include "plotter/plotter.h"
#include "plotter/printer.h"
#include "plotter/reader.h"

namespace plotter {

struct RunResult {
    Traits found;                // what the file has turned out to be; where it differs, the run is worth another
    bool sizeAsked = false;      // something depends on how large the paper is
    bool coloursChosen = false;  // the file says which colours its pens have
};

class PlotRun {
  public:
    static constexpr std::size_t ALL_PAGES = SIZE_MAX;

    // bytes: prepared (file_bytes.h), which like sheet and report outlive the run.
    PlotRun(std::string_view bytes, const Traits& traits, Sheet& sheet, Report& report);

    // Goes on behind the instruction that ends so many pages in all, or to the file's end, or until the traits turn out
    // to be wrong. False when the watch has said stop.
    bool goOn(std::size_t pages, const Watch& watch);
    // How far a curve may be from its chords from now on, plotter units.
    void setTolerance(double tolerance) { machine_.setTolerance(tolerance); }
    RunResult result() const;

  private:
    bool isOther() const;
    void step(Reader& reader, std::string_view bytes);
    void runMacro(std::string_view macro);
    void carryOut(const ManifestRow& row, const Instruction& instruction);
    void end();
    LabelEnd labelEnd() const;

    std::string_view bytes_;
    Report& report_;
    Machine machine_;
    Printer printer_;
    Reader reader_;
    std::size_t nextWatch_ = 0;
    bool isOver_ = false;
};

}  // namespace plotter
