// Pages that the user prints to the host, put together out of their frames.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/protocol.h"

namespace kelhost {

struct ReceivedPage {
    std::string format;  // "pdf", "svg" or "png"; a newer viewer may know others
    std::string bytes;   // a whole file of that format
};

// The largest page unless a host says otherwise: the largest drawings have some hundred million bytes as SVG.
inline constexpr std::size_t MOST_PAGE_BYTES = std::size_t{512} * 1024 * 1024;

// Holds at most two pages: the one in the making, and the last one that is whole.
class PageIntake {
  public:
    // Pages with more bytes are dropped, format included; 0: all are.
    explicit PageIntake(std::size_t mostBytes = 0) : mostBytes_(mostBytes) {}
    std::size_t mostBytes() const { return mostBytes_; }

    // A begin frame drops a page that has not ended; what belongs to no page, or is no frame of one, is passed over.
    void take(FrameKind kind, std::string_view bytes);
    // Nothing more comes of the page in the making.
    void breakOff() { making_.reset(); }

    // Whether a page is whole, or has been dropped because of its size.
    bool hasNews() const { return whole_.has_value() || tooLarge_; }
    // Hands the whole page out. Without one: false, and the news that a page was too large has been told.
    bool handOut(ReceivedPage& page);

  private:
    void append(std::string& to, std::string_view bytes);
    void finish();

    std::size_t mostBytes_;
    std::optional<ReceivedPage> making_;
    std::optional<ReceivedPage> whole_;
    bool tooLarge_ = false;  // the last page that came was
};

}  // namespace kelhost
