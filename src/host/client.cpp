#include "host/client.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <thread>
#include <utility>

#include "host/deadline.h"

namespace kelhost {

namespace {

using std::chrono::milliseconds;

// A viewer that has just been started listens after a tenth of a second or more.
constexpr milliseconds CONNECT_PAUSE{20};

// Waits for one of the events, and answers those that are there: none when time is over.
int waitFor(int socket, int events, const Deadline& deadline) {
    pollfd wanted{.fd = socket, .events = static_cast<short>(events), .revents = 0};
    while (poll(&wanted, 1, deadline.left()) < 0 && errno == EINTR) {
    }
    return wanted.revents;
}

bool isOwnUser(int socket) {
    ucred other{};
    socklen_t size = sizeof other;
    return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 && other.uid == geteuid();
}

// Errors of a connect to a viewer that is not there yet, is there no more, or has too many at its door (EAGAIN).
bool meansNobody(int error) {
    return error == ENOENT || error == ECONNREFUSED || error == EAGAIN;
}

// A connected socket, or a negative error number. Never waits: with a full door a blocking socket would.
int tryToConnect(const sockaddr_un& address) {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) return -errno;
    int error = 0;
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        error = errno;
    } else if (!isOwnUser(socket)) {
        error = EPERM;
    }
    if (error == 0) return socket;
    ::close(socket);
    return -error;
}

// Not longer than the deadline.
void pause(const Deadline& deadline) {
    const int left = deadline.left();
    std::this_thread::sleep_for(left < 0 ? CONNECT_PAUSE : std::min(CONNECT_PAUSE, milliseconds(left)));
}

int connectUntil(const sockaddr_un& address, const Deadline& deadline) {
    for (;;) {
        const int socket = tryToConnect(address);
        if (socket >= 0 || !meansNobody(-socket) || deadline.isOver()) return socket;
        pause(deadline);
    }
}

// The host's own kinds are below those of the viewer.
bool isFromViewer(const FrameHeader& header) {
    return header.kind >= static_cast<uint8_t>(FrameKind::Accepted) && header.length <= MOST_FRAME_BYTES;
}

bool isReply(FrameKind kind) {
    return kind <= FrameKind::Shown;
}

}  // namespace

void Client::swap(Client& other) noexcept {
    std::swap(socket_, other.socket_);
    std::swap(received_, other.received_);
    std::swap(replies_, other.replies_);
    std::swap(taken_, other.taken_);
    std::swap(pages_, other.pages_);
    std::swap(problem_, other.problem_);
}

Client& Client::operator=(Client&& other) noexcept {
    Client taken(std::move(other));
    swap(taken);
    return *this;
}

Status Client::fail(Status status, std::string problem) {
    problem_ = std::move(problem);
    return status;
}

// The connection is over; 0 when the viewer closed it in order.
Status Client::end(int error) {
    close();
    const bool viewerClosed = error == 0 || error == EPIPE || error == ECONNRESET;
    return fail(Status::Ended, viewerClosed ? "the viewer has closed the connection" : std::strerror(error));
}

Status Client::connect(std::string_view channel, milliseconds limit) {
    adopt(-1);
    const std::string path = channelPath(channel);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (path.empty()) return fail(Status::Failed, "no name of a channel: " + std::string(channel));
    if (path.size() >= sizeof address.sun_path) return fail(Status::Failed, "a path too long for a socket: " + path);
    path.copy(address.sun_path, path.size());
    const int socket = connectUntil(address, Deadline(limit));
    if (socket >= 0) {
        adopt(socket);
        return Status::Ok;
    }
    return fail(meansNobody(-socket) ? Status::NoViewer : Status::Failed, path + ": " + std::strerror(-socket));
}

void Client::adopt(int socket) {
    close();
    received_.clear();
    replies_.clear();
    taken_ = 0;
    pages_ = PageIntake(pages_.mostBytes());
    socket_ = socket;
}

void Client::close() {
    if (socket_ >= 0) ::close(socket_);
    socket_ = -1;
    pages_.breakOff();
    problem_ = NO_CONNECTION;
}

bool Client::isBroken() const {
    return received_.size() >= FRAME_HEADER_SIZE && !isFromViewer(decodeHeader(received_.data()));
}

// Pages are bounded by themselves.
bool Client::hasRoom() const {
    return replies_.size() - taken_ < FRAME_HEADER_SIZE + MOST_FRAME_BYTES && !isBroken();
}

void Client::takeFrame(std::string_view frame) {
    const auto kind = static_cast<FrameKind>(frame.front());
    if (isReply(kind)) {
        replies_.erase(0, std::exchange(taken_, 0));
        replies_ += frame;
    } else {
        pages_.take(kind, frame.substr(FRAME_HEADER_SIZE));
    }
}

