// What a host and the viewer say to each other, on whatever carries bytes: a local socket, a descriptor, two pipes.
//
// A frame is a kind of one byte, a length of four (little-endian, at most MOST_FRAME_BYTES) and that many bytes.
// docs/host-channel.md tells the whole story; the numbers stand here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kelhost {

enum class FrameKind : uint8_t {
    // To the viewer. A transmission is a begin frame, any number of further ones, and an end frame; each may carry
    // plotter data or be empty.
    Further = 0,
    Begin = 1,
    End = 2,
    // From the viewer, about a transmission.
    Accepted = 16,  // it has come whole
    Refused = 17,   // it is dropped; the bytes say why, UTF-8
    Shown = 18,     // its picture is on the screen
    // From the viewer, when the user prints the picture of this host back to it: a page is a begin frame, any number of
    // data frames, and an end frame. Frames of other kinds may come between them.
    PageBegin = 19,  // the bytes name the format: "pdf", "svg" or "png"
    PageData = 20,
    PageEnd = 21,  // nothing; the page is whole
};

inline constexpr std::size_t FRAME_HEADER_SIZE = 5;
inline constexpr uint32_t MOST_FRAME_BYTES = 16U * 1024 * 1024;

struct FrameHeader {
    uint8_t kind;
    uint32_t length;
};

std::array<char, FRAME_HEADER_SIZE> encodeHeader(const FrameHeader& header);
FrameHeader decodeHeader(const char* bytes);  // FRAME_HEADER_SIZE of them

// Where the viewer listens that was started with --channel NAME: a socket that only its user may open, in
// $XDG_RUNTIME_DIR or, without it, in /tmp/kelhpgl-UID. Empty when the name is none: 1 to 64 letters, digits, dots,
// minus and underline characters, no dot in front.
std::string channelPath(std::string_view name);

}  // namespace kelhost
