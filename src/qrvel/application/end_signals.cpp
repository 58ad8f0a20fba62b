#include "end_signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

namespace qrvel {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> signalledEvent{-1};

void onSignal(int /*number*/) {
    const int kept = errno;
    const uint64_t one = 1;
    [[maybe_unused]] const auto written = write(signalledEvent, &one, sizeof one);
    errno = kept;
}

void setHandler(int number, void (*handler)(int)) {
    struct sigaction old = {};
    if (sigaction(number, nullptr, &old) != 0 || (number == SIGHUP && old.sa_handler == SIG_IGN)) return;
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
}

}  // namespace

EndSignals::EndSignals(std::function<void()> ended)
    : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), notifier_(event_, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, [event = event_, ended = std::move(ended)] {
        uint64_t count = 0;
        if (read(event, &count, sizeof count) > 0) ended();
    });
    signalledEvent = event_;
    for (const int number : SIGNALS) {
        setHandler(number, onSignal);
    }
}

EndSignals::~EndSignals() {
    for (const int number : SIGNALS) {
        setHandler(number, SIG_DFL);
    }
    notifier_.setEnabled(false);
    signalledEvent = -1;
    close(event_);
}

}  // namespace qrvel
