// Which file comes before or behind another one.
#pragma once

#include <QByteArray>
#include <vector>

namespace qrvel {

// The file so many further on, or back: among those that were named or, where fewer than two were, among the plots of
// the file's folder, by name. Empty where there is none.
QByteArray neighbourOf(const QByteArray& file, const std::vector<QByteArray>& named, int by);

}  // namespace qrvel
