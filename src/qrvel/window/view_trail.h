// The views of one picture, from the whole one to the one that is seen, as far as they can be known from outside: the
// viewer tells nobody what its zoom stack holds, so what it has been sent is followed here.
//
// Coordinates are pixels of the whole picture as the window showed it first, y upward, as fractions; those of strokes
// are pixels of the window as it is. A view is fitted into the window so that its upper right corner is the window's.
#pragma once

#include <QPoint>
#include <QPointF>
#include <QSize>
#include <QSizeF>
#include <optional>
#include <vector>

namespace qrvel {

struct ViewRect {
    double left = 0;
    double bottom = 0;
    double width = 0;
    double height = 0;
};

// A press and a release, as of one who drags a rectangle; they may lie outside of the window.
struct Stroke {
    QPoint press;
    QPoint release;
};

class ViewTrail {
  public:
    // Another picture, seen whole in a window with so many pixels to draw in.
    void begin(QSize window);
    void resize(QSize window);

    const ViewRect& whole() const { return whole_; }
    // What the window shows: the view, and what has room beside it.
    ViewRect seen() const { return seenAfter(0); }
    // What it showed before the last view was opened.
    ViewRect before() const { return seenAfter(1); }
    // How many views lie between the whole picture and that which is seen, that included.
    std::size_t depth() const { return views_.size(); }

    // What opens the second view, to the pixel, when the window shows the first; nothing where it is too small or too
    // far.
    std::optional<Stroke> stroke(const ViewRect& from, const ViewRect& to) const;

    // The viewer has taken a stroke, has gone back one view, or to the whole picture.
    void follow(const Stroke& stroke);
    void back();
    void backToWhole();

    // The stroke that undoes the last going back; none when there was none, or another view has been opened or the
    // window has another size since.
    std::optional<Stroke> forward() const;
    // The strokes that lead from the whole picture to the view.
    std::vector<Stroke> strokes() const;

  private:
    struct View {
        ViewRect rect;
        Stroke stroke;
    };

    ViewRect fitted(const ViewRect& view) const;
    // The one that is seen when so many more have been left.
    ViewRect seenAfter(std::size_t leaving) const;

    QSizeF window_;
    ViewRect whole_;
    std::vector<View> views_;
    std::vector<Stroke> undone_;  // the last one is the next to be done again
};

}  // namespace qrvel
