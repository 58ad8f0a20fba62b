#include "placement.h"

namespace qrvel {

Placement place(const QRectF& drawn, const Sheet& sheet) {
    const QPointF margin(sheet.margin, sheet.margin);
    const QRectF area(0.0, 0.0, sheet.areaWidth, sheet.areaHeight);
    Placement placed{.paper = {sheet.width, sheet.height}, .origin = margin, .unit = sheet.unit};
    if (drawn.isNull()) return placed;
    if (sheet.fit) {
        placed.paper = drawn.size() * sheet.unit + QSizeF(2.0 * sheet.margin, 2.0 * sheet.margin);
        placed.origin = margin - drawn.topLeft() * sheet.unit;
    } else {
        placed.origin = margin + (area.center() - drawn.center()) * sheet.unit;
    }
    return placed;
}

}  // namespace qrvel
