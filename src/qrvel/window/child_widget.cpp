#include "qrvel/window/child_widget.h"

#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"

namespace qrvel {

ChildWidget::ChildWidget(QWidget* parent, WHandle handle) : QWidget(parent), handle_(handle) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setAccessibleName(ownText(OwnText::Drawing));
    setGeometry(0, 0, 0, 0);
}

QSize ChildWidget::deviceSize() const {
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

void ChildWidget::fitSurface() {
    if (surface_ == nullptr || surface_->size() == deviceSize()) return;
    surface_->resize(deviceSize());
    if (application() != nullptr) application()->messages.postPaint(handle_);
}

void ChildWidget::resizeEvent(QResizeEvent* /*event*/) {
    fitSurface();
}

void ChildWidget::paintEvent(QPaintEvent* /*event*/) {
    // A window that has moved to a screen of another density has a surface of the old one: the picture must be
    // scaled anew.
    if (surface_ != nullptr && surface_->size() != deviceSize()) {
        fitSurface();
        const auto* child = handles().find<Child>(handle_);
        if (child != nullptr) postSizeOfContainer(child->container);
    }
    QPainter painter(this);
    if (surface_ == nullptr) {
        painter.fillRect(rect(), Qt::white);
        return;
    }
    const double ratio = devicePixelRatioF();
    painter.scale(1.0 / ratio, 1.0 / ratio);
    surface_->show(painter);
}

QPoint ChildWidget::devicePosition(const QMouseEvent& event) const {
    // Not the event's own position, which is whole logical pixels in a widget within the window.
    const QPointF position = mapFrom(window(), event.scenePosition()) * devicePixelRatioF();
    const auto fromTop = static_cast<int>(std::floor(position.y()));
    return {static_cast<int>(std::floor(position.x())), deviceSize().height() - 1 - fromTop};
}

void ChildWidget::post(uint32_t first, QPoint position) {
    if (application() != nullptr) application()->messages.postMouse(handle_, first, position);
}

void ChildWidget::breakOff() {
    if (!dragging_) return;
    dragging_ = false;
    post(W_MOUSE_RELEASE, start_);
}

void ChildWidget::mousePressEvent(QMouseEvent* event) {
    if (dragging_ || event->button() != Qt::LeftButton) {
        breakOff();
        return;
    }
    dragging_ = true;
    start_ = devicePosition(*event);
    post(W_MOUSE_PRESS, start_);
}

void ChildWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void ChildWidget::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::LeftButton)) breakOff();  // a menu has had the release
    if (dragging_) post(W_MOUSE_DRAG, devicePosition(*event));
}

void ChildWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (!dragging_ || event->button() != Qt::LeftButton) return;
    dragging_ = false;
    post(W_MOUSE_RELEASE, devicePosition(*event));
}

void ChildWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && dragging_) {
        breakOff();
    } else {
        QWidget::keyPressEvent(event);
    }
}

bool ChildWidget::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::UngrabMouse:
        case QEvent::FocusOut:
        case QEvent::WindowDeactivate:
        case QEvent::Hide:
            breakOff();
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

void breakOffDrags() {
    handles().forEach<Child>([](Child& child) {
        if (child.widget != nullptr) static_cast<ChildWidget*>(child.widget.data())->breakOff();
    });
}

void postAction(WHandle object, uint32_t kind, uint32_t id) {
    if (application() == nullptr) return;
    breakOffDrags();
    application()->messages.postAction(object, kind, id);
}

}  // namespace qrvel

using namespace qrvel;

WHandle Wcreatechild(WHandle app, WHandle container) {
    if (handles().find<Application>(app, __func__) == nullptr) return 0;
    const auto* parent = handles().find<Container>(container, __func__);
    if (parent == nullptr || parent->widget == nullptr) return 0;
    auto* child = handles().make<Child>();
    if (child == nullptr) return 0;
    auto* widget = new ChildWidget(parent->widget, child->handle);
    child->widget = widget;
    child->shownBy = widget;
    child->container = container;
    return child->handle;
}

void Wdestroychild(WHandle child) {
    handles().destroy<Child>(child, __func__);
}

int32_t Wsetwinpos(WHandle child, int32_t x, int32_t y, int32_t width, int32_t height) {
    const auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || found->widget == nullptr) return 0;
    const QSize before = found->widget->size();
    found->widget->setGeometry(x, y, width, height);
    found->widget->setVisible(true);
    found->view()->fitSurface();
    if (found->widget->size() != before && application() != nullptr) {
        postSizeOfContainer(found->container);
        application()->messages.postPaint(child);
    }
    return 1;
}

int32_t Wupdate(WHandle child, uint32_t /*flag*/) {
    if (handles().find<Child>(child, __func__) == nullptr || application() == nullptr) return 0;
    application()->messages.postPaint(child);
    return 1;
}

int32_t Wsetfocus(WHandle child) {
    const auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || found->widget == nullptr) return 0;
    found->widget->setFocus();
    return 1;
}

int32_t Wgetmousepos(WHandle child, int32_t* x, int32_t* y) {
    const auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr) return 0;
    *x = found->mousePosition.x();
    *y = found->mousePosition.y();
    return 1;
}
