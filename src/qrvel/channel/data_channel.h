// The host data channel: whose turn it is to hand a picture over, and what of it the viewer has got.
//
// A transmission comes in whole before the viewer gets any of it, so one that breaks off leaves the picture that is
// shown. The next one waits until the one before has been painted. Without any source there is an end chunk alone,
// from which the viewer makes its empty window.
#pragma once

#include <QByteArray>
#include <QTimer>
#include <chrono>
#include <deque>
#include <memory>
#include <vector>

#include "qrvel/base/handles.h"
#include "qrvel/base/options.h"
#include "qrvel/channel/delivery.h"
#include "qrvel/channel/file_source.h"
#include "qrvel/channel/file_watch.h"
#include "qrvel/channel/host_connection.h"
#include "qrvel/channel/host_server.h"
#include "qrvel/channel/named_files.h"
#include "qrvel/channel/speaker.h"

namespace qrvel {

class DataChannel : public Object {
  public:
    static constexpr Kind KIND = Kind::DataChannel;

    // `silence`: of all who might speak, until a viewer that hosts may find shows itself.
    DataChannel(const Receiver& receiver, std::chrono::milliseconds silence);

    // Opens the sources that the options name. False, with a notice, when one cannot be listened to.
    bool start(const Options& options);
    // A file to be shown after what waits already.
    void open(const QByteArray& fileName);

    // ---- for those who speak ----
    // Stands in line for a turn.
    void ask(Speaker& speaker);
    // The same in front of all others: what it has begun goes on.
    void goOn(Speaker& speaker);
    // What the one whose turn it is hands over.
    void transmit(std::unique_ptr<Transmission> transmission);
    // Has nothing to hand over this time.
    void pass(const Speaker& speaker);
    // Will never speak again, and is destroyed soon.
    void leave(Speaker& speaker);
    // Whether somebody waits for the one whose turn it is.
    bool othersWait() const { return !line_.empty(); }
    // A host on two descriptors, which may be the same.
    void addHost(int input, int output, const HostPatience& patience = {});

    // ---- for the main loop ----
    // Whether the viewer has got a part of a transmission and not yet the end.
    bool isTransmitting() const { return state_ == State::Delivering && delivery_->hasBegun(); }
    // Whether a picture is on its way to the screen: the viewer has got at least a part of it.
    bool isShowing() const { return isTransmitting() || state_ == State::AwaitingPaint; }
    // Whether the viewer will get the first part of one by the next run.
    bool isAboutToTransmit() const { return state_ == State::Delivering && !delivery_->hasBegun(); }
    // Whether run has something to do.
    bool hasWork() const;
    // Goes on, for a few milliseconds at most.
    void run();
    // What has been handed over is on the screen, or printed.
    void pictureIsOut();
    // Whether the one whose picture is shown is there, and takes pages; gives it one, and answers the same.
    bool takesPages() const { return picture_.of != nullptr && picture_.of->takesPages(); }
    bool sendPage(std::string_view format, std::string_view bytes);
    // Whose picture is shown, as far as it has been handed over; and which of its pages that is.
    bool isPictureOf(const Speaker& speaker) const { return picture_.of == &speaker; }
    const PageNumber& picturePage() const { return picture_.shown.page; }
    // The user wants to see the page so many further on, or back.
    void turnPage(int by);
    // The file that the picture comes from; empty when it comes from elsewhere.
    const QByteArray& pictureName() const { return picture_.shown.file; }
    // The user wants that file to be read again.
    void readAgain();
    // The user wants to see the file so many further on, or back: of those that were named or, where it is the only
    // one, of those beside it.
    void turnFile(int by);
    // Whether a transmission has been handed over whole.
    bool hasDelivered() const { return delivered_; }

  private:
    // Idle: nobody has the turn. Collecting: whoever has it does not hand over yet. Delivering: the viewer gets it.
    // AwaitingPaint: it has got all, but it is neither painted nor printed.
    enum class State { Idle, Collecting, Delivering, AwaitingPaint };

    // What was handed over last.
    struct Picture {
        Speaker* of = nullptr;  // null when it has left
        ShownPicture shown;
    };

    void add(std::unique_ptr<Speaker> speaker);
    void openAgain(const QByteArray& fileName);
    void giveTurn();
    void endTurn();
    void giveUp();
    void deliver();
    void finish();
    void settle();
    void waitForSpeakers();
    void showEmptyWindow();
    ShownPicture shownNext(const Speaker& speaker) const;
    Progress progress() const;

    Receiver receiver_;
    std::vector<std::unique_ptr<Speaker>> speakers_;
    std::vector<std::unique_ptr<Speaker>> gone_;  // to be destroyed when none of their procedures is running
    std::deque<Speaker*> line_;
    State state_ = State::Idle;
    Speaker* turn_ = nullptr;  // null in AwaitingPaint when it has left
    Picture picture_;
    std::unique_ptr<Delivery> delivery_;  // of the one whose turn it is
    std::unique_ptr<HostServer> server_;
    std::unique_ptr<FileWatch> watch_;  // with --watch
    QTimer silence_;
    qint64 pictureBytes_ = 0;  // that were transmitted since the last begin
    bool givenUp_ = false;     // by the user; the main loop has not seen to it
    QString cut_;              // why what the viewer has got is not all; empty: it is
    NamedFiles named_;
    bool isHandingOver_ = false;     // the viewer is in its callback
    std::vector<Speaker*> leaving_;  // meanwhile
    FileManner manner_;              // in which files are opened
    std::vector<QByteArray> files_;  // that the user has named, in their order
    bool delivered_ = false;
};

// The open channel, or null.
DataChannel* findDataChannel();

}  // namespace qrvel
