#include "qrvel/channel/source_reader.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include "qrvel/channel/error_text.h"
#include "qrvel/channel/speaker.h"

namespace qrvel {

namespace {

// Polling instead of a non-blocking descriptor: that flag would be seen by all who share our standard input.
bool isReadable(int file) {
    pollfd waiting = {.fd = file, .events = POLLIN, .revents = 0};
    return poll(&waiting, 1, 0) > 0;
}

// Opens a source for reading; -1 with errno set when that cannot be.
int openSource(const QByteArray& name) {
    if (name == STANDARD_INPUT) return STDIN_FILENO;
    // Non-blocking for a pipe that nobody writes to yet.
    const int file = open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat about = {};
    if (file < 0 || fstat(file, &about) != 0 || !S_ISDIR(about.st_mode)) return file;
    close(file);
    errno = EISDIR;
    return -1;
}

qint64 sizeOf(int file) {
    struct stat about = {};
    return fstat(file, &about) == 0 && S_ISREG(about.st_mode) ? about.st_size : 0;
}

}  // namespace

SourceReader::SourceReader(QByteArray name, Done done)
    : name_(std::move(name)), done_(std::move(done)), file_(openSource(name_)) {
    if (file_ < 0) {
        // Whoever makes this reader has not got it yet, so the end comes later.
        QObject::connect(&notOpened_, &QTimer::timeout, [this, reason = errorText()] { end(reason); });
        notOpened_.setSingleShot(true);
        notOpened_.start();
        return;
    }
    bytesInAll_ = sizeOf(file_);
    notifier_ = new QSocketNotifier(file_, QSocketNotifier::Read);
    QObject::connect(notifier_, &QSocketNotifier::activated, [this] { readOn(); });
}

SourceReader::~SourceReader() {
    if (notifier_ != nullptr) {
        // It may be its own signal that led here.
        notifier_->setEnabled(false);
        notifier_->deleteLater();
    }
    if (file_ > STDIN_FILENO) close(file_);
}

void SourceReader::readOn() {
    static std::array<char, 65536> bytes;
    const auto until = std::chrono::steady_clock::now() + TURN;
    do {
        const ssize_t count = read(file_, bytes.data(), bytes.size());
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
        if (count < 0) return end(errorText());
        if (count == 0) return end(spool_->finish() ? QString() : spool_->failure());
        bytesRead_ += count;
        if (!spool_->append(bytes.data(), count)) return end(spool_->failure());
    } while (std::chrono::steady_clock::now() < until && isReadable(file_));
}

void SourceReader::end(const QString& failure) {
    if (notifier_ != nullptr) notifier_->setEnabled(false);
    failure_ = failure;
    const Done done = std::move(done_);
    done();
}

}  // namespace qrvel
