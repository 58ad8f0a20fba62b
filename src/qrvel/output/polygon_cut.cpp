#include "qrvel/output/polygon_cut.h"

#include <algorithm>

namespace qrvel {

namespace {

// One side of the rectangle that is kept: the points with sign * coordinate <= limit.
struct Side {
    bool vertical;
    double sign;
    double limit;

    double excess(QPointF point) const { return sign * (vertical ? point.x() : point.y()) - limit; }
};

QPolygonF cutAtSide(const QPolygonF& polygon, const Side& side) {
    QPolygonF kept;
    if (polygon.isEmpty()) return kept;
    QPointF from = polygon.back();
    double fromExcess = side.excess(from);
    for (const QPointF to : polygon) {
        const double toExcess = side.excess(to);
        if ((fromExcess > 0.0) != (toExcess > 0.0)) {
            kept += from + (to - from) * (fromExcess / (fromExcess - toExcess));
        }
        if (toExcess <= 0.0) kept += to;
        from = to;
        fromExcess = toExcess;
    }
    return kept;
}

}  // namespace

QPolygonF cutToRectangle(QPolygonF polygon, const QRectF& kept) {
    const bool inside = std::all_of(polygon.begin(), polygon.end(), [&](QPointF point) {
        return point.x() >= kept.left() && point.x() <= kept.right() && point.y() >= kept.top() &&
               point.y() <= kept.bottom();
    });
    if (inside) return polygon;
    const Side sides[] = {{.vertical = true, .sign = -1.0, .limit = -kept.left()},
                          {.vertical = true, .sign = 1.0, .limit = kept.right()},
                          {.vertical = false, .sign = -1.0, .limit = -kept.top()},
                          {.vertical = false, .sign = 1.0, .limit = kept.bottom()}};
    for (const Side& side : sides) {
        polygon = cutAtSide(polygon, side);
    }
    return polygon;
}

}  // namespace qrvel
