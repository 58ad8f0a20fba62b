#include "qrvel/window/child_widget.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/window/accelerators.h"
#include "qrvel/window/commands.h"
#include "qrvel/window/context_menu.h"
#include "qrvel/window/load_panel.h"

namespace qrvel {

namespace {

constexpr double CLICK = 4;  // logical pixels: a rectangle that is smaller on both axes was none

// What a key makes of the view; these keys mean something else in menus, so that the drawing alone takes them.
struct ViewKey {
    Qt::Key key;
    void (*move)(ViewMotion& view);
};

void zoomIn(ViewMotion& view) {
    view.zoomAtMiddle(ZOOM_STEP);
}
void zoomOut(ViewMotion& view) {
    view.zoomAtMiddle(1 / ZOOM_STEP);
}
void goLeft(ViewMotion& view) {
    view.moveByParts(1, 0);
}
void goRight(ViewMotion& view) {
    view.moveByParts(-1, 0);
}
void goUp(ViewMotion& view) {
    view.moveByParts(0, -1);
}
void goDown(ViewMotion& view) {
    view.moveByParts(0, 1);
}

constexpr ViewKey VIEW_KEYS[] = {
    {Qt::Key_Plus, zoomIn}, {Qt::Key_Equal, zoomIn},  {Qt::Key_Minus, zoomOut},  //
    {Qt::Key_Left, goLeft}, {Qt::Key_Right, goRight}, {Qt::Key_Up, goUp},       {Qt::Key_Down, goDown},
    {Qt::Key_H, goLeft},    {Qt::Key_L, goRight},     {Qt::Key_K, goUp},        {Qt::Key_J, goDown},
};

bool moveByKey(ViewMotion& view, const QKeyEvent& event) {
    constexpr Qt::KeyboardModifiers PASSED_OVER = Qt::ShiftModifier | Qt::KeypadModifier;  // a plus may need Shift
    if ((event.modifiers() & ~PASSED_OVER) != Qt::NoModifier) return false;
    for (const ViewKey& row : VIEW_KEYS) {
        if (row.key == event.key()) return row.move(view), true;
    }
    return false;
}

}  // namespace

ChildWidget::ChildWidget(QWidget* parent, WHandle handle) : QWidget(parent), handle_(handle), view_(handle, *this) {
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
    view_.resized(deviceSize());
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
    if (const std::optional<QRectF> place = view_.placeOfPicture(deviceSize())) {
        painter.fillRect(QRect(QPoint(), deviceSize()), Qt::white);
        painter.drawImage(*place, surface_->shown());
    } else {
        surface_->show(painter);
    }
    if (isInvited_) paintInvitation(painter);
}

void ChildWidget::paintInvitation(QPainter& painter) const {
    painter.resetTransform();
    painter.setPen(Qt::darkGray);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                     ownText(OwnText::DropHere).arg(acceleratorText(OPEN_FILE)));
}

void ChildWidget::invite(bool invited) {
    if (std::exchange(isInvited_, invited) != invited) update();
}

// Device pixels, y upward.
QPointF ChildWidget::onDevice(QPointF position) const {
    position *= devicePixelRatioF();
    return {position.x(), deviceSize().height() - position.y()};
}

// Not the event's own position, which is whole logical pixels in a widget within the window.
QPointF ChildWidget::exactPosition(const QMouseEvent& event) const {
    return onDevice(mapFrom(window(), event.scenePosition()));
}

// The pixel that the mouse is over, or the next one in the window.
QPoint ChildWidget::devicePosition(const QMouseEvent& event) const {
    const QPointF position = exactPosition(event);
    const QSize size = deviceSize();
    return {std::clamp(static_cast<int>(std::floor(position.x())), 0, std::max(size.width() - 1, 0)),
            std::clamp(static_cast<int>(std::ceil(position.y())) - 1, 0, std::max(size.height() - 1, 0))};
}

void ChildWidget::post(uint32_t first, QPoint position) {
    if (application() != nullptr) application()->messages.postMouse(handle_, first, position);
}

void ChildWidget::breakOff() {
    const Drag drag = std::exchange(drag_, Drag::None);
    if (drag == Drag::Rectangle) post(W_MOUSE_RELEASE, start_);
    if (drag == Drag::View) holdSpace(spaceIsHeld_);  // and the cursor that goes with it
    view_.finish();
}

