// What the second pass needs of the first.
#pragma once

#include <vector>

#include "file_bytes.h"
#include "machine.h"
#include "palette.h"

namespace plotter {

struct Findings {
    PreparedBytes prepared;  // bytes and owner; bytes of the file itself are not kept
    Traits traits;
    bool coloursChosen = false;
    std::vector<Palette> palettes;  // one a page
};

}  // namespace plotter
