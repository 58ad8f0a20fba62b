#include "qrvel/window/page_preview.h"

#include <QPainter>
#include <chrono>
#include <utility>

#include "qrvel/base/own_texts.h"

namespace qrvel {

namespace {

constexpr QSize LEAST_SIZE(380, 340);  // logical pixels
constexpr int SHADOW = 4;              // logical pixels that it is aside
constexpr auto SETTLED = std::chrono::milliseconds(150);

// The same in light and dark themes, as paper is.
constexpr QColor SHADE(0, 0, 0, 70);
constexpr QColor EDGE(128, 128, 128);

// Within the room, which begins at (0, 0).
QRect placeOf(QSize sheet, QSize room) {
    const bool fits = sheet.width() <= room.width() && sheet.height() <= room.height();
    const QSize size = fits ? sheet : sheet.scaled(room, Qt::KeepAspectRatio);
    return {QPoint((room.width() - size.width()) / 2, (room.height() - size.height()) / 2), size};
}

}  // namespace

PagePreview::PagePreview(std::function<void()> roomChanged) {
    setMinimumSize(LEAST_SIZE);
    setAccessibleName(ownText(OwnText::PrintPreview));
    settled_.setSingleShot(true);
    settled_.setInterval(SETTLED);
    connect(&settled_, &QTimer::timeout, this, std::move(roomChanged));
}

void PagePreview::showSheet(const QImage& sheet) {
    sheet_ = sheet;
    sheet_.setDevicePixelRatio(1.0);
    update();
}

QSize PagePreview::room() const {
    return (size() - QSize(SHADOW, SHADOW)) * devicePixelRatioF();
}

void PagePreview::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (sheet_.isNull()) {
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, ownText(OwnText::PrintPreparing));
        return;
    }
    const double ratio = devicePixelRatioF();
    painter.scale(1.0 / ratio, 1.0 / ratio);  // the sheet's pixels are the device's
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect place = placeOf(sheet_.size(), room());
    const int aside = qRound(SHADOW * ratio);
    painter.fillRect(place.translated(aside, aside), SHADE);
    painter.fillRect(place, Qt::white);
    painter.drawImage(place, sheet_);
    painter.setPen(EDGE);
    painter.drawRect(place.adjusted(0, 0, -1, -1));
}

void PagePreview::resizeEvent(QResizeEvent* /*event*/) {
    if (!sheet_.isNull()) settled_.start();
}

}  // namespace qrvel
