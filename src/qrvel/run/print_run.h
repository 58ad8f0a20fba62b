// --print-to: every picture goes to a file instead of a window, and then the application ends. The pages of a drawing
// go into one PDF file, or into a PNG or SVG file each.
#pragma once

#include <memory>

#include "qrvel/base/own_texts.h"
#include "qrvel/base/print_choice.h"
#include "qrvel/base/run.h"
#include "qrvel/page/page_sink.h"
#include "system/file_ids.h"

namespace qrvel {

struct Options;

class PrintRun final : public Run, public PageSink {
  public:
    explicit PrintRun(const Options& options);
    ~PrintRun() override;

    bool prints() const override { return true; }
    int32_t status() const override { return failed_ || !ended_ ? 1 : 0; }
    void reading(const QByteArray& source) override;
    // False when the file that it would go to is one of the sources, or has been written already.
    bool begun(const QByteArray& source, const SourcePage& page) override;
    // Whether all pages of a source go into one file.
    bool keepsPagesTogether() const override;
    void failed() override { failed_ = true; }
    bool delivered(bool whole) override;
    bool isLost() override;
    void end() override;

    // The page itself or, where they are kept together, none before the last page, and then all.
    PrintedPages collect(std::unique_ptr<PrintedPage> page) override;
    std::size_t bytesKept() const override;
    QString refuse(const PageGoal& goal) override;
    void printed(const PrintedPages& pages, bool well) override;

  private:
    void sayWhy(OwnText reason);

    QByteArray pattern_;
    PrintChoice choice_;  // of what is printed next; its file name is that of the source begun last
    qsizetype sources_;
    qsizetype read_ = 0;
    kelsystem::FileIds written_;
    SourcePage page_;          // whose picture comes next, or came last
    PrintedPages pages_;       // before it that go into the same file
    bool incomplete_ = false;  // one of them is missing, so that file is not written
    bool failed_ = false;
    bool ended_ = false;
};

}  // namespace qrvel
