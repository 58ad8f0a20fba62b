// A host: transmissions in frames on one descriptor, answers on another or the same.
#pragma once

#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "host/protocol.h"
#include "qrvel/channel/frame_reader.h"
#include "qrvel/channel/speaker.h"
#include "qrvel/channel/spool.h"

namespace qrvel {

class DataChannel;

inline constexpr int MOST_HOSTS = 64;  // connected at a time

// How long, while others wait, a host may be silent inside a transmission, and how long it may take in all.
struct HostPatience {
    std::chrono::milliseconds silence{5000};
    std::chrono::milliseconds duration{60000};
    std::chrono::milliseconds betweenLooks{1000};  // at the clock
};

class HostConnection final : public Speaker {
  public:
    // Takes the descriptors over, but for the standard streams.
    HostConnection(DataChannel& channel, int input, int output, const HostPatience& patience);
    ~HostConnection() override;

    // How many there are.
    static int number() { return number_; }

    // Waits for the host to say something.
    void listen();
    // Says why there is no room for it; to be destroyed then.
    void turnAway(const QString& reason);

    void takeTurn() override;
    void giveUp() override;
    qint64 bytesDone() const override { return collected_; }
    qint64 bytesInAll() const override { return 0; }
    void shown() override;
    void refused(const QString& reason) override;
    // Not while it has answers that it has not read.
    bool takesPages() const override { return answers_.empty() && !gone_; }
    void takePage(std::string_view format, std::string_view bytes) override;

  private:
    // Silent: between transmissions. InLine: something has come, and it waits for its turn. Collecting: it is its turn.
    // Handed: whole, and on its way to the viewer. Skipping: the rest of a transmission that was dropped.
    enum class State { Silent, InLine, Collecting, Handed, Skipping };

    void readable();
    void standInLine();
    void readOn();
    bool receive();
    void takeReceived();
    void keep(std::string_view bytes);
    void transmissionIsWhole();
    void drop(const QString& reason);
    void breakOff(const QString& reason);
    void hangUp();
    void goOn();
    void lookAtClock();
    void addAnswer(kelhost::FrameKind kind, std::string_view bytes);
    void reply(kelhost::FrameKind kind, std::string_view bytes = {});
    void write();
    void forgetAnswers();

    inline static int number_ = 0;

    DataChannel& channel_;
    int input_;
    int output_;
    State state_ = State::Silent;
    QSocketNotifier readNotifier_;
    QSocketNotifier writeNotifier_;
    FrameReader frames_;
    std::vector<char> received_;  // of the bytes that have come, those
    std::size_t from_ = 0;        // from here
    std::size_t to_ = 0;          // to here have not been looked at
    std::unique_ptr<Spool> spool_;
    qint64 collected_ = 0;
    std::string answers_;      // that the host has not taken yet,
    bool withPage_ = false;    // there is a page among them
    std::size_t written_ = 0;  // but for so many bytes
    HostPatience patience_;
    QTimer clock_;
    QElapsedTimer sinceBytes_;  // came; they may have come before its turn
    QElapsedTimer sinceTurn_;   // began
    bool gone_ = false;
};

}  // namespace qrvel
