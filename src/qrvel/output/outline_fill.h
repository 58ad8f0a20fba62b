// Smooth areas bounded by outlines, in the pixels of an image: letters.
#pragma once

#include <QImage>
#include <QList>
#include <QPolygonF>
#include <cstdint>

namespace qrvel {

// Fills outlines as one area (where they wind around a pixel), smoothed at its border. Points are in the image's
// pixels, y from the top, and may lie anywhere: what is far outside is cut off first.
void fillOutlines(QImage& image, const QList<QPolygonF>& outlines, uint32_t colour);

}  // namespace qrvel
