// Telling the user that something went wrong.
#pragma once

#include <QString>

namespace qrvel {

// A line on stderr.
void sayLine(const QString& text);

// The same and, where somebody looks, a box that does not stop the viewer.
void showNotice(const QString& text);

// A box that waits; without a display, or unattended, a line on stderr.
void showFatalNotice(const char* text);

}  // namespace qrvel
