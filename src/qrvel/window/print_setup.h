// The print set-up: what is to be printed where, chosen in its panel or, with --print-to, on the command line.
#pragma once

#include <QPointer>

#include "qrvel/base/handles.h"
#include "qrvel/base/print_choice.h"
#include "qrvel/window/print_panel.h"

namespace qrvel {

struct PrintSetup : Object {
    static constexpr Kind KIND = Kind::PrintSetup;
    ~PrintSetup() override;

    WHandle shell = 0;
    WHandle container = 0;
    QPointer<PrintPanel> panel;  // made when it is shown first; goes with the shell's window
    bool previewIsStale = false;
    bool printIsDue = false;
};

// The view has changed.
void printPreviewIsStale();
// When no picture is on its way to the screen: tells the viewer to print, if the user has said so, and shows in the
// panel what would be printed, if that has changed and somebody looks. It enters the viewer.
void servePrintSetup();

}  // namespace qrvel
