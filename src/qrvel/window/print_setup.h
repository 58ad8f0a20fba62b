// The print set-up: what is to be printed where, chosen in its panel or, with --print-to, on the command line.
#pragma once

#include <QPointer>

#include "handles.h"
#include "print_choice.h"
#include "print_panel.h"

namespace qrvel {

struct PrintSetup : Object {
    static constexpr Kind KIND = Kind::PrintSetup;
    ~PrintSetup() override;

    PrintChoice choice() const;

    WHandle shell = 0;
    WHandle container = 0;
    QPointer<PrintPanel> panel;  // made when it is shown first; goes with the shell's window
    bool previewIsStale = false;
    bool printIsDue = false;
};

// Its action messages.
inline constexpr uint32_t PRINT_SETUP_KIND = 5;
inline constexpr uint32_t PRINT_CANCELLED = 9;
inline constexpr uint32_t PRINT_SETUP_GONE = 10;
inline constexpr uint32_t PRINT = 11;

// What is chosen now.
PrintChoice currentPrintChoice();

// The view has changed.
void printPreviewIsStale();
// When no picture is on its way to the screen: tells the viewer to print, if the user has said so, and shows in the
// panel what would be printed, if that has changed and somebody looks. It enters the viewer.
void servePrintSetup();

// Stands for the chosen name where that has no room. It names a folder, so no file is meant by it, nor a printer.
inline constexpr char CHOSEN_FILE[] = "/";

}  // namespace qrvel
