#include "qrvel/channel/frame_reader.h"

#include <algorithm>

namespace qrvel {

using kelhost::FrameKind;

FrameReader::Event FrameReader::headerIsWhole() {
    const kelhost::FrameHeader header = kelhost::decodeHeader(header_.data());
    headerBytes_ = 0;
    if (header.kind > static_cast<uint8_t>(FrameKind::End)) return Event::UnknownKind;
    if (header.length > kelhost::MOST_FRAME_BYTES) return Event::TooLong;
    left_ = header.length;
    last_ = header.kind == static_cast<uint8_t>(FrameKind::End);
    return last_ && left_ == 0 ? Event::Whole : Event::NeedsMore;
}

FrameReader::Result FrameReader::take(std::string_view bytes) {
    std::size_t taken = 0;
    while (taken < bytes.size()) {
        inside_ = true;
        Event event = Event::NeedsMore;
        if (left_ > 0) {
            const std::size_t length = std::min<std::size_t>(left_, bytes.size() - taken);
            taken += length;
            left_ -= static_cast<uint32_t>(length);
            if (left_ == 0 && last_) event = Event::Whole;
        } else {
            header_[headerBytes_++] = bytes[taken++];
            if (headerBytes_ == header_.size()) event = headerIsWhole();
        }
        if (event == Event::NeedsMore) continue;
        inside_ = false;
        return {event, taken};
    }
    return {Event::NeedsMore, taken};
}

HostFrame takeFrame(std::string_view& bytes) {
    if (bytes.size() < kelhost::FRAME_HEADER_SIZE) {
        bytes = {};
        return {static_cast<uint32_t>(FrameKind::End), {}};
    }
    const kelhost::FrameHeader header = kelhost::decodeHeader(bytes.data());
    bytes.remove_prefix(kelhost::FRAME_HEADER_SIZE);
    const HostFrame frame{header.kind, bytes.substr(0, header.length)};
    bytes.remove_prefix(frame.bytes.size());
    return frame;
}

}  // namespace qrvel
