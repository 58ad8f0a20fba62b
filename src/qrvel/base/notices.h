// Telling the user that something went wrong.
#pragma once

#include <QString>

class QWidget;

namespace qrvel {

// The window that boxes stand in front of, once it is shown.
void setNoticeWindow(QWidget* window);

// A line on stderr. Names are data: control characters in them are shown as question marks.
void sayLine(const QString& text);

// What goes on, on a terminal, until the next line or progress; nothing elsewhere. An empty text takes it away.
void showProgressLine(const QString& text);

// The same and, where somebody looks, a box that does not stop the viewer.
void showNotice(const QString& text);

// A box that waits; without a display, or unattended, a line on stderr.
void showFatalNotice(const char* text);

}  // namespace qrvel
