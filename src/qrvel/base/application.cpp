#include "qrvel/base/application.h"

#include <QWidget>
#include <utility>

#include "platform/display_server.h"
#include "platform/windows.h"

namespace qrvel {

namespace {

Application* running = nullptr;

}  // namespace

Application::Application(Options taken, std::unique_ptr<QApplication> made)
    : options(std::move(taken)), qt(std::move(made)) {
    running = this;
}

Application::~Application() {
    running = nullptr;
}

Application* application() {
    return running;
}

void quitApplication() {
    if (running == nullptr) return;
    running->state.quit = 1;
    if (QWidget* box = QApplication::activeModalWidget()) box->close();
    running->messages.wake();
}

void endProcess(int32_t status) {
    if (running != nullptr && running->exitProcedure != nullptr) running->exitProcedure(running->handle, status);
    ExitProcess(static_cast<UINT>(status));
}

bool isUnattended() {
    return isUnseen(QGuiApplication::platformName());
}

}  // namespace qrvel
