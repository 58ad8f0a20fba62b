// What a person is told of a plot that was not drawn as it stands in the file.
#pragma once

#include <QString>

#include "plotter/plotter.h"

namespace qrvel {

// Whether nothing is on any of its pages.
bool isEmptyDrawing(const plotter::Survey& survey);

// Whether the file ends early, what was passed over and which bounds were met: one line in the user's language, empty
// when there is nothing to say.
QString reportText(const plotter::Report& report);

}  // namespace qrvel
