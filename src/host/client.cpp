#include "client.h"

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

#include "deadline.h"

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

bool isKnown(uint8_t kind) {
    return kind <= static_cast<uint8_t>(FrameKind::Shown);
}

}  // namespace

Client::Client(Client&& other) noexcept
    : socket_(std::exchange(other.socket_, -1)),
      received_(std::move(other.received_)),
      taken_(std::exchange(other.taken_, 0)),
      problem_(std::move(other.problem_)) {}

Client& Client::operator=(Client&& other) noexcept {
    if (this != &other) {
        close();
        socket_ = std::exchange(other.socket_, -1);
        received_ = std::move(other.received_);
        taken_ = std::exchange(other.taken_, 0);
        problem_ = std::move(other.problem_);
    }
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
    forget();
    socket_ = socket;
}

void Client::close() {
    if (socket_ >= 0) ::close(socket_);
    socket_ = -1;
    problem_ = NO_CONNECTION;
}

void Client::forget() {
    received_.clear();
    taken_ = 0;
}

// Takes what is there, without waiting.
Status Client::receive() {
    received_.erase(0, std::exchange(taken_, 0));
    std::array<char, 4096> bytes;
    const ssize_t count = recv(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (count > 0) {
        received_.append(bytes.data(), static_cast<std::size_t>(count));
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
    forget();
    return fail(Status::Broken, "the viewer does not keep to the protocol");
}

// Takes the whole frames that have come, up to the first reply. TimedOut when there is none among them.
Status Client::takeReply(Reply& reply) {
    while (received_.size() - taken_ >= FRAME_HEADER_SIZE) {
        const FrameHeader header = decodeHeader(received_.data() + taken_);
        if (!isFromViewer(header)) return breakOff();
        const std::size_t start = taken_ + FRAME_HEADER_SIZE;
        if (received_.size() - start < header.length) break;
        reply = {.kind = static_cast<FrameKind>(header.kind), .reason = received_.substr(start, header.length)};
        taken_ = start + header.length;
        if (isKnown(header.kind)) return Status::Ok;
    }
    return Status::TimedOut;
}

Status Client::nextReply(Reply& reply, milliseconds limit) {
    const Deadline deadline(limit);
    Status status = takeReply(reply);
    while (status == Status::TimedOut) {
        if (!isConnected()) return Status::Ended;
        if (waitFor(socket_, POLLIN, deadline) == 0) return fail(Status::TimedOut, "the viewer says nothing");
        status = receive();
        if (status == Status::Ok) status = takeReply(reply);
        // A viewer that goes on saying what is no reply does not hold the host.
        if (status == Status::TimedOut && deadline.isOver()) return fail(status, "the viewer says nothing");
    }
    return status;
}

}  // namespace kelhost
