// The application: one a process, made by WIinitialise, ended by Wterminate.
#pragma once

#include <QApplication>
#include <QTranslator>
#include <memory>
#include <vector>

#include "conversion.h"
#include "end_signals.h"
#include "file_ids.h"
#include "handles.h"
#include "language.h"
#include "messages.h"
#include "options.h"
#include "wi.h"

namespace qrvel {

struct Application : Object {
    static constexpr Kind KIND = Kind::Application;

    explicit Application(Options taken);
    ~Application() override;

    Options options;
    std::unique_ptr<QApplication> qt;  // null where somebody else made it before
    WState state{};
    WVariables variables{};
    WExitProc exitProcedure = nullptr;
    std::vector<KeyedTexts> configuration;   // the user's before the system's
    Language language;                       // of the texts
    QTranslator qtTexts;                     // of Qt's own windows
    const char* const* loadTitle = nullptr;  // where the viewer keeps these of its texts (Wloadtxt), which it may
    const char* const* loadText = nullptr;   // still replace by its own; not owned
    kelfiles::FileIds filesRead;             // what drawings come from: never to be written
    std::unique_ptr<Conversion> conversion;  // with --print-to
    MessageQueue messages;
    std::unique_ptr<EndSignals> endSignals;
    int32_t status = 0;  // with which Wterminate ends the process, unless 0
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
