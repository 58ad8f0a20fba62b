// A page in pixels.
#pragma once

#include <QImage>

#include "qrvel/page/recording.h"

namespace qrvel {

// Pixels of the image of a paper, whose size is in millimetres. Invalid where there would be over 16384 x 16384 of
// them, or 32767 a side.
QSize imageSize(const QSizeF& paper, double pixelsPerMillimetre);

// pixelsPerMillimetre says how fine the image is. Lines are as wide as on paper, and one pixel at least. Null when
// there is no memory for it, or imageSize says that it is too large.
QImage drawImage(const Recording& recording, const SheetLayout& sheet, double pixelsPerMillimetre);

}  // namespace qrvel