// Takes the whole frames that have come, up to what cannot be one.
void Client::takeFrames() {
    std::string_view left = received_;
    while (left.size() >= FRAME_HEADER_SIZE) {
        const FrameHeader header = decodeHeader(left.data());
        if (!isFromViewer(header) || left.size() - FRAME_HEADER_SIZE < header.length) break;
        takeFrame(left.substr(0, FRAME_HEADER_SIZE + header.length));
        left.remove_prefix(FRAME_HEADER_SIZE + header.length);
    }
    received_.erase(0, received_.size() - left.size());
}

// Takes what is there, without waiting.
Status Client::receive() {
    std::array<char, PIECE_BYTES> bytes;
    const ssize_t count = recv(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count > 0) {
        received_.append(bytes.data(), static_cast<std::size_t>(count));
        takeFrames();
        return Status::Ok;
    }
    const int error = count == 0 ? 0 : errno;
    return error == EAGAIN || error == EINTR ? Status::Ok : end(error);
}

// Nothing can be written any more, but why that is may be waiting.
Status Client::endOfWriting(int error) {
    const Deadline now(milliseconds::zero());
    while (hasRoom() && waitFor(socket_, POLLIN, now) != 0) {
        if (receive() != Status::Ok) return Status::Ended;
    }
    return end(error);
}

// Reads meanwhile: a viewer that waits for its replies to be taken would never take more.
Status Client::waitToWrite(const Deadline& deadline) {
    const int events = waitFor(socket_, POLLOUT | (hasRoom() ? POLLIN : 0), deadline);
    if (events == 0) {
        close();
        return fail(Status::TimedOut, "the viewer takes nothing");
    }
    return (events & POLLIN) != 0 ? receive() : Status::Ok;
}

Status Client::write(std::string_view bytes, milliseconds patience) {
    Deadline deadline(patience);
    Status status = Status::Ok;
    while (!bytes.empty() && status == Status::Ok) {
        const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
            deadline = Deadline(patience);
        } else if (errno == EAGAIN) {
            status = waitToWrite(deadline);
        } else if (errno != EINTR) {
            status = endOfWriting(errno);
        }
    }
    return status;
}

Status Client::send(FrameKind kind, std::string_view bytes, milliseconds patience) {
    if (!isConnected()) return Status::Ended;
    if (bytes.size() > MOST_FRAME_BYTES) return fail(Status::Failed, "more bytes than a frame may have");
    const auto header =
        encodeHeader({.kind = static_cast<uint8_t>(kind), .length = static_cast<uint32_t>(bytes.size())});
    const Status status = write({header.data(), header.size()}, patience);
    return status == Status::Ok ? write(bytes, patience) : status;
}

Status Client::sendPicture(std::string_view bytes, milliseconds patience) {
    Status status = send(FrameKind::Begin, {}, patience);
    while (!bytes.empty() && status == Status::Ok) {
        const std::string_view piece = bytes.substr(0, PIECE_BYTES);
        status = send(FrameKind::Further, piece, patience);
        bytes.remove_prefix(piece.size());
    }
    return status == Status::Ok ? send(FrameKind::End, {}, patience) : status;
}

Status Client::breakOff() {
    close();
    received_.clear();
    return fail(Status::Broken, "the viewer does not keep to the protocol");
}

Status Client::await(bool (Client::*hasCome)() const, milliseconds limit) {
    const Deadline deadline(limit);
    bool mayWait = true;
    while (!(this->*hasCome)()) {
        if (isBroken()) return breakOff();
        if (!isConnected()) return Status::Ended;
        if (!hasRoom()) return fail(Status::Failed, "too many replies are unread");
        if (!mayWait || waitFor(socket_, POLLIN, deadline) == 0)
            return fail(Status::TimedOut, "the viewer says nothing");
        if (receive() != Status::Ok) return Status::Ended;
        // A viewer that goes on saying something else does not hold the host.
        mayWait = !deadline.isOver();
    }
    return Status::Ok;
}

Status Client::nextReply(Reply& reply, milliseconds limit) {
    const Status status = await(&Client::hasReply, limit);
    if (status != Status::Ok) return status;
    const FrameHeader header = decodeHeader(replies_.data() + taken_);
    taken_ += FRAME_HEADER_SIZE;
    reply = {.kind = static_cast<FrameKind>(header.kind), .reason = replies_.substr(taken_, header.length)};
    taken_ += header.length;
    return Status::Ok;
}

Status Client::nextPage(ReceivedPage& page, milliseconds limit) {
    if (pages_.mostBytes() == 0) return fail(Status::Failed, "pages are not kept");
    const Status status = await(&Client::hasPageNews, limit);
    if (status != Status::Ok || pages_.handOut(page)) return status;
    return fail(Status::Failed, "a page of more than " + std::to_string(pages_.mostBytes()) + " bytes");
}

}  // namespace kelhost
