// A file that goes through the plotter, in a thread of its own: the window lives meanwhile.
//
// Life of one: it is made of a file's bytes and looks at them; if they are a plot, its pages can be written then, one
// at a time and as often as they are wanted.
#pragma once

#include <QObject>
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "plotter/plotter.h"
#include "qrvel/channel/spool.h"

namespace qrvel {

// What a file was found to be.
struct FileLook {
    bool isPlain = false;     // the viewer draws it as it is
    std::string foreignKind;  // what else it is, when it is not for plotters
    bool isPlot = false;      // something in it draws, or it is a plot without anything
    plotter::Survey survey;   // of what is neither plain nor foreign
};

class PlottedFile {
  public:
    // Called from the event loop, unless what it is about was broken off; it must not destroy the file.
    using Done = std::function<void()>;

    // The spool is finished.
    explicit PlottedFile(std::unique_ptr<Spool> file) : file_(std::move(file)) {}
    ~PlottedFile() { breakOff(); }
    PlottedFile(const PlottedFile&) = delete;
    PlottedFile& operator=(const PlottedFile&) = delete;

    // Each breaks off what is under way. asIs: it is to be drawn as it is, whether it is plain or not.
    void look(bool asIs, Done done);
    void writePage(std::size_t page, Done done);
    // Nothing is under way any more when it returns.
    void breakOff();

    // What the last look has found.
    const FileLook& found() const { return found_; }
    // The page that was written last; null when that failed.
    std::unique_ptr<Spool> takePage() { return std::move(page_); }
    // Why the last look or page came to nothing; empty when all went well.
    const QString& failure() const { return failure_; }
    // The bytes themselves, which are then gone from here.
    std::unique_ptr<Spool> takeFile();

    qint64 size() const { return file_ ? static_cast<qint64>(file_->bytes().size()) : 0; }
    // Of the pass under way, or of the last; at most the size.
    qint64 bytesDone() const { return bytesDone_; }

  private:
    void run(std::function<void()> work, Done done);
    void doLook(bool asIs);
    void doWritePage(std::size_t page);
    plotter::Watch watch();

    // Lives in the thread that is to hear of the end.
    class Home : public QObject {
      public:
        bool event(QEvent* event) override;
        Done done;
    };

    Home home_;
    std::unique_ptr<Spool> file_;
    std::unique_ptr<Spool> page_;
    FileLook found_;
    std::optional<plotter::PageWriter> writer_;  // of what was found in the file
    QString failure_;
    std::atomic<qint64> bytesDone_ = 0;
    std::atomic<bool> stop_ = false;
    std::thread thread_;  // joined before anything that it uses goes
};

}  // namespace qrvel
