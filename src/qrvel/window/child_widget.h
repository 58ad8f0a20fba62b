// The drawing child's widget.
#pragma once

#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QWidget>
#include <functional>

#include "qrvel/output/child.h"
#include "qrvel/window/view_motion.h"

namespace qrvel {

// Shows the surface, and turns the left button into mouse messages: a press, drags while it is held, a release. What
// breaks a drag off (Esc, a second button, the loss of the window or the keyboard, an action, the next picture) is a
// release where it began, as is a click; a rectangle ends at the edge. Wheel, middle button, the left one while Space
// is held, and touchpads move the view.
class ChildWidget : public QWidget, public ChildView {
  public:
    ChildWidget(QWidget* parent, WHandle handle);

    QSize deviceSize() const override;
    void setSurface(ScreenSurface* surface) override { surface_ = surface; }
    void fitSurface() override;
    // Ends a drag without a rectangle: a release where it began; and a motion of the view where it is.
    void breakOff();
    ViewMotion& view() { return view_; }
    // Whether there is no drawing, and the user is told how to get one.
    void invite(bool invited);

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

  private:
    enum class Drag { None, Rectangle, View };

    QPointF onDevice(QPointF position) const;
    QPointF exactPosition(const QMouseEvent& event) const;
    QPoint devicePosition(const QMouseEvent& event) const;
    void post(uint32_t first, QPoint position);
    void holdSpace(bool held);
    void paintInvitation(QPainter& painter) const;
    bool takeGesture(const QNativeGestureEvent& gesture);

    WHandle handle_;
    ScreenSurface* surface_ = nullptr;
    Drag drag_ = Drag::None;
    Qt::MouseButton button_ = Qt::NoButton;  // that drags
    QPoint start_;                           // of the rectangle, device pixels
    QPointF last_;                           // of the view's drag
    bool spaceIsHeld_ = false;
    bool isInvited_ = false;
    bool hasBrokenOff_ = false;  // by the last press of a button, which then means nothing else
    ViewMotion view_;
};

// Before anything that changes what a rectangle would mean.
void breakOffDrags();

// The view of a drawing child; null when its window has gone.
ViewMotion* viewOf(const Child& child);
void moveViews(const std::function<void(ViewMotion&)>& move);

// Queues an action message for what the user has chosen, after the end of a drag.
void postAction(WHandle object, uint32_t kind, uint32_t id);

}  // namespace qrvel
