// A file that was named, or standard input: a picture, or several pages of which one at a time is the picture.
//
// Its bytes go through the plotter, unless they are plain. One of several pages stays until another's picture takes its
// place, so that the user can turn to the others; where files are printed, it goes through them by itself.
#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

#include "qrvel/channel/plotted_file.h"
#include "qrvel/channel/source_reader.h"
#include "qrvel/channel/speaker.h"

namespace qrvel {

class DataChannel;

// How a file is taken.
struct FileManner {
    bool asIs = false;   // as its bytes are, without the plotter
    int page = 0;        // the page that is wanted, from 1; 0: the first or, where files are printed, all of them
    bool again = false;  // it was shown before; when there is no such page any more, the last will do
};

class FileSource final : public Speaker {
  public:
    // name: a file's, whatever its bytes are, or "-" for standard input. mayBeEmpty: a pipe that was found rather than
    // named; when nothing comes, there was none.
    FileSource(DataChannel& channel, QByteArray name, FileManner manner, bool mayBeEmpty = false);

    void takeTurn() override;
    void giveUp() override;
    qint64 bytesDone() const override;
    qint64 bytesInAll() const override;
    QByteArray fileName() const override { return name_ == STANDARD_INPUT ? QByteArray() : name_; }
    bool readsAgain() const override { return manner_.again; }
    std::optional<QByteArray> folder() const override;
    PageNumber page() const override { return {.number = page_, .of = pages_}; }
    void turnPage(int by) override;
    void replaced() override;
    void shown() override;
    void refused(const QString& reason) override;

  private:
    // Coming: its bytes are read, looked at and measured. Writing: a page of them is. Handed: it is on its way to the
    // viewer. Shown: one of several is. InLine: and another of them is to be.
    enum class State { Coming, Writing, Handed, Shown, InLine };

    void isRead();
    void isLookedAt();
    QString whyNoPlot() const;
    bool isBetterLeft() const;
    void sayReport();
    bool findPage();
    void beginPage();
    void isWritten();
    void handOver(std::unique_ptr<Spool> spool);
    void fail(const QString& notice);
    void askForPage(int page);
    void stayOrLeave();
    void showRemarks();
    bool isFirstToPrint() const { return manner_.page != 0 || page_ == 1; }
    bool isLastToPrint() const { return manner_.page != 0 || page_ == pages_; }
    QString shownName() const { return QString::fromLocal8Bit(name_); }

    DataChannel& channel_;
    QByteArray name_;
    FileManner manner_;
    bool mayBeEmpty_;
    State state_ = State::Coming;
    std::unique_ptr<SourceReader> reader_;
    std::unique_ptr<PlottedFile> file_;
    std::unique_ptr<Spool> single_;  // what is handed over of a file that does not go through the plotter
    qint64 passes_ = 1;              // over the bytes of the file, and
    qint64 passesDone_ = 0;          // those before the one under way
    int page_ = 1;                   // that is on its way, or came last
    int wanted_ = 1;                 // that is to come next
    int pages_ = 1;
    QString remarks_;  // for the user, when the picture is there
    bool told_ = false;
};

}  // namespace qrvel
