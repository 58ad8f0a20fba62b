// The application: one a process. What all rooms share of it.
#pragma once

#include <QApplication>
#include <QTranslator>
#include <memory>
#include <vector>

#include "qrvel/base/end_signals.h"
#include "qrvel/base/handles.h"
#include "qrvel/base/language.h"
#include "qrvel/base/messages.h"
#include "qrvel/base/options.h"
#include "qrvel/base/print_choice.h"
#include "qrvel/base/run.h"
#include "system/file_ids.h"
#include "toolkit/wi.h"

namespace qrvel {

struct Application : Object {
    static constexpr Kind KIND = Kind::Application;

    // Qt's own: null where somebody else has made it.
    Application(Options taken, std::unique_ptr<QApplication> made);
    ~Application() override;

    Options options;
    std::unique_ptr<QApplication> qt;
    WState state{};
    WVariables variables{};
    WExitProc exitProcedure = nullptr;
    std::vector<KeyedTexts> configuration;   // the user's before the system's
    Language language;                       // of the texts
    QTranslator qtTexts;                     // of Qt's own windows
    const char* const* loadTitle = nullptr;  // where the viewer keeps these of its texts (Wloadtxt), which it may
    const char* const* loadText = nullptr;   // still replace by its own; not owned
    kelsystem::FileIds filesRead;            // what drawings come from: never to be written
    PrintChoice printChoice;                 // as it was when the user, or the run, said so: of the page under way
    ToolkitMessages messages;
    std::unique_ptr<EndSignals> endSignals;
    std::unique_ptr<Run> run;  // from the beginning on
};

// The application that runs, or null.
Application* application();

// Sets the quit flag and wakes the loop; a box that waits for an answer is closed.
void quitApplication();

// Tells whoever is to be told (Wregexitproc) and ends the process at once.
[[noreturn]] void endProcess(int32_t status);

// Whether nobody looks: the picture goes to a file, and windows must not be waited for.
bool isUnattended();

}  // namespace qrvel
