// The names of the files that drawings are printed into.
#pragma once

#include <QByteArray>

namespace qrvel {

// The name of the file for a source: %n in the pattern is the source's name without folder and ending, %p the number of
// the page, %% a percent sign. oneOfSeveral: where no %p says which it is, the number stands before the ending.
QByteArray outputName(const QByteArray& pattern, const QByteArray& source, int page = 1, bool oneOfSeveral = false);

// Whether a pattern gives every source, and every page, a name of its own.
bool namesEach(const QByteArray& pattern);
bool namesPages(const QByteArray& pattern);

}  // namespace qrvel
