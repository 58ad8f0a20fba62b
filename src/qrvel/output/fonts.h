// The fonts that were registered: sizes of the label face.
#pragma once

#include <vector>

#include "toolkit/w.h"

namespace qrvel {

// The handles, in the order in which the sizes were registered first. It stays where it is.
const std::vector<WHandle>& registeredFonts();

// Forgets them all; for the end of the application.
void forgetFonts();

}  // namespace qrvel
