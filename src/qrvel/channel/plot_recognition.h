// Telling a plot from any other file: every two bytes of a photograph may be a command by chance, and what is drawn
// then is nothing that anybody wants to see.
#pragma once

#include <string_view>

namespace qrvel {

// Whether something in it draws: a command with at least a pair of numbers, a circle, an encoded polyline, or the name
// of another file. A text that quotes such a command passes, and is drawn. Time grows with the bytes alone.
bool holdsDrawing(std::string_view bytes);

// Whether it is neither text nor begins as what is sent to plotters and printers begins: with an escape.
bool isBinary(std::string_view bytes);

}  // namespace qrvel
