// Pages in the formats of files.
#pragma once

#include <QIODevice>
#include <span>

#include "qrvel/base/print_choice.h"
#include "qrvel/page/page.h"

namespace qrvel {

// Writes pages, one at least; a format that is not PDF takes the first alone. dpi is a PNG's. False when that is not
// possible; for errors of the device ask the device.
bool writePages(QIODevice& device, PageFormat format, int dpi, std::span<const Page* const> pages);

}  // namespace qrvel
