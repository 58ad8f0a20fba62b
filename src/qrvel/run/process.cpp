// The process's life: WIinitialise makes the application and says which run it is, Wterminate ends it.
#include <unistd.h>

#include <QApplication>
#include <clocale>
#include <cstdio>
#include <utility>

#include "platform/display_server.h"
#include "platform/message_pump.h"
#include "platform/windows.h"
#include "qrvel/base/application.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/toolkit_trace.h"
#include "qrvel/output/fonts.h"
#include "qrvel/run/app_icon.h"
#include "qrvel/run/picture_run.h"
#include "qrvel/run/print_run.h"
#include "qrvel/run/window_run.h"
#include "system/descriptors.h"
#include "system/shown_text.h"

namespace qrvel {

namespace {

// Without so many Qt would abort the process.
constexpr int DESCRIPTORS_UNSEEN = 4;
constexpr int DESCRIPTORS_OF_A_WINDOW = 8;

std::unique_ptr<QApplication> makeQApplication() {
    if (QCoreApplication::instance() != nullptr) return nullptr;
    // Only the program's name: what else stands on the command line is the toolkit's own, and Qt keeps a reference.
    static char name[] = "kelhpgl";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    return std::make_unique<QApplication>(count, arguments);
}

// Without a display Qt complains of what a display would have; whoever converts files should not read it as an error.
void passOnGrave(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", kelsystem::shownText(text.toStdString()).c_str());
    }
}

bool isUnseen(const Options& options) {
    return !options.picture.isEmpty() || !options.printTo.isEmpty();
}

std::unique_ptr<Run> makeRun(const Options& options) {
    if (!options.printTo.isEmpty()) return std::make_unique<PrintRun>(options);
    if (!options.picture.isEmpty()) return std::make_unique<PictureRun>();
    return std::make_unique<WindowRun>();
}

void nameProgram() {
    // QApplication takes the session's locale over; the viewer reads numbers with a decimal point.
    std::setlocale(LC_NUMERIC, "C");
    QCoreApplication::setApplicationName("kelhpgl");
    QCoreApplication::setOrganizationName("KEL");
    QCoreApplication::setApplicationVersion(KEL_VERSION);
    QGuiApplication::setDesktopFileName("kelhpgl");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(makeAppIcon());
}

void begin(Application& app) {
    const Options& options = app.options;
    for (const QByteArray& source : options.sources) {
        source == STANDARD_INPUT ? app.filesRead.add(STDIN_FILENO) : app.filesRead.add(source.toStdString());
    }
    app.variables.notifyId = options.notifyId;
    app.variables.notifyWindow = reinterpret_cast<void*>(options.notifyWindow);
    app.run = makeRun(options);
    app.endSignals = std::make_unique<EndSignals>(quitApplication, isUnseen(options));
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, quitApplication, Qt::DirectConnection);
    pump::setInputBlock([] { return application() != nullptr && application()->state.inputBlocked != 0; });
}

}  // namespace

}  // namespace qrvel

using namespace qrvel;

uint64_t Wqueryversion(uint32_t /*kind*/) {
    return W_VERSION;
}

WHandle WIinitialise(int32_t /*argc*/, char** /*argv*/, uint32_t /*flag*/) {
    if (application() != nullptr) {
        traceLine("WIinitialise: there is an application already\n");
        return 0;
    }
    Options options = readOptions();
    const bool unseen = isUnseen(options);
    if (unseen) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(passOnGrave);
    }
    if (!kelsystem::descriptorsAreLeft(unseen ? DESCRIPTORS_UNSEEN : DESCRIPTORS_OF_A_WINDOW)) {
        std::fputs("kelhpgl: too few descriptors are left to begin\n", stderr);
        return 0;
    }
    if (!isDisplayReachable()) {
        std::fputs("kelhpgl: no display (DISPLAY names none that answers)\n", stderr);
        return 0;
    }
    auto qt = makeQApplication();
    nameProgram();
    auto* app = handles().make<Application>(std::move(options), std::move(qt));
    if (app == nullptr) return 0;
    begin(*app);
    return app->handle;
}

void* WIgetvar(WHandle app, uint32_t kind) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return nullptr;
    switch (kind) {
        case 0:
            return &found->state;
        case 1:
            return &found->variables;
        default:
            return nullptr;
    }
}

void Wquit(WHandle app) {
    if (handles().find<Application>(app, __func__) != nullptr) quitApplication();
}

int32_t Wregexitproc(WHandle app, WExitProc proc) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return 0;
    found->exitProcedure = proc;
    return 1;
}

void Wfatalerror(WHandle /*app*/, const char* text) {
    showFatalNotice(text);
    endProcess(1);
}

void Wterminate(WHandle app) {
    const auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return;
    const int32_t status = found->run->status();
    forgetFonts();
    // It asks for what the application knows, and may end the process.
    if (status != 0 && found->exitProcedure != nullptr) found->exitProcedure(app, status);
    handles().destroy<Application>(app, __func__);
    if (status != 0) ExitProcess(static_cast<UINT>(status));
}

void Werrorbox(WHandle app, const char* text, uint32_t /*level*/) {
    if (handles().find<Application>(app, __func__) != nullptr) showNotice(QString::fromUtf8(text));
}
