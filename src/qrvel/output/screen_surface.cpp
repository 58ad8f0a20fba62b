#include "qrvel/output/screen_surface.h"

#include <QPainter>
#include <algorithm>
#include <cstring>
#include <utility>

#include "qrvel/output/thin_line.h"
#include "qrvel/output/wide_line.h"

namespace qrvel {

namespace {

constexpr auto PROGRESS_INTERVAL = std::chrono::milliseconds(100);

// Work between two looks at the clock, in thin lines, and what other calls cost in that measure.
constexpr int32_t WORK_BETWEEN_LOOKS = 10000;
constexpr int32_t LINE_WORK = 1;
constexpr int32_t WIDE_LINE_WORK = 20;
constexpr int32_t BOX_WORK = 50;
constexpr int32_t POLYGON_WORK = 200;
constexpr int32_t CHARACTER_WORK = 5;

QImage blank(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    if (!image.isNull()) image.fill(Qt::white);
    return image;
}

// One pixel wide and one more to the right and below, like every outline. Sides are filled: QPainter's own outline
// leaves out a corner when two sides that do not meet there are outside.
void paintOutline(QPainter& painter, const QRectF& box, const QBrush& brush) {
    painter.fillRect(QRectF(box.left(), box.top(), box.width() + 1, 1), brush);
    painter.fillRect(QRectF(box.left(), box.bottom(), box.width() + 1, 1), brush);
    painter.fillRect(QRectF(box.left(), box.top(), 1, box.height() + 1), brush);
    painter.fillRect(QRectF(box.right(), box.top(), 1, box.height() + 1), brush);
}

// Stripes of black and white across, so that a line of it is seen on every colour.
QBrush stripes() {
    constexpr int WIDTH = 4;
    QImage tile(2 * WIDTH, 2 * WIDTH, QImage::Format_RGB32);
    for (int y = 0; y < tile.height(); ++y) {
        for (int x = 0; x < tile.width(); ++x) {
            tile.setPixel(x, y, (x + y) / WIDTH % 2 == 0 ? BLACK : WHITE);
        }
    }
    return QBrush(tile);
}

}  // namespace

ScreenSurface::ScreenSurface(Refresher refresher) : refresher_(std::move(refresher)) {
    OutputDevice::reset();
}

void ScreenSurface::resize(QSize size) {
    QImage shown = blank(size);
    if (!shown_.isNull() && !shown.isNull()) QPainter(&shown).drawImage(0, 0, shown_);
    shown_ = shown;
    drawn_ = blank(size);
    area_ = {};
    if (!drawn_.isNull() && !shown_.isNull()) {  // else there is nothing to draw into, or no memory for it
        const auto stride = static_cast<std::ptrdiff_t>(drawn_.bytesPerLine() / std::ptrdiff_t{sizeof(uint32_t)});
        area_ = {.origin = reinterpret_cast<uint32_t*>(drawn_.bits()) + (size.height() - 1) * stride,
                 .stride = -stride,
                 .width = size.width(),
                 .height = size.height()};
    }
    complete_ = false;
}

void ScreenSurface::clear() {
    fillBox(area_, 0, 0, area_.width - 1, area_.height - 1, hasColours() ? colourAt(background_) : WHITE);
    changed_ = true;
}

void ScreenSurface::show(QPainter& painter) const {
    painter.drawImage(0, 0, shown_);
    for (const PixelBox& box : trackBoxes_) {
        paintOutline(painter,
                     QRectF(static_cast<double>(box.x), fromTop(box.y + box.height), static_cast<double>(box.width),
                            static_cast<double>(box.height)),
                     stripes());
    }
}

void ScreenSurface::dropTrackBoxes() {
    if (trackBoxes_.empty()) return;
    trackBoxes_.clear();
    refresher_(Refresh::Soon);
}

void ScreenSurface::bringUpToDate() {
    if (std::exchange(changed_, false) && !drawn_.isNull()) {
        std::memcpy(shown_.bits(), drawn_.constBits(), static_cast<std::size_t>(drawn_.sizeInBytes()));
    }
}

void ScreenSurface::showProgress() {
    workLeft_ = WORK_BETWEEN_LOOKS;
    if (Clock::now() < nextProgress_) return;
    if (!keepsShown_) bringUpToDate();
    if (!refresher_(Refresh::AtOnce)) area_ = {};  // nobody will see the rest: what has no room costs nothing
    nextProgress_ = Clock::now() + PROGRESS_INTERVAL;
}

void ScreenSurface::reset() {
    OutputDevice::reset();
    workLeft_ = WORK_BETWEEN_LOOKS;
    nextProgress_ = Clock::now() + PROGRESS_INTERVAL;
}

void ScreenSurface::endPaint() {
    keepsShown_ = false;
    bringUpToDate();
    complete_ = true;
    refresher_(Refresh::Soon);
}

void ScreenSurface::line(OUTPoint from, OUTPoint to) {
    drawThinLine(area_, from.x, from.y, to.x, to.y, attributes.lineColour);
    count(LINE_WORK);
}

void ScreenSurface::wideLine(std::span<const OUTPoint> points, int32_t width) {
    OUTPoint from = points.front();
    const auto others = points.size() > 1 ? points.subspan(1) : points;
    for (const OUTPoint to : others) {
        drawWideLine(area_, from.x, from.y, to.x, to.y, width, attributes.lineColour);
        from = to;
        count(WIDE_LINE_WORK);
    }
}

void ScreenSurface::outline(const PixelBox& box) {
    const int64_t right = box.x + box.width;
    const int64_t top = box.y + box.height;
    fillBox(area_, box.x, box.y, right, box.y, attributes.lineColour);
    fillBox(area_, box.x, top, right, top, attributes.lineColour);
    fillBox(area_, box.x, box.y, box.x, top, attributes.lineColour);
    fillBox(area_, right, box.y, right, top, attributes.lineColour);
    count(BOX_WORK);
}

void ScreenSurface::fill(const PixelBox& box) {
    fillBox(area_, box.x, box.y, box.x + box.width - 1, box.y + box.height - 1, attributes.fillColour);
    count(BOX_WORK);
}

void ScreenSurface::polygons(std::span<const OUTPoint> points, std::span<const int32_t> counts) {
    polygons_.fill(area_, points, counts, attributes.fillColour);
    count(POLYGON_WORK * static_cast<int32_t>(counts.size()) + static_cast<int32_t>(points.size()));
}

void ScreenSurface::text(OUTPoint baseline, std::string_view bytes) {
    const TextBox box{.x = baseline.x, .y = baseline.y, .width = attributes.textWidth, .height = attributes.textHeight};
    if (!drawn_.isNull()) text_.draw(drawn_, area_, bytes, box, attributes.lineColour);
    count(CHARACTER_WORK * static_cast<int32_t>(std::min<std::size_t>(bytes.size(), WORK_BETWEEN_LOOKS)));
}

void ScreenSurface::trackBox(const PixelBox& box) {
    const auto known = std::find(trackBoxes_.begin(), trackBoxes_.end(), box);
    if (known != trackBoxes_.end()) {
        trackBoxes_.erase(known);
    } else {
        trackBoxes_.push_back(box);
    }
}

}  // namespace qrvel
