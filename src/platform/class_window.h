// One window of a registered class: a widget over an image that keeps what was drawn.
#pragma once

#include <QImage>
#include <QWidget>
#include <vector>

#include "platform/windows.h"

class ClassWindow : public QWidget {
  public:
    ClassWindow(WNDPROC procedure, int extraBytes);

    // The window with that handle, or null.
    static ClassWindow* find(HWND window);

    HWND handle() const;
    LRESULT call(UINT message, WPARAM wParam, LPARAM lParam);

    // Sets a word among the extra bytes; answers the one before, 0 outside of them.
    WORD setWord(int index, WORD value);

    // What is drawn here is shown by the next update().
    QImage& surface() { return surface_; }

    // Takes it off the screen, and away.
    void destroy();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    WNDPROC procedure_;
    std::vector<BYTE> extra_;
    QImage surface_;
};

// Calls the procedure of the message's window; 0 when it is for no window of a registered class.
LRESULT callWindowProcedure(const MSG& message);
