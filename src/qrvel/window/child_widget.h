// The drawing child's widget.
#pragma once

#include <QWidget>

#include "qrvel/output/child.h"

namespace qrvel {

// Shows the surface, and turns the left button into mouse messages: a press, drags while it is held, a release. What
// breaks a drag off (Esc, a second button, the loss of the window or the keyboard, an action, the next picture) is a
// release where it began.
class ChildWidget : public QWidget, public ChildView {
  public:
    ChildWidget(QWidget* parent, WHandle handle);

    QSize deviceSize() const override;
    void setSurface(ScreenSurface* surface) override { surface_ = surface; }
    void fitSurface() override;
    // Ends a drag without a rectangle: a release where it began.
    void breakOff();

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QPoint devicePosition(const QMouseEvent& event) const;
    void post(uint32_t first, QPoint position);

    WHandle handle_;
    ScreenSurface* surface_ = nullptr;
    bool dragging_ = false;
    QPoint start_;  // of the drag, device pixels
};

// Before anything that changes what a rectangle would mean.
void breakOffDrags();

// Queues an action message for what the user has chosen, after the end of a drag.
void postAction(WHandle object, uint32_t kind, uint32_t id);

}  // namespace qrvel
