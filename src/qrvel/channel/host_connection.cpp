#include "qrvel/channel/host_connection.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

#include "qrvel/base/notices.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/channel/data_channel.h"

namespace qrvel {

using kelhost::FrameKind;

namespace {

constexpr std::size_t READ_SIZE = 65536;
constexpr std::size_t PAGE_PIECE = 65536;  // of a page, in a frame
constexpr std::size_t ATOMIC_WRITE = 512;  // what a pipe that is writable takes without making us wait

bool isReady(int descriptor, short event) {
    pollfd waiting = {.fd = descriptor, .events = event, .revents = 0};
    return poll(&waiting, 1, 0) > 0;
}

bool isTemporary(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

// The host is to see the end. A standard stream stays open, to nothing, for its number means something to others.
void letGo(int descriptor) {
    if (descriptor > STDERR_FILENO) {
        close(descriptor);
        return;
    }
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0) return;
    dup2(nothing, descriptor);
    close(nothing);
}

void sayOfHost(const QString& text) {
    sayLine("host: " + text);
}

}  // namespace

// Descriptors are asked before each read and write instead of being made non-blocking: those of a standard stream are
// shared with others.
HostConnection::HostConnection(DataChannel& channel, int input, int output, const HostPatience& patience)
    : channel_(channel),
      input_(input),
      output_(output),
      readNotifier_(input, QSocketNotifier::Read),
      writeNotifier_(output, QSocketNotifier::Write),
      received_(READ_SIZE),
      patience_(patience) {
    ++number_;
    readNotifier_.setEnabled(false);
    writeNotifier_.setEnabled(false);
    QObject::connect(&readNotifier_, &QSocketNotifier::activated, [this] { readable(); });
    QObject::connect(&writeNotifier_, &QSocketNotifier::activated, [this] { write(); });
    QObject::connect(&clock_, &QTimer::timeout, [this] { lookAtClock(); });
    clock_.setInterval(patience_.betweenLooks);
}

HostConnection::~HostConnection() {
    --number_;
    if (output_ != input_) letGo(output_);
    letGo(input_);
}

void HostConnection::listen() {
    readNotifier_.setEnabled(true);
}

void HostConnection::turnAway(const QString& reason) {
    sayOfHost(reason);
    reply(FrameKind::Refused, reason.toStdString());
}

// ---- its turn -------------------------------------------------------------------------------------------------------

// What comes first is read before its turn, so that a host which only leaves does not stand in line for it.
void HostConnection::readable() {
    if (state_ != State::Silent) {
        readOn();
    } else if (receive()) {
        standInLine();
    }
}

void HostConnection::standInLine() {
    state_ = State::InLine;
    readNotifier_.setEnabled(false);
    channel_.ask(*this);
}

void HostConnection::takeTurn() {
    state_ = State::Collecting;
    spool_ = std::make_unique<Spool>();
    collected_ = 0;
    sinceTurn_.start();
    clock_.start();
    readNotifier_.setEnabled(true);
    takeReceived();
    lookAtClock();  // it may have been silent while it stood in line
}

// What came behind the end of the transmission before is the beginning of the next.
void HostConnection::goOn() {
    clock_.stop();
    spool_.reset();
    state_ = State::Silent;
    readNotifier_.setEnabled(false);
    if (!answers_.empty()) return;  // a host that does not take its answers gets no more of them
    if (from_ < to_) {
        standInLine();
    } else {
        readNotifier_.setEnabled(true);
    }
}

void HostConnection::transmissionIsWhole() {
    state_ = State::Handed;
    clock_.stop();
    readNotifier_.setEnabled(false);
    if (!spool_->finish()) {
        drop(spool_->failure());
        return;
    }
    reply(FrameKind::Accepted);
    channel_.transmit(std::make_unique<Transmission>(std::move(spool_), Transmission::Form::Framed));
}

void HostConnection::shown() {
    reply(FrameKind::Shown);
    goOn();
}

void HostConnection::refused(const QString& reason) {
    sayOfHost(reason);
    reply(FrameKind::Refused, reason.toStdString());
    goOn();
}

void HostConnection::giveUp() {
    drop("given up by the user");
}

void HostConnection::lookAtClock() {
    if (state_ != State::Collecting || !channel_.othersWait()) return;
    if (sinceBytes_.hasExpired(patience_.silence.count())) {
        drop("the host has stalled while another waits");
    } else if (sinceTurn_.hasExpired(patience_.duration.count())) {
        drop("the host has taken too long while another waits");
    }
}

// ---- bytes ----------------------------------------------------------------------------------------------------------

void HostConnection::readOn() {
    const auto until = std::chrono::steady_clock::now() + TURN;
    while ((state_ == State::Collecting || state_ == State::Skipping) && isReady(input_, POLLIN)) {
        if (!receive()) return;
        takeReceived();
        if (std::chrono::steady_clock::now() >= until) return;
    }
}

// False when nothing came, which may be the end.
bool HostConnection::receive() {
    const ssize_t count = read(input_, received_.data(), received_.size());
    if (count < 0 && isTemporary(errno)) return false;
    if (count <= 0) {
        hangUp();
        return false;
    }
    from_ = 0;
    to_ = static_cast<std::size_t>(count);
    sinceBytes_.start();
    return true;
}

void HostConnection::takeReceived() {
    while (from_ < to_ && (state_ == State::Collecting || state_ == State::Skipping)) {
        const std::string_view bytes(received_.data() + from_, to_ - from_);
        const FrameReader::Result result = frames_.take(bytes);
        if (result.event == FrameReader::Event::UnknownKind) return breakOff("a frame of an unknown kind");
        if (result.event == FrameReader::Event::TooLong) return breakOff("a frame longer than 16 MiB");
        from_ += result.taken;
        if (state_ == State::Collecting) keep(bytes.substr(0, result.taken));
        if (result.event != FrameReader::Event::Whole) continue;
        if (state_ == State::Collecting) {
            transmissionIsWhole();
        } else {
            goOn();
        }
    }
}

void HostConnection::keep(std::string_view bytes) {
    collected_ += static_cast<qint64>(bytes.size());
    if (!spool_->append(bytes.data(), static_cast<qint64>(bytes.size()))) drop(spool_->failure());
}

// The transmission that is coming in is not wanted any more; its rest is still to come.
void HostConnection::drop(const QString& reason) {
    sayOfHost(reason);
    reply(FrameKind::Refused, reason.toStdString());
    spool_.reset();
    clock_.stop();
    const bool whole = state_ == State::Handed;
    state_ = State::Skipping;
    channel_.pass(*this);
    if (whole) {
        goOn();
    } else {
        readNotifier_.setEnabled(true);
    }
}

// Nothing that this host says can be understood any more.
void HostConnection::breakOff(const QString& reason) {
    sayOfHost(reason);
    reply(FrameKind::Refused, reason.toStdString());
    hangUp();
}

void HostConnection::hangUp() {
    if (gone_) return;
    gone_ = true;
    if (state_ == State::Collecting && frames_.isInside()) sayOfHost("it has gone inside a transmission");
    state_ = State::Silent;
    readNotifier_.setEnabled(false);
    writeNotifier_.setEnabled(false);
    clock_.stop();
    forgetAnswers();
    channel_.leave(*this);
}

// ---- answers --------------------------------------------------------------------------------------------------------

void HostConnection::addAnswer(FrameKind kind, std::string_view bytes) {
    const auto header =
        kelhost::encodeHeader({.kind = static_cast<uint8_t>(kind), .length = static_cast<uint32_t>(bytes.size())});
    answers_.append(header.data(), header.size());
    answers_.append(bytes);
}

void HostConnection::reply(FrameKind kind, std::string_view bytes) {
    addAnswer(kind, bytes);
    write();
}

void HostConnection::takePage(std::string_view format, std::string_view bytes) {
    addAnswer(FrameKind::PageBegin, format);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), PAGE_PIECE))) {
        addAnswer(FrameKind::PageData, bytes.substr(0, PAGE_PIECE));
    }
    withPage_ = true;
    reply(FrameKind::PageEnd);
}

// A page that the host has not taken is lost, and the user is told.
void HostConnection::forgetAnswers() {
    answers_.clear();
    written_ = 0;
    if (std::exchange(withPage_, false)) showNotice(ownText(OwnText::NoHost));
}

void HostConnection::write() {
    while (written_ < answers_.size() && isReady(output_, POLLOUT)) {
        const std::size_t length = std::min(answers_.size() - written_, ATOMIC_WRITE);
        const ssize_t count = ::write(output_, answers_.data() + written_, length);
        if (count < 0 && isTemporary(errno)) break;
        if (count < 0) {
            forgetAnswers();  // nobody listens any more
            break;
        }
        written_ += static_cast<std::size_t>(count);
    }
    if (written_ == answers_.size()) {
        withPage_ = false;
        forgetAnswers();
    }
    writeNotifier_.setEnabled(!answers_.empty() && !gone_);
    if (answers_.empty() && state_ == State::Silent && !gone_ && !readNotifier_.isEnabled()) goOn();
}

}  // namespace qrvel
