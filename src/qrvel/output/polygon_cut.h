// Polygons cut to a rectangle, for painters that do not like what lies far outside.
#pragma once

#include <QPolygonF>
#include <QRectF>

namespace qrvel {

// Its area within the rectangle is that of the polygon. Empty when nothing of it is there.
QPolygonF cutToRectangle(QPolygonF polygon, const QRectF& kept);

}  // namespace qrvel
