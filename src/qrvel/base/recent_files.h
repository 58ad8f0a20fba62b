// The files that were shown last, kept for the next start in the user's state folder.
#pragma once

#include <QByteArray>
#include <vector>

namespace qrvel {

inline constexpr std::size_t MOST_RECENT_FILES = 10;

// The last one first, with whole paths.
std::vector<QByteArray> recentFiles();

// That file has been shown. What cannot be kept is not; nothing is said.
void keepRecentFile(const QByteArray& file);

}  // namespace qrvel
