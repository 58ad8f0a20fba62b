// A host's bytes on their way to the viewer: frames taken apart, kept, and handed over in pieces. What the viewer gets
// is what the host has sent. Steering bytes: when the first transmission is given up (0: never), then how many bytes
// come at a time.
#include <chrono>
#include <string>

#include "fuzz_target.h"
#include "qrvel/channel/delivery.h"
#include "qrvel/channel/frame_reader.h"

using namespace qrvel;
using kelhost::FrameKind;

namespace {

constexpr std::size_t ROOM = 256;  // in the viewer's receive buffer

// The plotter data of a transmission, put together by the rules that hosts and viewer have agreed upon.
class Data {
  public:
    void take(uint32_t kind, std::string_view bytes) {
        require(!ended_, "nothing comes behind the end");
        require(kind <= WD_CHUNK_END, "a chunk's kind");
        if (kind == WD_CHUNK_BEGIN) colons_ = bytes.starts_with(':');
        if (kind == WD_CHUNK_BEGIN) text_ += "<begin>";
        if (colons_ && bytes.starts_with(':')) bytes.remove_prefix(1);
        text_ += bytes;
        ended_ = kind == WD_CHUNK_END;
    }

    const std::string& text() const { return text_; }
    bool hasEnded() const { return ended_; }

  private:
    std::string text_;
    bool colons_ = false;
    bool ended_ = false;
};

Data got;  // by the callback

void take(const char* bytes, uint64_t length, uint32_t kind) {
    require(length <= ROOM, "a piece fits into the receive buffer");
    got.take(kind, {bytes, length});
}

Data sent(std::string_view frames) {
    Data data;
    while (!frames.empty()) {
        require(frames.size() >= kelhost::FRAME_HEADER_SIZE, "a header is whole");
        const kelhost::FrameHeader header = kelhost::decodeHeader(frames.data());
        frames.remove_prefix(kelhost::FRAME_HEADER_SIZE);
        require(header.length <= frames.size(), "a frame is whole");
        data.take(header.kind, frames.substr(0, header.length));
        frames.remove_prefix(header.length);
    }
    require(data.hasEnded(), "a transmission has an end");
    return data;
}

std::unique_ptr<Transmission> transmissionOf(const std::string& frames) {
    auto spool = std::make_unique<Spool>();
    require(spool->append(frames.data(), static_cast<qint64>(frames.size())) && spool->finish(), "there is room");
    return std::make_unique<Transmission>(std::move(spool), Transmission::Form::Framed);
}

// turns: after so many it is given up; 0: never.
void handOver(const std::string& frames, int turns) {
    static char buffer[ROOM];
    got = {};
    Receiver receiver{.buffer = buffer, .callback = take, .begun = true, .addsTo = true};
    Delivery delivery(receiver, transmissionOf(frames));
    for (int turn = 1; !delivery.isOver(); ++turn) {
        delivery.run(std::chrono::steady_clock::time_point::min());
        if (turn == turns && !delivery.isOver()) delivery.cutShort();
    }
    const Data whole = sent(frames);
    require(got.hasEnded(), "the viewer gets an end");
    require(turns == 0 ? got.text() == whole.text() : whole.text().starts_with(got.text()), "what was sent arrives");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    int turns = input.byte(0);
    FrameReader reader;
    std::string kept;
    for (std::string_view rest = input.text(); !rest.empty();) {
        std::string_view piece = rest.substr(0, input.byte(255));
        rest.remove_prefix(piece.size());
        while (!piece.empty()) {
            const FrameReader::Result result = reader.take(piece);
            require(result.taken > 0 && result.taken <= piece.size(), "a reader goes on");
            kept += piece.substr(0, result.taken);
            piece.remove_prefix(result.taken);
            if (result.event == FrameReader::Event::NeedsMore) continue;
            if (result.event != FrameReader::Event::Whole) return 0;
            handOver(kept, turns);
            kept.clear();
            turns = 0;
        }
        require(reader.isInside() == !kept.empty(), "a reader knows where it is");
    }
    return 0;
}
