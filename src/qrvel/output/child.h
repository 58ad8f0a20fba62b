// The drawing child: placed by the viewer alone, with pixels that come from its output device.
#pragma once

#include <QPoint>
#include <QPointer>
#include <QSize>
#include <memory>

#include "qrvel/base/objects.h"
#include "qrvel/output/screen_surface.h"

namespace qrvel {

// Its widget, as far as drawing is concerned.
class ChildView {
  public:
    ChildView() = default;
    ChildView(const ChildView&) = delete;
    ChildView& operator=(const ChildView&) = delete;
    virtual ~ChildView() = default;

    // Device pixels.
    virtual QSize deviceSize() const = 0;
    // Takes a new surface, or none; it must live until the next call.
    virtual void setSurface(ScreenSurface* surface) = 0;
    // Makes the surface as large as the widget; what is drawn on it is then asked for again.
    virtual void fitSurface() = 0;
};

struct Child : Object {
    static constexpr Kind KIND = Kind::Child;
    ~Child() override { delete widget; }

    WHandle messageClass() const override;
    QWidget* area() const override { return widget; }
    // Null when the widget has gone with its window.
    ChildView* view() const { return widget != nullptr ? shownBy : nullptr; }
    // What the drawing goes to; null when there is nothing.
    OutputDevice* output() const { return page != nullptr ? page : surface.get(); }

    QPointer<QWidget> widget;
    ChildView* shownBy = nullptr;  // the same widget
    WHandle container = 0;
    std::unique_ptr<ScreenSurface> surface;  // made by OUTstdcreate
    OutputDevice* page = nullptr;            // while it is there, it takes the surface's place
    uint32_t updates = 0;                    // how often a paint has been asked for
    QPoint pressPosition;                    // of the last press delivered
    QPoint mousePosition;                    // of the mouse message delivered last, device pixels, y upward
};

}  // namespace qrvel
