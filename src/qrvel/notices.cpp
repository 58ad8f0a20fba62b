#include "notices.h"

#include <QMessageBox>
#include <QWindow>
#include <cstdio>

#include "application.h"
#include "shell.h"
#include "windows.h"

namespace qrvel {

namespace {

constexpr char TITLE[] = "KEL HPGL Display";

// Shows a box in front of its parent; when that is not to be seen yet, together with it.
void showWithParent(QMessageBox& box) {
    const QWidget* parent = box.parentWidget();
    if (parent == nullptr || parent->isVisible()) {
        box.show();
        return;
    }
    const auto show = [&box](bool visible) { box.setVisible(visible); };
    QObject::connect(parent->windowHandle(), &QWindow::visibleChanged, &box, show, Qt::QueuedConnection);
}

}  // namespace

void showNotice(const QString& text) {
    std::fprintf(stderr, "kelhpgl: %s\n", qUtf8Printable(text));
    if (isUnattended()) return;
    const auto* shell = handles().findFirst<Shell>([](const Shell&) { return true; });
    QWidget* parent = shell != nullptr ? shell->window : nullptr;
    auto* box = new QMessageBox(QMessageBox::Warning, TITLE, text, QMessageBox::Ok, parent);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    showWithParent(*box);
}

void showFatalNotice(const char* text) {
    if (QCoreApplication::instance() != nullptr && isUnattended()) {
        std::fprintf(stderr, "kelhpgl: %s\n", text);
    } else {
        MessageBoxA(nullptr, text, TITLE, MB_ICONHAND);
    }
}

}  // namespace qrvel
