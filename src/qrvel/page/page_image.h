// A page in pixels.
#pragma once

#include <QImage>

#include "recording.h"

namespace qrvel {

// pixelsPerMillimetre says how fine the image is. Lines are as wide as on paper, and one pixel at least. Null when
// there is no memory for it, or it would have over 16384 x 16384 pixels, or 32767 a side.
QImage drawImage(const Recording& recording, const Sheet& sheet, double pixelsPerMillimetre);

}  // namespace qrvel
