#include "qrvel/base/end_signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <utility>

namespace qrvel {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

constexpr unsigned PATIENCE = 1;  // seconds

std::atomic<int> signalledEvent{-1};
std::atomic<bool> endsAtOnce{false};
std::atomic<int> lastSignal{SIGTERM};

// As if the signal that asked for the end had never been waited for.
void onPatienceOver(int /*number*/) {
    const int number = lastSignal;
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, number);
    std::signal(number, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
    std::raise(number);
}

void onSignal(int number) {
    lastSignal = number;
    if (endsAtOnce.exchange(false)) alarm(PATIENCE);  // the first counts
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

EndSignals::EndSignals(std::function<void()> ended, bool atOnce)
    : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), notifier_(event_, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, [event = event_, ended = std::move(ended)] {
        uint64_t count = 0;
        if (read(event, &count, sizeof count) > 0) ended();
    });
    signalledEvent = event_;
    endsAtOnce = atOnce;
    if (atOnce) setHandler(SIGALRM, onPatienceOver);
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
