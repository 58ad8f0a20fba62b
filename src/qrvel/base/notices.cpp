#include "qrvel/base/notices.h"

#include <poll.h>
#include <unistd.h>

#include <QMessageBox>
#include <QPointer>
#include <QTimerEvent>
#include <cstdio>

#include "platform/windows.h"
#include "qrvel/base/application.h"

namespace qrvel {

namespace {

constexpr char TITLE[] = "KEL HPGL Display";

QPointer<QWidget> window;  // that boxes stand in front of

// Waits until its parent is shown, and then shows the box in front of it.
class ShownWithParent : public QObject {
  public:
    explicit ShownWithParent(QMessageBox& box) : QObject(&box), box_(box) {
        box.parentWidget()->installEventFilter(this);
    }

    bool eventFilter(QObject* /*parent*/, QEvent* event) override {
        if (event->type() == QEvent::Show) startTimer(0);  // when the parent is really there
        return false;
    }

    void timerEvent(QTimerEvent* event) override {
        killTimer(event->timerId());
        box_.show();
    }

  private:
    QMessageBox& box_;
};

QString shownLine(QString text) {
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control) character = '?';
    }
    return text;
}

void showWithParent(QMessageBox& box) {
    const QWidget* parent = box.parentWidget();
    if (parent == nullptr || parent->isVisible()) {
        box.show();
    } else {
        new ShownWithParent(box);  // goes with the box
    }
}

}  // namespace

void setNoticeWindow(QWidget* shown) {
    window = shown;
}

// Whoever started us with a pipe there and does not read it must not stop us.
void sayLine(const QString& text) {
    showProgressLine({});
    pollfd standardError = {.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};
    if (poll(&standardError, 1, 0) == 0) return;
    std::fprintf(stderr, "kelhpgl: %s\n", qUtf8Printable(shownLine(text)));
}

void showProgressLine(const QString& text) {
    static bool stands = false;
    if (text.isEmpty() && !stands) return;
    if (isatty(STDERR_FILENO) == 0) return;
    constexpr char TO_EMPTY_LINE[] = "\r\033[K";
    std::fprintf(stderr, "%s%s", TO_EMPTY_LINE, qUtf8Printable(shownLine(text)));
    stands = !text.isEmpty();
}

void showNotice(const QString& text) {
    sayLine(text);
    if (isUnattended()) return;
    static QPointer<QMessageBox> open;  // until the user has seen it; what comes meanwhile is added
    if (open != nullptr) {
        open->setText(open->text() + "\n\n" + text);
        return;
    }
    open = new QMessageBox(QMessageBox::Warning, TITLE, text, QMessageBox::Ok, window);
    open->setTextFormat(Qt::PlainText);
    open->setAttribute(Qt::WA_DeleteOnClose);
    open->setModal(false);
    showWithParent(*open);
}

void showFatalNotice(const char* text) {
    if (QCoreApplication::instance() != nullptr && isUnattended()) {
        std::fprintf(stderr, "kelhpgl: %s\n", text);
    } else {
        MessageBoxA(nullptr, text, TITLE, MB_ICONHAND);
    }
}

}  // namespace qrvel
