// The formats in which a page is written.
#pragma once

#include <QByteArrayView>
#include <QIODevice>

#include "print_choice.h"
#include "recording.h"

namespace qrvel {

// "pdf", "svg", "png": what a file's name ends with behind its last dot. Null and None for what is no format.
const char* endingOf(PageFormat format);
PageFormat formatOf(QByteArrayView fileName);

// Writes a page; dpi is a PNG's. False when that is not possible; for errors of the device ask the device.
bool writePage(QIODevice& device, PageFormat format, int dpi, const Recording& recording, const Sheet& sheet);

}  // namespace qrvel
