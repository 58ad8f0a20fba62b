// --print-to: every picture goes to a file of its own instead of a window, and then the application ends.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <optional>
#include <set>
#include <utility>

#include "own_texts.h"
#include "print_choice.h"

namespace qrvel {

struct Options;

class Conversion {
  public:
    explicit Conversion(const Options& options);

    // What is to be printed next; its file name is that of the source begun last.
    const PrintChoice& choice() const { return choice_; }

    // A source is to be read.
    void reading(const QByteArray& source);
    // It has been, and its picture comes next. False, with a line, when the file that it would go to is one of the
    // sources, or has been written already.
    bool begin(const QByteArray& source);

    // What became of the source: its file is written; nothing, which has been said; or nothing, which is said here.
    void written() { written_.insert(choice_.fileName); }
    void fail() { failed_ = true; }
    void notPrinted();
    // No source is left.
    void end();

    // With which the process ends.
    int32_t status() const { return failed_ || !ended_ ? 1 : 0; }

  private:
    using FileId = std::pair<uint64_t, uint64_t>;  // device and inode

    static std::optional<FileId> idOf(const QByteArray& file);
    bool isSource(const QByteArray& file) const;
    void sayWhy(OwnText reason);

    QByteArray pattern_;
    PrintChoice choice_;
    qsizetype sources_;
    qsizetype read_ = 0;
    std::set<FileId> sourceIds_;
    std::set<QByteArray> written_;
    bool failed_ = false;
    bool ended_ = false;
};

// The name of the file for a source: %n in the pattern is the source's name without folder and ending, %% a percent
// sign.
QByteArray outputName(const QByteArray& pattern, const QByteArray& source);

// Whether a pattern gives every source a name of its own.
bool namesEach(const QByteArray& pattern);

// The one that runs, or null.
Conversion* conversion();

}  // namespace qrvel
