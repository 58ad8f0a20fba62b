#include "qrvel/output/outline_fill.h"

#include <QPainter>
#include <QPainterPath>

#include "qrvel/output/polygon_cut.h"

namespace qrvel {

namespace {

// How far outside outlines are cut, in pixels: wide enough that no border made by the cut is seen.
constexpr double MARGIN = 16.0;

}  // namespace

void fillOutlines(QImage& image, const QList<QPolygonF>& outlines, uint32_t colour) {
    const QRectF kept = QRectF(image.rect()).adjusted(-MARGIN, -MARGIN, MARGIN, MARGIN);
    QPainterPath area;
    area.setFillRule(Qt::WindingFill);
    for (const QPolygonF& outline : outlines) {
        const QPolygonF cut = cutToRectangle(outline, kept);
        if (cut.size() < 3) continue;
        area.addPolygon(cut);
        area.closeSubpath();
    }
    if (area.isEmpty()) return;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(area, QColor::fromRgb(colour));
}

}  // namespace qrvel
