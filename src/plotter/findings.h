// What the second pass needs of the first.
#pragma once

#include <vector>

#include "plotter/file_bytes.h"
#include "plotter/machine.h"
#include "plotter/palette.h"

namespace plotter {

struct Findings {
    PreparedBytes prepared;  // bytes and owner; bytes of the file itself are not kept
    Traits traits;
    bool coloursChosen = false;
    std::vector<Palette> palettes;  // one a page
};

}  // namespace plotter
