// The formats in which a page is written.
#pragma once

#include <QByteArrayView>
#include <QIODevice>
#include <span>

#include "page.h"
#include "print_choice.h"

namespace qrvel {

// "pdf", "svg", "png": what a file's name ends with behind its last dot. Null and None for what is no format.
const char* endingOf(PageFormat format);
PageFormat formatOf(QByteArrayView fileName);

// Writes pages, one at least; a format that is not PDF takes the first alone. dpi is a PNG's. False when that is not
// possible; for errors of the device ask the device.
bool writePages(QIODevice& device, PageFormat format, int dpi, std::span<const Page* const> pages);

}  // namespace qrvel
