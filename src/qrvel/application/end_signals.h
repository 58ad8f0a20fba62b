// The outside's requests to end: SIGINT, SIGTERM, SIGHUP.
#pragma once

#include <QSocketNotifier>
#include <functional>

namespace qrvel {

// While it lives, one of those signals calls `ended` from the event loop, never from the signal's handler.
// A hang-up that was ignored when the process was started (nohup) stays ignored.
class EndSignals {
  public:
    explicit EndSignals(std::function<void()> ended);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

  private:
    int event_;
    QSocketNotifier notifier_;
};

}  // namespace qrvel
