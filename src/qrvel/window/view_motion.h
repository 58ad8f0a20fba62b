// Moving about in a drawing: what wheel, keys and drags make of the view, sent to the viewer as strokes of the rubber
// band, so that its own arithmetic and its own stack of views decide.
//
// Steps that follow each other closely are one motion, and one view on the stack: the view of the step before is left
// again before the next is opened. While the viewer has not drawn the view yet, the last picture is shown where it
// would lie.
#pragma once

#include <QElapsedTimer>
#include <QPointF>
#include <QRectF>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <optional>

#include "qrvel/base/handles.h"
#include "qrvel/window/view_trail.h"

class QWidget;

namespace qrvel {

// One notch of the wheel, one press of a key.
inline constexpr double ZOOM_STEP = 1.25;
inline constexpr int PARTS = 10;

// Positions and distances: device pixels of the drawing, y upward.
class ViewMotion {
  public:
    // The drawing and its widget, which is asked to show itself anew.
    ViewMotion(WHandle child, QWidget& widget);

    // ---- what the user does ----
    // Makes everything so many times as large; what lies at that position stays there.
    void zoom(double factor, QPointF at);
    void zoomAtMiddle(double factor);
    // Moves everything; by parts of the window, of which it has so many on each axis.
    void move(QPointF by);
    void moveByParts(int right, int up);
    // What follows is another motion.
    void finish();
    void goForward();

    // ---- what the viewer has been told and has done ----
    void resized(QSize window);
    // The viewer has got another picture; it is to be seen as the one before.
    void began(bool keepView);
    // A view has been opened, or, when there is none in those pixels, not. Answers the stroke that must follow at once.
    std::optional<Stroke> stroked(const Stroke& stroke, bool opened);
    // An item of the menu (Command) has been delivered.
    void chosen(uint32_t item);
    void painted(std::chrono::milliseconds duration);

    // ---- what is seen ----
    // Where the picture that was drawn last lies in the window, y downward, until the next is there.
    std::optional<QRectF> placeOfPicture(QSize window) const;

  private:
    void measure(QSize window);  // device pixels of the widget
    bool hasPicture() const { return trail_.whole().width > 0; }

    const ViewRect& target();
    void aimAt(const ViewRect& view);
    void schedule();
    void send();
    void post(const Stroke& stroke) const;
    void forget();

    WHandle child_;
    QWidget& widget_;
    QSizeF window_{1, 1};
    ViewTrail trail_;
    ViewRect drawn_;                    // that the picture shows
    std::optional<ViewRect> target_;    // of the motion under way
    std::optional<ViewRect> taken_;     // the last of this motion's that the viewer has opened
    std::optional<double> leastWidth_;  // of views of this picture: one as small was not taken
    bool isOver_ = false;               // the motion is, when what is to be sent is delivered
    bool isDue_ = false;                // the target is to be sent
    bool isUnderWay_ = false;           // a stroke is
    bool awaitsPaint_ = false;          // its view has been opened and is not painted
    ViewRect sent_;
    QTimer sending_;
    QTimer rest_;
    QElapsedTimer sincePainted_;
    std::chrono::milliseconds painting_{0};  // that the last picture took
};

}  // namespace qrvel
