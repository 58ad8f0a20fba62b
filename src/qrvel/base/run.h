// What becomes of the pictures of this process: they are shown in a window; one goes into a PNG (--picture); or all go
// into files (--print-to). Whoever has something to do with pictures says here what happens to them.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <string_view>

#include "toolkit/w.h"

namespace qrvel {

// A page of a source; first and last: of those that are printed.
struct SourcePage {
    int number = 1;
    bool first = true;
    bool last = true;
};

// Which page of how many a picture is.
struct PageNumber {
    int number = 1;
    int of = 1;
    bool operator==(const PageNumber&) const = default;
};

// The picture that is shown next.
struct ShownPicture {
    QByteArray file;  // that it comes from; empty when it comes from elsewhere
    PageNumber page;
    bool again = false;   // the one that is shown now, read again
    bool isNone = false;  // nothing has been shown, and nothing is
};

struct Progress {
    qint64 done;  // bytes
    qint64 all;   // 0: not known
};

class Run {
  public:
    Run() = default;
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    virtual ~Run() = default;

    // Whether pictures are printed as they come, all pages of a source one after another, and nothing is painted.
    virtual bool prints() const { return false; }
    // With which the process ends.
    virtual int32_t status() const { return 0; }

    // ---- the life of a source ----
    // It is to be read.
    virtual void reading(const QByteArray& /*source*/) {}
    // It has been, and the picture of that page comes next. False, with a line, when nothing may come of it.
    virtual bool begun(const QByteArray& /*source*/, const SourcePage& /*page*/) { return true; }
    // Whether a page of which nothing may come takes those behind it with it.
    virtual bool keepsPagesTogether() const { return false; }
    // Its data cannot be had, or not all of it, which has been said.
    virtual void failed() {}
    // The viewer has got the end of a picture; whole: nothing of it is missing. Answers whether it is going to be
    // painted or printed.
    virtual bool delivered(bool whole) = 0;
    // The child has been painted.
    virtual void painted(WHandle /*child*/) {}
    // No message waits that could still bring out a picture that was delivered. Answers whether it never will be.
    virtual bool isLost() { return false; }
    // No source is left.
    virtual void end() {}

    // ---- the program that sent the picture which is shown ----
    // Whether it takes pages; and giving it one, in a format called "pdf", "svg" or "png".
    virtual bool takesPages() const { return false; }
    virtual void sendPage(std::string_view /*format*/, std::string_view /*bytes*/) {}

    // ---- what the user is told ----
    // A picture is waited for, of that file if it is one, which the user may give up; and it is there, or is not waited
    // for any more.
    virtual void waiting(const QByteArray& /*file*/, const std::function<Progress()>& /*progress*/,
                         const std::function<void()>& /*givenUp*/) {}
    virtual void waited() {}
    // A picture is there; and what is to be said of it.
    virtual void shows(const ShownPicture& /*picture*/) {}
    virtual void remark(const QString& /*text*/) {}
};

}  // namespace qrvel
