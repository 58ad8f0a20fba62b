#include "qrvel/run/app_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace qrvel {

namespace {

// A sheet of paper with a curve, and the pen at the curve's end; drawn on a field of 64 x 64.
void drawIcon(QPainter& painter) {
    painter.setPen(QPen(QColor(0x60, 0x60, 0x60), 2));
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(6, 4, 52, 56), 4, 4);

    QPainterPath curve(QPointF(13, 50));
    curve.cubicTo(QPointF(20, 6), QPointF(30, 68), QPointF(42, 26));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0x10, 0x50, 0xC0), 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(curve);

    painter.setPen(QPen(QColor(0x90, 0x10, 0x10), 1.5));
    painter.setBrush(QColor(0xE0, 0x30, 0x20));
    painter.drawPolygon(QPolygonF({{42, 26}, {44, 17}, {53, 8}, {59, 14}, {50, 23}}));
}

}  // namespace

QIcon makeAppIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(size / 64.0, size / 64.0);
        drawIcon(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace qrvel
