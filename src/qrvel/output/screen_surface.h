// The output device of a window: the drawing goes to one image, and the widget shows another, which is brought up to
// date when the drawing ends, or while it is going on for so long that one would wonder.
#pragma once

#include <QImage>
#include <chrono>
#include <functional>
#include <vector>

#include "qrvel/output/even_odd_fill.h"
#include "qrvel/output/output_device.h"
#include "qrvel/output/pixel_area.h"
#include "qrvel/output/text_output.h"

class QPainter;

namespace qrvel {

class ScreenSurface final : public OutputDevice {
  public:
    // How the widget is asked to show the surface again: soon, or at once. Answers whether to go on drawing.
    enum class Refresh { Soon, AtOnce };
    using Refresher = std::function<bool(Refresh)>;

    explicit ScreenSurface(Refresher refresher);

    // Takes another size; what is shown stays at the upper left until the next picture.
    void resize(QSize size);
    void setBackground(uint32_t index) { background_ = index; }
    // Fills what is being drawn with the background; what is shown stays.
    void clear();
    // Puts what is to be seen, one unit of the painter a device pixel.
    void show(QPainter& painter) const;
    void dropTrackBoxes();
    // What is shown stays until the next drawing has ended, and not only until a part of it is there.
    void keepShown() { keepsShown_ = true; }
    // What was shown last, without track boxes.
    const QImage& shown() const { return shown_; }
    // Whether a drawing has been ended since the size was set.
    bool isComplete() const { return complete_; }

    QSize size() const override { return drawn_.size(); }
    void reset() override;
    void endPaint() override;
    void line(OUTPoint from, OUTPoint to) override;
    void wideLine(std::span<const OUTPoint> points, int32_t width) override;
    void outline(const PixelBox& box) override;
    void fill(const PixelBox& box) override;
    void polygons(std::span<const OUTPoint> points, std::span<const int32_t> counts) override;
    void text(OUTPoint baseline, std::string_view bytes) override;
    void trackBox(const PixelBox& box) override;

  private:
    using Clock = std::chrono::steady_clock;

    // Counts the work of one call, in the time of a short thin line; now and then looks at the clock.
    void count(int32_t work) {
        changed_ = true;
        workLeft_ -= work;
        if (workLeft_ < 0) [[unlikely]] {
            showProgress();
        }
    }
    void showProgress();
    void bringUpToDate();
    double fromTop(int64_t y) const { return area_.height - 1 - static_cast<double>(y); }

    Refresher refresher_;
    QImage drawn_;
    QImage shown_;
    PixelArea area_;  // the pixels of drawn_
    EvenOddFill polygons_;
    TextOutput text_;
    std::vector<PixelBox> trackBoxes_;
    uint32_t background_ = 0;
    bool changed_ = false;
    bool keepsShown_ = false;
    bool complete_ = false;
    int32_t workLeft_ = 0;
    Clock::time_point nextProgress_;
};

}  // namespace qrvel
