// The viewer's drawing window, made and painted as the viewer does it, on Qt's offscreen platform.
#pragma once

#include <QImage>

#include "picture.h"

class QWidget;

class Screen {
  public:
    Screen(int width, int height);

    // Makes the picture the one that is painted, whole.
    void show(const Picture& picture);
    // Another view of it, scaled plotter units.
    void view(int32_t minX, int32_t minY, int32_t maxX, int32_t maxY);

    // The whole of it, but for the clearing in front.
    void paint();
    // Clears, paints, and answers what is to be seen.
    QImage painted();
    QImage empty() const;

  private:
    int width_, height_;
    QWidget* widget_ = nullptr;  // the toolkit's
    ParseInt* parser_ = nullptr;
};
