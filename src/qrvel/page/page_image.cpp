#include "qrvel/page/page_image.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "qrvel/output/colours.h"
#include "qrvel/output/even_odd_fill.h"
#include "qrvel/output/pixel_area.h"
#include "qrvel/output/text_output.h"
#include "qrvel/output/thin_line.h"
#include "qrvel/output/wide_line.h"
#include "qrvel/page/placement.h"

namespace qrvel {

namespace {

constexpr qint64 MOST_PIXELS = qint64{16384} * 16384;  // 1 GiB
constexpr int MOST_A_SIDE = 32767;

PixelArea areaOf(QImage& image) {
    const auto stride = static_cast<std::ptrdiff_t>(image.bytesPerLine() / std::ptrdiff_t{sizeof(uint32_t)});
    return {.origin = reinterpret_cast<uint32_t*>(image.bits()) + (image.height() - 1) * stride,
            .stride = -stride,
            .width = image.width(),
            .height = image.height()};
}

class PixelDrawer {
  public:
    PixelDrawer(QImage& image, const Placement& placement, double pixelsPerMillimetre)
        : image_(image),
          area_(areaOf(image)),
          scale_(placement.unit * pixelsPerMillimetre),
          origin_(placement.origin * pixelsPerMillimetre),
          thinnest_(static_cast<int32_t>(std::lround(THINNEST_LINE * pixelsPerMillimetre))) {}

    void stroke(std::span<const PagePoint> points, int32_t width, uint32_t colour) {
        const int32_t pixels = std::max(thinnest_, length(width));
        OUTPoint from{};
        for (const PagePoint point : points) {
            const OUTPoint to = at(point);
            if (!point.begins()) {
                if (pixels > 1) {
                    drawWideLine(area_, from.x, from.y, to.x, to.y, pixels, colour);
                } else {
                    drawThinLine(area_, from.x, from.y, to.x, to.y, colour);
                }
            }
            from = to;
        }
    }

    void area(std::span<const PagePoint> points, uint32_t colour) {
        points_.clear();
        counts_.clear();
        for (const PagePoint point : points) {
            if (point.begins()) counts_.push_back(0);
            points_.push_back(at(point));
            ++counts_.back();
        }
        fill_.fill(area_, points_, counts_, colour);
    }

    void text(const PageText& text, uint32_t colour) {
        const double width = text.cellWidth * static_cast<double>(text.bytes.size());
        const TextBox box{.x = pixel(origin_.x() + text.x * scale_),
                          .y = pixel(origin_.y() + text.y * scale_),
                          .width = length(width),
                          .height = std::max(length(text.height), 1)};
        text_.draw(image_, area_, text.bytes, box, colour);
    }

    void cover(const QRectF& margin, double pixelsPerMillimetre) {
        const QRectF covered(margin.topLeft() * pixelsPerMillimetre, margin.size() * pixelsPerMillimetre);
        fillBox(area_, pixel(covered.left()), pixel(covered.top()), pixel(covered.right()) - 1,
                pixel(covered.bottom()) - 1, WHITE);
    }

  private:
    static int32_t pixel(double position) { return static_cast<int32_t>(std::floor(position)); }
    int32_t length(double units) const { return static_cast<int32_t>(std::lround(units * scale_)); }
    OUTPoint at(PagePoint point) const {
        // Cutting a number off is rounding down where it is not below 0.
        return {.x = static_cast<int32_t>(origin_.x() + point.x() * scale_ + ABOVE_0) - ABOVE_0,
                .y = static_cast<int32_t>(origin_.y() + point.y() * scale_ + ABOVE_0) - ABOVE_0};
    }

    static constexpr int32_t ABOVE_0 = 65536;  // pixels; no point lies so far outside of the image

    QImage& image_;
    PixelArea area_;
    double scale_;    // pixels a unit
    QPointF origin_;  // pixels
    int32_t thinnest_;
    EvenOddFill fill_;
    TextOutput text_;
    std::vector<OUTPoint> points_;
    std::vector<int32_t> counts_;
};

}  // namespace

QSize imageSize(const QSizeF& paper, double pixelsPerMillimetre) {
    const QSizeF pixels = paper * pixelsPerMillimetre;
    if (!(pixels.width() <= MOST_A_SIDE) || !(pixels.height() <= MOST_A_SIDE)) return {};
    const QSize size = pixels.toSize().expandedTo({1, 1});
    return qint64{size.width()} * size.height() <= MOST_PIXELS ? size : QSize();
}

QImage drawImage(const Recording& recording, const SheetLayout& sheet, double pixelsPerMillimetre) {
    const Placement placement = place(recording.bounds(), sheet);
    QImage image(imageSize(placement.paper, pixelsPerMillimetre), QImage::Format_RGB32);
    if (image.isNull()) return image;
    image.fill(Qt::white);
    PixelDrawer drawer(image, placement, pixelsPerMillimetre);
    recording.drawOn(drawer);
    if (recording.overflows()) {
        for (const QRectF& margin : placement.margins) {
            drawer.cover(margin, pixelsPerMillimetre);
        }
    }
    return image;
}

}  // namespace qrvel
