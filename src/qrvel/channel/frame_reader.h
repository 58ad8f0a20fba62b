// Taking a host's bytes apart: where its transmissions end, and whether what it says is in order.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "host/protocol.h"

namespace qrvel {

class FrameReader {
  public:
    enum class Event { NeedsMore, Whole, UnknownKind, TooLong };
    struct Result {
        Event event;
        std::size_t taken;  // so many of the bytes belong to the transmission under way
    };

    // Looks at what came next, at most to the end of the transmission. After UnknownKind and TooLong nothing can be
    // understood any more.
    Result take(std::string_view bytes);

    // Whether a transmission has begun and is not whole.
    bool isInside() const { return inside_; }

  private:
    Event headerIsWhole();

    std::array<char, kelhost::FRAME_HEADER_SIZE> header_{};
    std::size_t headerBytes_ = 0;  // of header_ that have come
    uint32_t left_ = 0;            // bytes of the frame that have not come
    bool last_ = false;            // the frame is an end frame
    bool inside_ = false;
};

// The frame in front of what a FrameReader has let through, which is taken off it. `bytes` must not be empty.
struct HostFrame {
    uint32_t kind;  // WD_CHUNK_…
    std::string_view bytes;
};
HostFrame takeFrame(std::string_view& bytes);

}  // namespace qrvel
