// Shows a sheet of paper as it will be printed, with a shadow, in the middle of its room.
#pragma once

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace qrvel {

class PagePreview : public QWidget {
  public:
    // roomChanged is called when a sheet is shown and its room has changed, once the user has let go of the window's
    // edge.
    explicit PagePreview(std::function<void()> roomChanged);

    // In device pixels; one that is larger than its room is shown smaller. A null image: the sheet is being made.
    void showSheet(const QImage& sheet);

    // Device pixels that a sheet has room for.
    QSize room() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QImage sheet_;
    QTimer settled_;
};

}  // namespace qrvel