void ChildWidget::mousePressEvent(QMouseEvent* event) {
    const bool isLeft = event->button() == Qt::LeftButton;
    hasBrokenOff_ = drag_ != Drag::None;
    if (drag_ != Drag::None || (!isLeft && event->button() != Qt::MiddleButton)) {
        breakOff();
        return;
    }
    button_ = event->button();
    view_.finish();
    if (isLeft && !spaceIsHeld_) {
        drag_ = Drag::Rectangle;
        start_ = devicePosition(*event);
        post(W_MOUSE_PRESS, start_);
    } else {
        drag_ = Drag::View;
        last_ = exactPosition(*event);
        setCursor(Qt::ClosedHandCursor);
    }
}

void ChildWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void ChildWidget::mouseMoveEvent(QMouseEvent* event) {
    if (drag_ != Drag::None && !event->buttons().testFlag(button_)) breakOff();  // a menu has had the release
    if (drag_ == Drag::Rectangle) {
        post(W_MOUSE_DRAG, devicePosition(*event));
    } else if (drag_ == Drag::View) {
        const QPointF position = exactPosition(*event);
        view_.move(position - std::exchange(last_, position));
    }
}

void ChildWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (drag_ == Drag::None || event->button() != button_) return;
    if (std::exchange(drag_, Drag::None) == Drag::View) {
        holdSpace(spaceIsHeld_);
        view_.finish();
        return;
    }
    const QPoint end = devicePosition(*event);
    const QPointF size = QPointF(end - start_) / devicePixelRatioF();
    const bool isClick = std::abs(size.x()) < CLICK && std::abs(size.y()) < CLICK;
    post(W_MOUSE_RELEASE, isClick ? start_ : end);
}

// A notch is 120 units of the wheel's; what feels finely says pixels.
void ChildWidget::wheelEvent(QWheelEvent* event) {
    constexpr double NOTCH = 120;
    const bool isZoom = (event->modifiers() & Qt::ShiftModifier) == 0;
    const bool isTouchpad = event->device()->type() == QInputDevice::DeviceType::TouchPad;
    const double ratio = devicePixelRatioF();
    if (isTouchpad && !event->pixelDelta().isNull() && !event->modifiers().testFlag(Qt::ControlModifier)) {
        view_.move(QPointF(event->pixelDelta().x(), -event->pixelDelta().y()) * ratio);
    } else if (isZoom && event->angleDelta().y() != 0) {
        view_.zoom(std::pow(ZOOM_STEP, event->angleDelta().y() / NOTCH), onDevice(event->position()));
    } else {
        const double notches = (event->angleDelta().x() + event->angleDelta().y()) / NOTCH;
        view_.move(QPointF(notches * deviceSize().width() / PARTS, 0));
    }
}

void ChildWidget::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Mouse && std::exchange(hasBrokenOff_, false)) return;
    showContextMenu(*this, event->globalPos());
}

bool ChildWidget::takeGesture(const QNativeGestureEvent& gesture) {
    if (gesture.gestureType() != Qt::ZoomNativeGesture) return false;
    view_.zoom(std::max(1 + gesture.value(), 0.1), onDevice(gesture.position()));
    return true;
}

void ChildWidget::holdSpace(bool held) {
    spaceIsHeld_ = held;
    setCursor(held ? Qt::OpenHandCursor : Qt::CrossCursor);
}

void ChildWidget::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && drag_ != Drag::None) {
        breakOff();
    } else if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (!giveUpLoading()) QWidget::keyPressEvent(event);
    } else if (event->key() == Qt::Key_Space) {
        if (!event->isAutoRepeat()) holdSpace(true);
    } else if (!moveByKey(view_, *event)) {
        QWidget::keyPressEvent(event);
    }
}

void ChildWidget::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) {
        if (!event->isAutoRepeat()) holdSpace(false);
    } else {
        QWidget::keyReleaseEvent(event);
    }
}

bool ChildWidget::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::UngrabMouse:
        case QEvent::FocusOut:
        case QEvent::WindowDeactivate:
        case QEvent::Hide:
            breakOff();
            holdSpace(false);
            break;
        case QEvent::NativeGesture:
            return takeGesture(*static_cast<QNativeGestureEvent*>(event)) || QWidget::event(event);
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

ViewMotion* viewOf(const Child& child) {
    return child.widget != nullptr ? &static_cast<ChildWidget*>(child.widget.data())->view() : nullptr;
}

void moveViews(const std::function<void(ViewMotion&)>& move) {
    handles().forEach<Child>([&](Child& child) {
        if (ViewMotion* view = viewOf(child)) move(*view);
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
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || application() == nullptr) return 0;
    ++found->updates;
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
