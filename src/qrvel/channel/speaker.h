// Somebody who has pictures to hand over: a file, standard input, a host. One speaks at a time; the data channel says
// whose turn it is.
#pragma once

#include <QByteArray>
#include <QString>
#include <chrono>
#include <optional>
#include <string_view>

#include "qrvel/base/run.h"

namespace qrvel {

// How long work may keep a turn of the event loop, so that the window stays alive.
inline constexpr auto TURN = std::chrono::milliseconds(8);

class Speaker {
  public:
    Speaker() = default;
    Speaker(const Speaker&) = delete;
    Speaker& operator=(const Speaker&) = delete;
    virtual ~Speaker() = default;

    // It is this one's turn: sooner or later it calls DataChannel::transmit, and hears what became of that; or pass, or
    // leave.
    virtual void takeTurn() = 0;
    // The user has had enough of waiting for the transmission that is coming in: it is to be dropped.
    virtual void giveUp() = 0;
    // How far the turn has come, in bytes; a size of 0 where nobody knows.
    virtual qint64 bytesDone() const = 0;
    virtual qint64 bytesInAll() const = 0;

    // What became of what was transmitted: painted; or dropped, at least a part of it. The turn is over.
    virtual void shown() = 0;
    virtual void refused(const QString& reason) = 0;

    // Where a drawing that a person opens may name other files; a host's may name any.
    virtual std::optional<QByteArray> folder() const { return std::nullopt; }

    // Of the file that it is, if it is one.
    virtual QByteArray fileName() const { return {}; }
    // Whether it has nothing to show.
    virtual bool hasNothing() const { return false; }
    // Whether that has been read before, and is now because it may have changed.
    virtual bool readsAgain() const { return false; }

    // Of what was transmitted last.
    virtual PageNumber page() const { return {}; }
    // The user wants to see the page so many further on, or back, instead of the one that is shown.
    virtual void turnPage(int /*by*/) {}
    // Another one's picture is there instead of its own.
    virtual void replaced() {}

    // Whether it can be given a page with its picture, as it has been printed; and giving it one, in a format called
    // "pdf", "svg" or "png".
    virtual bool takesPages() const { return false; }
    virtual void takePage(std::string_view /*format*/, std::string_view /*bytes*/) {}
};

}  // namespace qrvel
