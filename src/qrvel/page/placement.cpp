#include "qrvel/page/placement.h"

namespace qrvel {

namespace {

std::array<QRectF, 4> marginsOf(const QSizeF& paper, double width) {
    const QRectF all(QPointF(), paper);
    const QRectF inside = all.adjusted(width, width, -width, -width);
    return {QRectF(all.topLeft(), QPointF(inside.left(), all.bottom())),
            QRectF(QPointF(inside.right(), all.top()), all.bottomRight()),
            QRectF(QPointF(inside.left(), all.top()), inside.topRight()),
            QRectF(inside.bottomLeft(), QPointF(inside.right(), all.bottom()))};
}

}  // namespace

Placement place(const std::optional<QRectF>& drawn, const SheetLayout& sheet) {
    const QPointF margin(sheet.margin, sheet.margin);
    const QRectF area(0.0, 0.0, sheet.areaWidth, sheet.areaHeight);
    Placement placed{.paper = {sheet.width, sheet.height}, .origin = margin, .unit = sheet.unit, .margins = {}};
    if (!drawn) {
        // There is nothing to be moved.
    } else if (sheet.fit) {
        placed.paper = drawn->size() * sheet.unit + QSizeF(2.0 * sheet.margin, 2.0 * sheet.margin);
        placed.origin = margin - drawn->topLeft() * sheet.unit;
    } else {
        placed.origin = margin + (area.center() - drawn->center()) * sheet.unit;
    }
    placed.margins = marginsOf(placed.paper, sheet.margin - sheet.bleed);
    return placed;
}

}  // namespace qrvel
