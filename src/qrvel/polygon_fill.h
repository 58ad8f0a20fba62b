// Areas bounded by polygons, in the pixels of an image.
#pragma once

#include <QImage>
#include <QPolygonF>
#include <cstdint>
#include <vector>

namespace qrvel {

// Fills polygons as one area. Points are in the image's pixels, y from the top, and may lie anywhere: what is far
// outside is cut off first.
void fillPolygons(QImage& image, const std::vector<QPolygonF>& polygons, Qt::FillRule rule, bool smooth,
                  uint32_t colour);

}  // namespace qrvel
