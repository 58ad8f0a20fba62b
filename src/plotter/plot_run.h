// One run of the plotter over a file: envelope, reader and machine, from the first byte to the last.
#pragma once

#include <string_view>

#include "machine.h"
#include "plotter.h"

namespace plotter {

struct RunResult {
    bool whole = false;          // the watch never said stop
    Traits found;                // what the file has turned out to be; where it differs, the run is worth another
    bool sizeAsked = false;      // something depends on how large the paper is
    bool coloursChosen = false;  // the file says which colours its pens have
};

// bytes: prepared (file_bytes.h). The run ends early where the traits turn out to be wrong; whole is then true.
RunResult runPlotter(std::string_view bytes, const Traits& traits, Sheet& sheet, Report& report, const Watch& watch);

}  // namespace plotter
