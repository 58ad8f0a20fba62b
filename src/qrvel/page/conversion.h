// --print-to: every picture goes to a file instead of a window, and then the application ends. The pages of a drawing
// go into one PDF file, or into a PNG or SVG file each.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <memory>
#include <vector>

#include "file_ids.h"
#include "own_texts.h"
#include "print_choice.h"

namespace qrvel {

struct Options;
struct PrintedPage;

using PrintedPages = std::vector<std::unique_ptr<PrintedPage>>;

// A page of a source; first and last: of those that are printed.
struct SourcePage {
    int number = 1;
    bool first = true;
    bool last = true;
};

class Conversion {
  public:
    explicit Conversion(const Options& options);
    ~Conversion();
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    // What is to be printed next; its file name is that of the source begun last.
    const PrintChoice& choice() const { return choice_; }

    // A source is to be read.
    void reading(const QByteArray& source);
    // It has been, and the picture of that page comes next. False, with a line, when the file that it would go to is
    // one of the sources, or has been written already.
    bool begin(const QByteArray& source, const SourcePage& page = {});
    // Whether all pages of a source go into one file.
    bool keepsPagesTogether() const;
    // Takes a page that has been drawn, and answers those that are to be written now: itself or, where they are kept
    // together, none before the last page, and then all.
    PrintedPages collect(std::unique_ptr<PrintedPage> page);
    // What those that wait for the last one take.
    std::size_t bytesKept() const;

    // What became of the source: its file is written; nothing, which has been said; or nothing, which is said here.
    void written();
    void fail() { failed_ = true; }
    void notPrinted();
    // No source is left.
    void end();

    // With which the process ends.
    int32_t status() const { return failed_ || !ended_ ? 1 : 0; }

  private:
    void sayWhy(OwnText reason);

    QByteArray pattern_;
    PrintChoice choice_;
    qsizetype sources_;
    qsizetype read_ = 0;
    kelfiles::FileIds written_;
    SourcePage page_;          // whose picture comes next, or came last
    PrintedPages pages_;       // before it that go into the same file
    bool incomplete_ = false;  // one of them is missing, so that file is not written
    bool failed_ = false;
    bool ended_ = false;
};

// The name of the file for a source: %n in the pattern is the source's name without folder and ending, %p the number of
// the page, %% a percent sign. oneOfSeveral: where no %p says which it is, the number stands before the ending.
QByteArray outputName(const QByteArray& pattern, const QByteArray& source, int page = 1, bool oneOfSeveral = false);

// Whether a pattern gives every source, and every page, a name of its own.
bool namesEach(const QByteArray& pattern);
bool namesPages(const QByteArray& pattern);

// The one that runs, or null.
Conversion* conversion();

}  // namespace qrvel
