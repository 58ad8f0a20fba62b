// MessageBoxA, which must work before the toolkit has made an application, and without a display.
#include <QApplication>
#include <QMessageBox>
#include <clocale>
#include <cstdio>
#include <memory>

#include "platform/display_server.h"
#include "platform/windows.h"

namespace {

constexpr int ANSWER_OK = 1;

bool isSeen() {
    if (QCoreApplication::instance() != nullptr) return !isUnseen(QGuiApplication::platformName());
    return !isUnseen(qEnvironmentVariable("QT_QPA_PLATFORM")) && isDisplayReachable();
}

// An application for as long as the box is shown, so that the toolkit can make its own later.
class BoxApplication {
  public:
    BoxApplication() {
        if (QCoreApplication::instance() != nullptr) return;
        application_ = std::make_unique<QApplication>(count_, values_);
        std::setlocale(LC_NUMERIC, "C");  // the application took the session's; numbers are read with a point
    }

  private:
    char name_[8] = "kelhpgl";
    char* values_[2] = {name_, nullptr};
    int count_ = 1;
    std::unique_ptr<QApplication> application_;
};

void showBox(const QString& text, const QString& title, UINT type) {
    const BoxApplication application;
    QMessageBox box((type & MB_ICONHAND) != 0 ? QMessageBox::Critical : QMessageBox::NoIcon, title, text,
                    QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

}  // namespace

int MessageBoxA(HWND /*owner*/, LPCSTR text, LPCSTR title, UINT type) {
    if (isSeen()) {
        showBox(QString::fromUtf8(text), QString::fromUtf8(title), type);
    } else {
        std::fprintf(stderr, "%s: %s\n", title, text);
    }
    return ANSWER_OK;
}
