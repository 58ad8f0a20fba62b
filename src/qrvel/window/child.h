// The drawing child: a widget, placed by the viewer alone, whose pixels come from its output device.
#pragma once

#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <memory>

#include "handles.h"
#include "page_delivery.h"
#include "screen_surface.h"

namespace qrvel {

// First parameter of the mouse message.
inline constexpr uint32_t MOUSE_PRESS = 0;
inline constexpr uint32_t MOUSE_RELEASE = 1;
inline constexpr uint32_t MOUSE_DRAG = 2;

// Shows the surface, and turns the left button into mouse messages: a press, drags while it is held, a release. What
// breaks a drag off (Esc, a second button, the loss of the window or the keyboard, an action, the next picture) is a
// release where it began.
class ChildWidget : public QWidget {
  public:
    ChildWidget(QWidget* parent, WHandle handle);

    // The size in device pixels.
    QSize deviceSize() const;
    // Takes a new surface, or none; it must live until the next call.
    void setSurface(ScreenSurface* surface) { surface_ = surface; }
    // Ends a drag without a rectangle: a release where it began.
    void breakOff();
    // Makes the surface as large as the widget; what is drawn on it is then asked for again.
    void fitSurface();

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

struct Child : Object {
    static constexpr Kind KIND = Kind::Child;
    ~Child() override { delete widget; }

    QPointer<ChildWidget> widget;
    WHandle container = 0;
    // What the drawing goes to; null when there is nothing.
    OutputDevice* output() const { return page != nullptr ? page : surface.get(); }

    std::unique_ptr<ScreenSurface> surface;  // made by OUTstdcreate
    OutputDevice* page = nullptr;            // while it is there, it takes the surface's place
    std::unique_ptr<PrintedPage> printed;    // the page that is being printed, from OUTopendevice to OUTclosedevice
    QPoint mousePosition;                    // of the mouse message delivered last, device pixels, y upward
};

// Before anything that changes what a rectangle would mean.
void breakOffDrags();

}  // namespace qrvel
