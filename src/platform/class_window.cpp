#include "platform/class_window.h"

#include <QCloseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <cstring>

#include "platform/message_pump.h"

ClassWindow::ClassWindow(WNDPROC procedure, int extraBytes)
    : procedure_(procedure), extra_(static_cast<size_t>(extraBytes)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_QuitOnClose, false);
}

ClassWindow* ClassWindow::find(HWND window) {
    return window != nullptr ? dynamic_cast<ClassWindow*>(QWidget::find(pump::numberOf(window))) : nullptr;
}

HWND ClassWindow::handle() const {
    return pump::handleOf(winId());
}

LRESULT ClassWindow::call(UINT message, WPARAM wParam, LPARAM lParam) {
    return procedure_(handle(), message, wParam, lParam);
}

WORD ClassWindow::setWord(int index, WORD value) {
    if (index < 0 || static_cast<size_t>(index) + sizeof value > extra_.size()) return 0;
    WORD before = 0;
    std::memcpy(&before, &extra_[static_cast<size_t>(index)], sizeof before);
    std::memcpy(&extra_[static_cast<size_t>(index)], &value, sizeof value);
    return before;
}

void ClassWindow::paintEvent(QPaintEvent* event) {
    QPainter(this).drawImage(event->rect(), surface_, event->rect());
}

// The surface only grows, so that a window made small and large again shows what it showed.
void ClassWindow::resizeEvent(QResizeEvent* /*event*/) {
    const QSize needed = surface_.size().expandedTo(size());
    if (needed == surface_.size()) return;
    QImage larger(needed, QImage::Format_RGB32);
    larger.fill(Qt::white);
    QPainter(&larger).drawImage(0, 0, surface_);
    surface_ = larger;
}

// Its procedure is called from the loop like every other.
void ClassWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    PostMessageA(handle(), WM_DESTROY, 0, 0);
}

void ClassWindow::destroy() {
    hide();
    deleteLater();
}

LRESULT callWindowProcedure(const MSG& message) {
    ClassWindow* window = ClassWindow::find(message.hwnd);
    if (window == nullptr) return 0;
    const LRESULT result = window->call(message.message, message.wParam, message.lParam);
    if (message.message == WM_DESTROY) window->destroy();
    return result;
}
