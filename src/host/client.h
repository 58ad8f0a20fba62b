// A host's end of the connection to the viewer.
//
// Life of one: connect (or adopt), then for each picture send it and read replies until one says Shown or Refused. A
// host that wants what the user prints to it says so with keepPages before it sends, and asks for pages with nextPage.
//
//     kelhost::Client viewer;
//     kelhost::Reply reply{kelhost::FrameKind::Accepted, {}};
//     if (viewer.connect("orders", 10s) == Status::Ok && viewer.sendPicture(text, 30s) == Status::Ok) {
//         while (reply.kind == FrameKind::Accepted && viewer.nextReply(reply, 60s) == Status::Ok) {}
//     }
//
// Nothing throws (but when memory runs out), no SIGPIPE is raised, and a signal that is handled cuts nothing short. One
// thread at a time may use a client.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/page_intake.h"
#include "host/protocol.h"

namespace kelhost {

class Deadline;

enum class Status : uint8_t {
    Ok,
    NoViewer,  // nobody listens there
    TimedOut,
    Ended,   // there is no connection, or none any more
    Broken,  // what the viewer says makes no sense; the connection is closed
    Failed,  // a wrong argument, or the system refuses
};

// A time limit below 0.
inline constexpr std::chrono::milliseconds FOREVER{-1};

// What sendPicture puts into a frame at most, bytes: enough that the frames' own cost does not count.
inline constexpr std::size_t PIECE_BYTES = 65536;

struct Reply {
    FrameKind kind;      // Accepted, Refused or Shown
    std::string reason;  // of a refusal, UTF-8; otherwise mostly empty
};

class Client {
  public:
    Client() = default;
    ~Client() { close(); }
    Client(Client&& other) noexcept { swap(other); }
    Client& operator=(Client&& other) noexcept;

    // Connects to the viewer that was started with --channel NAME, and tries again until it listens or the limit is
    // over (0: one try): NoViewer. Failed when the name is none, the socket cannot be opened or another user listens
    // there.
    Status connect(std::string_view channel, std::chrono::milliseconds limit);
    // Takes over a connected stream socket, such as one half of a socketpair whose other half a viewer got with
    // --channel-fd. The client closes it.
    void adopt(int socket);
    // A transmission that is not whole is dropped by the viewer. Replies and the page that have come can still be read.
    void close();
    bool isConnected() const { return socket_ >= 0; }

    // Sends a frame of at most MOST_FRAME_BYTES (else Failed); the bytes are the caller's again when it returns.
    // Replies that come meanwhile are kept for nextReply. `patience` is how long the viewer may take nothing at all: it
    // reads no further picture before the last one is on the screen. After that the connection is closed, because a
    // part of a frame may be out: TimedOut. Ended when the viewer has gone; replies may be waiting that say why.
    Status send(FrameKind kind, std::string_view bytes, std::chrono::milliseconds patience);
    // A whole transmission: an empty begin frame, pieces, an empty end frame.
    Status sendPicture(std::string_view bytes, std::chrono::milliseconds patience);

    // The next reply, in the order in which the viewer gave them, if need be after waiting for it: TimedOut leaves all
    // as it was. Frames of a kind that only a newer viewer knows are passed over. Ended when no whole reply is left.
    Status nextReply(Reply& reply, std::chrono::milliseconds limit);

    // Without this, pages are passed over and cost no memory. With it, on this connection and later ones, the last page
    // that is whole is kept until nextPage takes it, and one with more than mostBytes is dropped. So the client may
    // take three times mostBytes: a whole page, and one that is coming in and is copied as it grows. Pages that have
    // come before are forgotten.
    void keepPages(std::size_t mostBytes = MOST_PAGE_BYTES) { pages_ = PageIntake(mostBytes); }

    // The page that has come since the last call, if need be after waiting for it; never a part of one. Replies that
    // come meanwhile are kept for nextReply. TimedOut leaves all as it was. Failed when a page was too large (the next
    // one can be waited for), when replies of more than 16 MiB are unread, and without keepPages. Ended when there is
    // no connection, and no page left.
    Status nextPage(ReceivedPage& page, std::chrono::milliseconds limit);

    // Why the last call did not answer Ok, in English, for a person.
    const std::string& problem() const { return problem_; }

  private:
    void swap(Client& other) noexcept;
    bool hasReply() const { return taken_ < replies_.size(); }
    bool hasPageNews() const { return pages_.hasNews(); }
    bool isBroken() const;
    bool hasRoom() const;
    Status fail(Status status, std::string problem);
    Status end(int error);
    Status breakOff();
    void takeFrames();
    void takeFrame(std::string_view frame);
    Status receive();
    Status endOfWriting(int error);
    Status waitToWrite(const Deadline& deadline);
    Status write(std::string_view bytes, std::chrono::milliseconds patience);
    Status await(bool (Client::*hasCome)() const, std::chrono::milliseconds limit);

    static constexpr char NO_CONNECTION[] = "there is no connection";

    int socket_ = -1;
    std::string received_;   // what is no whole frame yet, or begins with what cannot be one
    std::string replies_;    // their frames, as they came; at most twice the largest
    std::size_t taken_ = 0;  // of that: handed out already
    PageIntake pages_;
    std::string problem_ = NO_CONNECTION;
};

}  // namespace kelhost
