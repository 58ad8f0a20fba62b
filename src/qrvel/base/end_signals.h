// The outside's requests to end: SIGINT, SIGTERM, SIGHUP.
#pragma once

#include <QSocketNotifier>
#include <functional>

namespace qrvel {

// While it lives, one of those signals calls `ended` from the event loop, never from the signal's handler.
// A hang-up that was ignored when the process was started (nohup) stays ignored.
//
// Where nobody looks (atOnce), the process does not outlive a signal by more than a second, whatever it does: what it
// writes is whole or not there.
class EndSignals {
  public:
    EndSignals(std::function<void()> ended, bool atOnce);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

  private:
    int event_;
    QSocketNotifier notifier_;
};

}  // namespace qrvel
